#include "picture/Orientation.h"

#include <cstring>
#include <utility>

namespace kw {

PageHeader Upright(const PageHeader& stored, Orientation orientation) {
  if (!IsOnItsSide(orientation)) return stored;
  return {{stored.size.height, stored.size.width},
          stored.bitsPerPixel,
          stored.verticalResolution,
          stored.horizontalResolution};
}

Bitmap Upright(const Bitmap& stored, Orientation orientation, const ReadLimits& limits) {
  if (orientation < 2 || orientation > 8) return stored;
  const bool transposed = IsOnItsSide(orientation);
  const bool mirroredColumns = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  const bool mirroredRows = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;

  const std::int32_t width = transposed ? stored.Height() : stored.Width();
  const std::int32_t height = transposed ? stored.Width() : stored.Height();
  RequireWorkFits(PixelMemory(stored.Width(), stored.Height(), stored.BitsPerPixel()) +
                      PixelMemory(width, height, stored.BitsPerPixel()),
                  limits);
  Bitmap page =
      NewPage(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height), stored.BitsPerPixel(), limits);
  page.SetPalette({stored.Palette().begin(), stored.Palette().end()});
  page.SetResolution(transposed ? stored.VerticalResolution() : stored.HorizontalResolution(),
                     transposed ? stored.HorizontalResolution() : stored.VerticalResolution());

  const int depth = stored.BitsPerPixel();
  const auto pixelBytes = static_cast<std::size_t>(depth / 8);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto to = page.MutableRow(y);
    for (std::int32_t x = 0; x < width; ++x) {
      // The stored column and row of the upright pixel (x, y).
      std::int32_t column = transposed ? y : x;
      std::int32_t row = transposed ? x : y;
      if (mirroredColumns) column = stored.Width() - 1 - column;
      if (mirroredRows) row = stored.Height() - 1 - row;
      const auto from = stored.Row(row);
      const auto source = static_cast<std::size_t>(column);
      const auto target = static_cast<std::size_t>(x);
      if (depth >= 8) {
        std::memcpy(to.data() + target * pixelBytes, from.data() + source * pixelBytes, pixelBytes);
      } else {
        const auto bits = static_cast<unsigned>(depth);
        const unsigned shift = 8 - bits - static_cast<unsigned>(target) * bits % 8;
        to[target * bits / 8] = static_cast<std::uint8_t>(
            to[target * bits / 8] | static_cast<unsigned>(PaletteIndexAt(from, source, depth)) << shift);
      }
    }
  }
  return page;
}

}  // namespace kw
