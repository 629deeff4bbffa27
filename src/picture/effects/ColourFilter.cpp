#include "picture/effects/ColourFilter.h"

#include <cstring>

#include "picture/effects/Pixels.h"
#include "picture/effects/RowWindow.h"

namespace kw {
namespace {

constexpr std::size_t PixelBytes = 4;
constexpr std::size_t AlphaByte = 3;

bool IsHidden(const std::uint8_t* pixel) { return pixel[AlphaByte] == 0; }

bool HasHiddenPixels(const Bitmap& picture) {
  if (picture.BitsPerPixel() != 32) return false;
  const ConstPixels pixels(picture);
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const std::uint8_t* const row = pixels.Row(y);
    for (std::size_t i = 0; i < picture.RowBytes(); i += PixelBytes) {
      if (IsHidden(row + i)) return true;
    }
  }
  return false;
}

// The neighbourhood of one pixel, laid out as rows of a picture.
class Neighbourhood {
public:
  static constexpr std::size_t RowBytes = 3 * Bitmap::RowAlignment;
  static constexpr std::size_t Bytes = 3 * RowBytes + Bitmap::RowAlignment;

  explicit Neighbourhood(std::uint8_t* memory) : result(memory + 3 * RowBytes) {
    for (std::size_t i = 0; i < 3; ++i) middle[i] = memory + i * RowBytes + Bitmap::RowAlignment;
  }

  // Takes the neighbourhood of byte `i`; the middle pixel replaces hidden ones. False if none is hidden.
  bool Take(const std::uint8_t* const* rows, std::size_t i) {
    const std::uint8_t* const own = rows[1] + i;
    bool hasHidden = false;
    for (std::size_t line = 0; line < 3; ++line) {
      for (std::size_t column = 0; column < 3; ++column) {
        const std::uint8_t* const other = rows[line] + i + column * PixelBytes - PixelBytes;
        hasHidden = hasHidden || IsHidden(other);
        std::memcpy(middle[line] + column * PixelBytes - PixelBytes, IsHidden(other) ? own : other, PixelBytes);
      }
    }
    return hasHidden;
  }

  // The new colour of the pixel.
  const std::uint8_t* Filtered(const NeighbourhoodRow& make) {
    const std::uint8_t* const rows[] = {middle[0], middle[1], middle[2]};
    make(rows, result, PixelBytes, PixelBytes);
    return result;
  }

private:
  std::uint8_t* middle[3] = {};
  std::uint8_t* result;
};

}  // namespace

void FilterColours(Bitmap& picture, const NeighbourhoodRow& make) {
  const auto size = static_cast<std::size_t>(picture.BitsPerPixel() / 8);
  const std::size_t count = picture.RowBytes();
  const bool hasHidden = HasHiddenPixels(picture);
  RowFilter filter{1, size, hasHidden ? Neighbourhood::Bytes : 0, {}, {}};
  filter.take = [=](const std::uint8_t* from, std::uint8_t* to) { TakeRepeated(from, to, count, size, size); };
  filter.make = [=, &make](const std::uint8_t* const* rows, std::uint8_t* to, std::uint8_t* scratch) {
    make(rows, to, count, size);
    if (size != PixelBytes) return;
    for (std::size_t i = AlphaByte; i < count; i += PixelBytes) to[i] = rows[1][i];
    if (!hasHidden) return;
    Neighbourhood around(scratch);
    for (std::size_t i = 0; i < count; i += PixelBytes) {
      if (IsHidden(rows[1] + i)) {
        std::memcpy(to + i, rows[1] + i, PixelBytes);
      } else if (around.Take(rows, i)) {
        std::memcpy(to + i, around.Filtered(make), AlphaByte);
      }
    }
  };
  FilterRows(picture, filter);
}

}  // namespace kw
