#pragma once

#include "components/Bitmap.h"
#include "picture/Stream.h"

namespace kw {

// Decodes the run-length coded pixels of a BMP file (RLE8 into a page of 8 bits per pixel, RLE4 into one of 4) from the
// stream's position on. Pixels that the code skips stay 0. Raises InvalidPicture where the code ends before its end
// mark and before the last row is full; runs that leave a row are cut off at its end.
void DecodeRunLength(Stream& file, bool topDown, Bitmap& page);

}  // namespace kw
