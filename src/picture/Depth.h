#pragma once

#include "components/base/Bitmap.h"

namespace kw {

// The picture in another depth (1, 4, 8, 24 or 32 bits per pixel); the same pixels where it has it already. Size and
// resolution stay.
// - To more bits nothing is lost: a palette stays as it is, 24 bits get an opaque alpha.
// - To 24 bits transparent pixels are laid on white paper.
// - To 4 and 8 bits the palette is exact where the colours fit, else it is made by median cut; no dithering.
// - To 1 bit a picture of two colours keeps them; any other becomes black up to the brightness 128 and white above.
Bitmap ToDepth(const Bitmap& picture, int bitsPerPixel);

// True for a depth up to 8 whose palette holds greys only.
bool HasGreyPalette(const Bitmap& picture);

// A picture with a grey palette as 8 bits per pixel whose index is the level of grey.
Bitmap ToGreyLevels(const Bitmap& picture);

// Brightness of a colour, 0 to 255 (ITU-R BT.601).
std::uint8_t Luma(Rgb colour);

}  // namespace kw
