#include "picture/effects/FirstLevels.h"

#include <atomic>
#include <vector>

#include "picture/effects/Kernels.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {

void FirstLevels::Add(const FirstLevels& next) {
  const auto add = [this](std::uint8_t level) {
    if (count == 0) {
      first = second = level;
      count = 1;
    } else if (count == 1 && level != first) {
      second = level;
      count = 2;
    } else if (level != first && level != second) {
      count = Many;
    }
  };
  if (next.count > 0) add(next.first);
  if (next.count > 1) add(next.second);
  if (next.count == Many) count = Many;
}

FirstLevels FirstLevelsOf(const std::uint8_t* row, std::size_t count) {
  if (count == 0) return {};
  const std::uint8_t first = row[0];
  const std::size_t other = kernels::FindThird(row, count, first, first);
  if (other == count) return {first, first, 1};
  const std::uint8_t second = row[other];
  const bool isAll = kernels::FindThird(row + other, count - other, first, second) == count - other;
  return {first, second, isAll ? 2 : FirstLevels::Many};
}

FirstLevels FirstLevelsOf(const Bitmap& picture) {
  const ConstPixels pixels(picture);
  const auto width = static_cast<std::size_t>(picture.Width());
  std::vector<FirstLevels> ofRows(static_cast<std::size_t>(picture.Height()));
  std::atomic<bool> areMany{false};
  ParallelForRows(picture.Height(), BytesOf(picture), [&](RowBand band) {
    FirstLevels levels;
    for (std::int32_t y = band.begin; y < band.end && !areMany; ++y) {
      FirstLevels& own = ofRows[static_cast<std::size_t>(y)];
      own = FirstLevelsOf(pixels.Row(y), width);
      levels.Add(own);
      if (levels.count == FirstLevels::Many) areMany = true;
    }
  });
  FirstLevels all;
  for (const FirstLevels& own : ofRows) all.Add(own);
  return all;
}

void ExchangeIndices(Bitmap& picture) {
  const Pixels pixels(picture);
  const std::size_t count = picture.RowBytes();
  const unsigned behind = static_cast<unsigned>(picture.Width()) % 8;
  const auto last = static_cast<std::uint8_t>(behind == 0 ? 0xFFU : 0xFF00U >> behind);
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    std::uint8_t* const row = pixels.Row(y);
    for (std::size_t i = 0; i < count; ++i) row[i] ^= 0xFFU;
    row[count - 1] &= last;
  }
}

}  // namespace kw
