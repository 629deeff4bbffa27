#include "picture/effects/BitFilter.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "picture/Depth.h"
#include "picture/effects/FirstLevels.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/Pixels.h"

namespace kw {

void FilterBits(Bitmap& picture, const RowFilter& filter) {
  const auto width = static_cast<std::size_t>(picture.Width());
  const std::size_t rowBytes = (width / Bitmap::RowAlignment + 1) * Bitmap::RowAlignment;
  const Lut levels = GreyLevels(picture);
  std::vector<FirstLevels> ofRows(static_cast<std::size_t>(picture.Height()));
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 1);
  const Pixels to(result);
  // Black and white, as far as is known.
  std::uint8_t leastOne = LightestBlack + 1;

  RowFilter bits;
  bits.radius = filter.radius;
  bits.margin = static_cast<std::size_t>(filter.radius);
  bits.keptBytes = width;
  bits.scratchBytes = rowBytes + filter.scratchBytes;
  bits.take = [&, margin = bits.margin](const std::uint8_t* from, std::uint8_t* row) {
    kernels::UnpackLevels(from, row, width, 1, levels);
    std::memset(row - margin, row[0], margin);
    std::memset(row + width, row[width - 1], margin);
  };
  bits.make = [&](const std::uint8_t* const* rows, std::uint8_t* row, std::uint8_t* scratch) {
    filter.make(rows, scratch, scratch + rowBytes);
    kernels::ThresholdToBits(scratch, row, width, leastOne);
    ofRows[static_cast<std::size_t>(row - to.base) / to.stride] = FirstLevelsOf(scratch, width);
  };
  const auto run = [&] { FilterRows({ConstPixels(picture), to, picture.Height(), picture.RowBytes()}, bits); };
  run();

  FirstLevels all;
  for (const FirstLevels& own : ofRows) all.Add(own);
  if (all.count != FirstLevels::Many) {
    // Its two colours, the first one with index 0.
    const std::uint8_t greater = std::max(all.first, all.second);
    const std::uint8_t lesser = std::min(all.first, all.second);
    if (all.count == 2 && (greater < leastOne || lesser >= leastOne)) {
      leastOne = greater;
      run();
    }
    if (all.first >= leastOne) ExchangeIndices(result);
    std::vector<Rgb> palette{{all.first, all.first, all.first}};
    if (all.count == 2) palette.push_back({all.second, all.second, all.second});
    result.SetPalette(std::move(palette));
  }
  picture = std::move(result);
}

}  // namespace kw
