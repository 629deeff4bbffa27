#pragma once

#include <cstdint>

#include "components/base/Bitmap.h"
#include "picture/PictureFormat.h"

namespace kw {

// How stored rows and columns lie on the page, numbered as TIFF and Exif do: 1 upright, 2 mirrored, 3 upside down,
// 4 mirrored upside down, 5 transposed, 6 to be turned clockwise, 7 transposed along the other diagonal, 8 to be turned
// counter-clockwise. Other numbers count as 1.
using Orientation = std::uint16_t;

constexpr bool IsOnItsSide(Orientation orientation) { return orientation >= 5 && orientation <= 8; }

// The header of the upright page.
PageHeader Upright(const PageHeader& stored, Orientation orientation);

// Rotates and mirrors the picture upright, and swaps its resolution if needed. Raises InvalidPicture if the result
// exceeds the limits: a picture of few long rows takes more memory after a quarter turn.
Bitmap Upright(const Bitmap& stored, Orientation orientation, const ReadLimits& limits);

}  // namespace kw
