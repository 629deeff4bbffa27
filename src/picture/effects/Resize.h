#pragma once

#include <span>

#include "components/Bitmap.h"

namespace kw {

// Another size: `values` are the per cent of either side, a width and a height in pixels that override it (0: they do
// not), and the kernel for enlarging (0 Lanczos, 1 bicubic). A smaller side averages the area of each new pixel. The
// resolution stays. A picture with a palette becomes 8 bits where it is grey, else 24 bits; colours are weighted by
// alpha.
void Resize(Bitmap& picture, std::span<const double> values);

}  // namespace kw
