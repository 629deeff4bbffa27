#include "picture/IndexDepth.h"

#include <array>
#include <cstring>
#include <numeric>
#include <vector>

#include "picture/Depth.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

Lut Unchanged() {
  Lut table{};
  std::iota(table.begin(), table.end(), std::uint8_t{0});
  return table;
}

// Calls make(y, row) for each row, one byte a pixel, with what the table has for its indices, on several threads. It
// must not throw.
template <typename Make>
void ForBytes(const Bitmap& picture, const Lut& table, const Make& make) {
  const ConstPixels from(picture);
  const auto width = static_cast<std::size_t>(picture.Width());
  const int depth = picture.BitsPerPixel();
  const bool isStored = depth == 8 && table == Unchanged();
  const auto bands =
      CutIntoRowBands(picture.Height(), std::uint64_t{4} * width * static_cast<std::uint64_t>(picture.Height()));
  std::vector<std::vector<std::uint8_t>> rows(bands.size(), std::vector<std::uint8_t>(isStored ? 0 : width + 8));
  ParallelFor(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      if (!isStored) kernels::UnpackLevels(from.Row(y), rows[i].data(), width, depth, table);
      make(y, isStored ? from.Row(y) : rows[i].data());
    }
  });
}

}  // namespace

Bitmap IndicesToColours(const Bitmap& picture) {
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 24);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  if (HasGreyPalette(picture)) {
    const Lut levels = GreyLevels(picture);
    ForBytes(picture, levels, [&](std::int32_t y, const std::uint8_t* row) { kernels::Triple(row, to.Row(y), width); });
    return result;
  }
  std::array<std::array<std::uint8_t, 4>, 256> stored{};
  for (std::size_t i = 0; i < picture.Palette().size(); ++i) {
    const Rgb colour = picture.Palette()[i];
    stored[i] = {colour.blue, colour.green, colour.red, 0};
  }
  ForBytes(picture, Unchanged(), [&](std::int32_t y, const std::uint8_t* row) {
    std::uint8_t* at = to.Row(y);
    // Four bytes are one step for the processor; the next pixel writes over the fourth.
    for (std::size_t x = 0; x + 1 < width; ++x, at += 3) std::memcpy(at, stored[row[x]].data(), 4);
    std::memcpy(at, stored[row[width - 1]].data(), 3);
  });
  return result;
}

Bitmap IndicesToMoreBits(const Bitmap& picture, int bitsPerPixel) {
  Bitmap result = Like(picture, picture.Width(), picture.Height(), bitsPerPixel);
  result.SetPalette({picture.Palette().begin(), picture.Palette().end()});
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  ForBytes(picture, Unchanged(), [&](std::int32_t y, const std::uint8_t* row) {
    if (bitsPerPixel == 8) {
      std::memcpy(to.Row(y), row, width);
    } else {
      PackHalfBytes(row, to.Row(y), width);
    }
  });
  return result;
}

void PackHalfBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels / 2; ++i) {
    to[i] = static_cast<std::uint8_t>(static_cast<unsigned>(from[2 * i]) << 4U | from[2 * i + 1]);
  }
  if (pixels % 2 != 0) to[pixels / 2] = static_cast<std::uint8_t>(static_cast<unsigned>(from[pixels - 1]) << 4U);
}

}  // namespace kw
