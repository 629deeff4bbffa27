#include <algorithm>
#include <cstring>

#include "picture/effects/ColourFilter.h"
#include "picture/effects/Families.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/Pixels.h"
#include "picture/effects/RowWindow.h"

namespace kw {
namespace {

// Unrounded luma times 1000, so that only entries of the same luma are equal.
unsigned LumaOfEntry(const Bitmap& picture, std::size_t index) {
  if (index >= picture.Palette().size()) return 0;
  const Rgb colour = picture.Palette()[index];
  return 299U * colour.red + 587U * colour.green + 114U * colour.blue;
}

// A pixel takes the bit 1 (`setBits`) or 0 (else) if it or one of its neighbours has it.
void MorphBits(Bitmap& picture, bool setBits) {
  const std::size_t count = picture.RowBytes();
  const unsigned tail = static_cast<unsigned>(picture.Width()) % 8;
  // Pixels outside the page must not spread into it.
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
    setBits ? kernels::DilateBits(rows, to, count) : kernels::ErodeBits(rows, to, count);
  };
  FilterRows(picture, filter);
}

// Pixels without alpha: a row is taken with the greatest or least of its neighbours already, so that three such rows
// make a new one. The first and the last pixel have one neighbour.
void MorphValues(Bitmap& picture, bool light) {
  const auto size = static_cast<std::size_t>(picture.BitsPerPixel() / 8);
  const std::size_t count = picture.RowBytes();
  const auto across = light ? kernels::DilateAcross : kernels::ErodeAcross;
  RowFilter filter{1, size, 0, {}, {}};
  filter.take = [=](const std::uint8_t* from, std::uint8_t* to) {
    if (count > 2 * size) across(from + size, to + size, count - 2 * size, size);
    const std::size_t last = count - size;
    const std::size_t next = count > size ? size : 0;
    for (std::size_t c = 0; c < size; ++c) {
      const auto both = [light](std::uint8_t a, std::uint8_t b) { return light ? std::max(a, b) : std::min(a, b); };
      to[c] = both(from[c], from[next + c]);
      to[last + c] = both(from[last + c], from[last - next + c]);
    }
  };
  filter.make = [=](const std::uint8_t* const* rows, std::uint8_t* to, std::uint8_t*) {
    light ? kernels::DilateDown(rows, to, count) : kernels::ErodeDown(rows, to, count);
  };
  FilterRows(picture, filter);
}

void Morph(Bitmap& picture, bool light) {
  if (picture.BitsPerPixel() > 1) {
    OnValues(picture, [light](Bitmap& values) {
      if (values.BitsPerPixel() != 32) return MorphValues(values, light);
      FilterColours(values, light ? kernels::DilateBytes : kernels::ErodeBytes);
    });
    return;
  }
  MorphBits(picture, light == (LumaOfEntry(picture, 1) >= LumaOfEntry(picture, 0)));
}

std::uint64_t MemoryOfMorphology(const Bitmap& picture, std::span<const double> values) {
  return picture.BitsPerPixel() > 1 ? MemoryInValues(picture, values) : BytesOf(picture);
}

void Dilate(Bitmap& picture, std::span<const double> /*values*/) { Morph(picture, true); }

void Erode(Bitmap& picture, std::span<const double> /*values*/) { Morph(picture, false); }

constexpr std::string_view DepthOfMorphology =
    "1 as before; 4 and 8: 8 where the palette is grey, else 24; 24 and 32 as before";

// Each value becomes the greatest (Dilate) or least (Erode) of its 3x3 neighbourhood inside the picture. 1 bit stays 1
// bit, and the lighter palette entry counts as the greater value; other pictures with a palette become 8 bits if it is
// grey, else 24 bits. Alpha stays.
constexpr Effect MorphologyEffectsRows[] = {
    {.command = "Dilate", .procedure = Dilate, .resultingDepth = DepthOfMorphology, .memory = MemoryOfMorphology},
    {.command = "Erode", .procedure = Erode, .resultingDepth = DepthOfMorphology, .memory = MemoryOfMorphology},
};

}  // namespace

std::span<const Effect> MorphologyEffects() { return MorphologyEffectsRows; }

}  // namespace kw
