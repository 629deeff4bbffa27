#pragma once

#include <cstddef>
#include <cstdint>

#include "components/base/Bitmap.h"

namespace kw {

// A picture of up to 8 bits in 24 bits.
Bitmap IndicesToColours(const Bitmap& picture);

// A picture of 1 or 4 bits in more bits, 4 or 8, with the same palette.
Bitmap IndicesToMoreBits(const Bitmap& picture, int bitsPerPixel);

// Packs indices below 16, one byte each, into 4 bits; the half byte behind an odd number of them is 0.
void PackHalfBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);

}  // namespace kw
