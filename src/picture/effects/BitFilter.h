#pragma once

#include "components/base/Bitmap.h"
#include "picture/effects/RowWindow.h"

namespace kw {

// Filters a picture of 1 bit with a grey palette in values of 8 bits, of which only a few rows exist at a time. The
// result has 1 bit: it is what ToDepth makes of the filtered InValues(picture). `filter` has its radius, its scratch
// memory and `make` for pixels of one byte. If it throws, the picture is as it was.
void FilterBits(Bitmap& picture, const RowFilter& filter);

}  // namespace kw
