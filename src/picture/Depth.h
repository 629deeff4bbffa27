#pragma once

#include "components/base/Bitmap.h"

namespace kw {

// Converts the picture to another depth (1, 4, 8, 24 or 32 bits per pixel); returns the same pixels if it has that
// depth already. Size and resolution stay.
// - To more bits nothing is lost: a palette stays as it is, 24 bits get an opaque alpha.
// - To 24 bits transparent pixels are blended with a white background.
// - To 4 and 8 bits the palette is exact if the colours fit into it, else it is a median cut; no dithering.
// - To 1 bit a picture of two colours keeps them; any other becomes black up to luma 128 and white above.
Bitmap ToDepth(const Bitmap& picture, int bitsPerPixel);

// The greatest luma that becomes black in 1 bit. A line of one pixel has it after a filter has spread the line, and
// must stay a line.
constexpr std::uint8_t LightestBlack = 128;

// True for up to 8 bits per pixel and a palette of greys only.
bool HasGreyPalette(const Bitmap& picture);

// Converts a picture with a grey palette to 8 bits per pixel; the index is the level of grey.
Bitmap ToGreyLevels(const Bitmap& picture);

// The luma of a colour, 0 to 255 (ITU-R BT.601).
constexpr std::uint8_t Luma(Rgb colour) {
  return static_cast<std::uint8_t>((299U * colour.red + 587U * colour.green + 114U * colour.blue + 500U) / 1000U);
}

}  // namespace kw
