#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

#include "components/base/Bitmap.h"
#include "components/base/RowPadding.h"

namespace kw {

// The pixels of an unshared bitmap, for loops over rows, with their padding (see RowPadding.h). Valid until the bitmap
// is copied, moved or resized.
struct Pixels {
  explicit Pixels(Bitmap& picture) : base(picture.MutableRow(0).data()), stride(picture.Stride()) {
    AllowPadding({base, stride, picture.RowBytes(), static_cast<std::size_t>(picture.Height())});
  }
  std::uint8_t* Row(std::int32_t y) const { return base + static_cast<std::size_t>(y) * stride; }

  std::uint8_t* base;
  std::size_t stride;
};

// As above, for reading only.
struct ConstPixels {
  explicit ConstPixels(const Bitmap& picture) : base(picture.Row(0).data()), stride(picture.Stride()) {
    AllowPadding({base, stride, picture.RowBytes(), static_cast<std::size_t>(picture.Height())});
  }
  const std::uint8_t* Row(std::int32_t y) const { return base + static_cast<std::size_t>(y) * stride; }

  const std::uint8_t* base;
  std::size_t stride;
};

// Begins to load a row into the caches, for the loop that comes to it next. If the processor's lines are longer, a line
// is asked for twice, which is harmless.
inline void PrefetchRow(const std::uint8_t* row, std::size_t count) {
  constexpr std::size_t cacheLine = 64;
  for (std::size_t i = 0; i < count; i += cacheLine) __builtin_prefetch(row + i);
}

using Lut = std::array<std::uint8_t, 256>;

constexpr std::uint8_t ToByte(std::int32_t value) {
  return static_cast<std::uint8_t>(value < 0 ? 0 : value > 255 ? 255 : value);
}

// A new picture of that size and depth with the same resolution; up to 8 bits its palette is a grey ramp. Its pixels
// are uninitialised.
Bitmap Like(const Bitmap& picture, std::int32_t width, std::int32_t height, int bitsPerPixel);

// A picture of which every row is made anew. If another picture shares its pixels, the new rows have memory of their
// own, which saves a copy of the old ones; else they take their place. The picture itself must not be touched between
// the constructor and Finish.
class Remade {
public:
  // If it throws, the picture is as it was.
  explicit Remade(Bitmap& original);

  const ConstPixels& Old() const { return old; }
  const Pixels& New() const { return rows; }
  // A row to change in place: if it has memory of its own, the old one is copied there.
  std::uint8_t* Row(std::int32_t y) const {
    std::uint8_t* const row = rows.Row(y);
    if (rows.base != old.base) std::memcpy(row, old.Row(y), rowBytes);
    return row;
  }

  // The picture gets the new rows. Without this call it is as it was if they have memory of their own.
  void Finish();

private:
  Bitmap& picture;
  // Empty if the new rows take the place of the old ones.
  Bitmap made;
  ConstPixels old;
  Pixels rows;
  std::size_t rowBytes;
};

// Bytes of all pixels, as a measure of work.
std::uint64_t BytesOf(const Bitmap& picture);

// True for 8 bits per pixel if each index is its level of grey.
bool HasGreyRamp(const Bitmap& picture);

// Converts a picture with a palette to values to calculate with: 8 bits with a grey ramp if the palette is grey, else
// 24 bits. Others share their pixels with the result.
Bitmap InValues(const Bitmap& picture);

// The level of each entry of a grey palette; an index that has no entry is black.
Lut GreyLevels(const Bitmap& picture);

// Bytes of the pixels of InValues(picture).
std::uint64_t MemoryInValues(const Bitmap& picture, std::span<const double> values);
// The depth of InValues(picture).
int DepthInValues(const Bitmap& picture);

// Lets work(Bitmap&) change the picture in values. If it throws before it writes, the picture is as it was.
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

// Multiplies the colours of `pixels` pixels of 32 bits by their alpha, and divides them again. Opaque pixels stay as
// they are. Premultiply also works in place.
void Premultiply(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void Unpremultiply(std::uint8_t* row, std::size_t pixels);

}  // namespace kw
