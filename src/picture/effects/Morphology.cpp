#include "picture/effects/Morphology.h"

#include <algorithm>
#include <cstring>

#include "picture/effects/ColourFilter.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/Pixels.h"
#include "picture/effects/RowWindow.h"

namespace kw {
namespace {

// Unrounded, so that only entries of the same brightness are equal.
unsigned BrightnessOfEntry(const Bitmap& picture, std::size_t index) {
  if (index >= picture.Palette().size()) return 0;
  const Rgb colour = picture.Palette()[index];
  return 299U * colour.red + 587U * colour.green + 114U * colour.blue;
}

// `setBits`: a pixel gets the bit 1 where one of its neighbours has it, else the bit 0 where one has that.
void SpreadBits(Bitmap& picture, bool setBits) {
  const std::size_t count = picture.RowBytes();
  const unsigned tail = static_cast<unsigned>(picture.Width()) % 8;
  // What lies outside the page must not spread.
  const auto outside = static_cast<std::uint8_t>(setBits ? 0x00 : 0xFF);
  const auto tailMask = static_cast<std::uint8_t>(tail == 0 ? 0x00 : 0xFFU >> tail);
  RowFilter filter{1, 1, 0, {}, {}};
  filter.take = [=](const std::uint8_t* from, std::uint8_t* to) {
    std::memcpy(to, from, count);
    to[count - 1] = static_cast<std::uint8_t>(setBits ? to[count - 1] & ~tailMask : to[count - 1] | tailMask);
    to[-1] = outside;
    to[count] = outside;
  };
  filter.make = [=](const std::uint8_t* const* rows, std::uint8_t* to, std::uint8_t*) {
    setBits ? kernels::SpreadOnes(rows, to, count) : kernels::SpreadZeros(rows, to, count);
  };
  FilterRows(picture, filter);
}

void Spread(Bitmap& picture, bool light) {
  if (picture.BitsPerPixel() > 1) {
    OnValues(picture, [light](Bitmap& values) { FilterColours(values, light ? kernels::Greatest : kernels::Least); });
    return;
  }
  SpreadBits(picture, light == (BrightnessOfEntry(picture, 1) >= BrightnessOfEntry(picture, 0)));
}

}  // namespace

std::uint64_t MemoryOfSpread(const Bitmap& picture, std::span<const double> values) {
  return picture.BitsPerPixel() > 1 ? MemoryInValues(picture, values) : BytesOf(picture);
}

void Dilate(Bitmap& picture, std::span<const double> /*values*/) { Spread(picture, true); }

void Erode(Bitmap& picture, std::span<const double> /*values*/) { Spread(picture, false); }

}  // namespace kw
