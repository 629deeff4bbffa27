#pragma once

#include <algorithm>
#include <cmath>
#include <functional>

#include "tests/picture/effects/Reference.h"

// The building blocks of the reference's formulas.
namespace kw::reference {

using Values = std::span<const double>;

inline std::int32_t Floor(double value) { return static_cast<std::int32_t>(std::floor(value)); }
inline std::int32_t Round(double value) { return Floor(value + 0.5); }
inline std::int32_t Byte(std::int32_t value) { return std::clamp(value, 0, 255); }
// Division that rounds down.
inline std::int32_t Floored(std::int32_t value, std::int32_t by) { return (value - (value % by + by) % by) / by; }

inline std::int32_t Luma(const Pixel& p) { return (299 * p[2] + 587 * p[1] + 114 * p[0] + 500) / 1000; }

inline bool HasColours(const Bitmap& picture) {
  return std::ranges::any_of(picture.Palette(), [](Rgb c) { return c.red != c.green || c.green != c.blue; });
}

// The picture with the depth that filters give it.
inline Plain PlainValues(const Bitmap& picture) {
  Plain plain = Read(picture);
  if (plain.bitsPerPixel <= 8) plain.bitsPerPixel = HasColours(picture) ? 24 : 8;
  return plain;
}

// Each pixel from its place.
inline Plain Each(const Plain& like, const std::function<Pixel(std::int32_t, std::int32_t)>& make) {
  Plain result(like.width, like.height, like.bitsPerPixel);
  for (std::int32_t y = 0; y < like.height; ++y) {
    for (std::int32_t x = 0; x < like.width; ++x) result.At(x, y) = make(x, y);
  }
  return result;
}

// Each channel of each pixel, alpha left alone.
inline Plain EachChannel(const Plain& picture,
                         const std::function<std::int32_t(std::int32_t, std::int32_t, std::size_t)>& make) {
  return Each(picture, [&](std::int32_t x, std::int32_t y) {
    Pixel pixel = picture.At(x, y);
    for (std::size_t c = 0; c < 3; ++c) pixel[c] = Byte(make(x, y, c));
    return pixel;
  });
}

inline Plain MapChannels(const Bitmap& picture, const std::function<std::int32_t(std::int32_t)>& map) {
  const Plain plain = Read(picture);
  return EachChannel(plain, [&](std::int32_t x, std::int32_t y, std::size_t c) { return map(plain.At(x, y)[c]); });
}

inline Plain Premultiplied(Plain picture) {
  for (Pixel& p : picture.pixels) {
    for (std::size_t c = 0; c < 3; ++c) p[c] = (p[c] * p[3] + 127) / 255;
  }
  return picture;
}

inline Plain Unpremultiplied(Plain picture) {
  for (Pixel& p : picture.pixels) {
    for (std::size_t c = 0; c < 3; ++c) p[c] = p[3] == 0 ? 0 : std::min(255, (p[c] * 255 + p[3] / 2) / p[3]);
  }
  return picture;
}

inline Plain OnPaper(const Bitmap& picture) {
  Plain plain = Read(picture);
  for (Pixel& p : plain.pixels) {
    for (std::size_t c = 0; c < 3; ++c) p[c] = (p[c] * p[3] + 255 * (255 - p[3]) + 127) / 255;
  }
  return plain;
}

inline Pixel Grey(std::int32_t level) { return {level, level, level, 255}; }

// The effects that stand in files of their own.
Plain Blur(const Bitmap& picture, Values values);
Plain Soften(const Bitmap& picture, Values values);
Plain Sharpen(const Bitmap& picture, Values values);
Plain Emboss(const Bitmap& picture, Values values);
Plain Edge(const Bitmap& picture, Values values);
Plain Dilate(const Bitmap& picture, Values values);
Plain Erode(const Bitmap& picture, Values values);
Plain Resize(const Bitmap& picture, Values values);
Plain IncreaseBpp(const Bitmap& picture, Values values);
Plain DecreaseBpp(const Bitmap& picture, Values values);

}  // namespace kw::reference
