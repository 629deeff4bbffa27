#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "components/base/Bitmap.h"

namespace kw {

// The pixels of a bitmap that is not shared, for loops over rows. Valid while the bitmap is neither copied, moved nor
// changed in size.
struct Pixels {
  explicit Pixels(Bitmap& picture) : base(picture.MutableRow(0).data()), stride(picture.Stride()) {}
  std::uint8_t* Row(std::int32_t y) const { return base + static_cast<std::size_t>(y) * stride; }

  std::uint8_t* base;
  std::size_t stride;
};

// The same to read only.
struct ConstPixels {
  explicit ConstPixels(const Bitmap& picture) : base(picture.Row(0).data()), stride(picture.Stride()) {}
  const std::uint8_t* Row(std::int32_t y) const { return base + static_cast<std::size_t>(y) * stride; }

  const std::uint8_t* base;
  std::size_t stride;
};

using ByteTable = std::array<std::uint8_t, 256>;

constexpr std::uint8_t ToByte(std::int32_t value) {
  return static_cast<std::uint8_t>(value < 0 ? 0 : value > 255 ? 255 : value);
}

// A picture of that size and depth with the same resolution and, up to 8 bits, a grey ramp.
Bitmap Like(const Bitmap& picture, std::int32_t width, std::int32_t height, int bitsPerPixel);

// Bytes of all pixels, as a measure of work.
std::uint64_t BytesOf(const Bitmap& picture);

// True for 8 bits whose index is the level of grey.
bool HasGreyRamp(const Bitmap& picture);

// The picture in values that can be calculated with: one with a palette becomes 8 bits with a grey ramp where the
// palette is grey, else 24 bits. Others share their pixels with the result.
Bitmap InValues(const Bitmap& picture);

// Bytes of the pixels of InValues(picture).
std::uint64_t MemoryInValues(const Bitmap& picture, std::span<const double> values);
// The depth of InValues(picture).
int DepthInValues(const Bitmap& picture);

// Lets work(Bitmap&) change the picture in values. Where that throws before it writes, the picture is as it was.
template <typename Work>
void OnValues(Bitmap& picture, const Work& work) {
  Bitmap values = InValues(picture);
  if (ConstPixels(values).base == ConstPixels(picture).base) {
    values = {};
    work(picture);
  } else {
    work(values);
    picture = std::move(values);
  }
}

// Colours multiplied by their alpha, and back, for `pixels` pixels of 32 bits; opaque pixels stay as they are. In
// place or from one row to another.
void Premultiply(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void Unpremultiply(std::uint8_t* row, std::size_t pixels);

}  // namespace kw
