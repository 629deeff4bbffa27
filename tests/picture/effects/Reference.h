#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "components/base/Bitmap.h"

namespace kw::reference {

// Blue, green, red and alpha (255 if the picture has none) of one pixel.
using Pixel = std::array<std::int32_t, 4>;

// A picture without rows, bits or palettes.
struct Plain {
  std::int32_t width = 0;
  std::int32_t height = 0;
  int bitsPerPixel = 0;
  std::vector<Pixel> pixels;

  Plain() = default;
  Plain(std::int32_t plainWidth, std::int32_t plainHeight, int depth)
      : width(plainWidth),
        height(plainHeight),
        bitsPerPixel(depth),
        pixels(static_cast<std::size_t>(plainWidth) * static_cast<std::size_t>(plainHeight)) {}
  Pixel& At(std::int32_t x, std::int32_t y) { return pixels[Index(x, y)]; }
  const Pixel& At(std::int32_t x, std::int32_t y) const { return pixels[Index(x, y)]; }
  std::size_t Index(std::int32_t x, std::int32_t y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
  }
  // The nearest pixel of the picture.
  const Pixel& Near(std::int32_t x, std::int32_t y) const;
  friend bool operator==(const Plain&, const Plain&) = default;
};

Plain Read(const Bitmap& picture);

// The expected result of an effect, pixel by pixel from the formulas in docs/effects.md.
Plain Expected(std::string_view command, const Bitmap& picture, std::span<const double> values);

}  // namespace kw::reference
