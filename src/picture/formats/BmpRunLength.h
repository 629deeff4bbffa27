#pragma once

#include "components/base/Bitmap.h"
#include "picture/Stream.h"

namespace kw {

// Decodes the run-length coded pixels of a BMP file (RLE8 into a page of 8 bits per pixel, RLE4 into one of 4) from the
// stream's position on. Pixels that the code skips stay 0; runs are cut off at the end of a row. Returns the number of
// whole rows from the first coded one on, which is less than all if the code ends too early.
std::int32_t DecodeRunLength(Stream& file, bool topDown, Bitmap& page);

}  // namespace kw
