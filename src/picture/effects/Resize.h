#pragma once

#include <span>

#include "components/base/Bitmap.h"
#include "picture/effects/Effect.h"

namespace kw {

// Another size: `values` are the per cent of either side, a width and a height in pixels, of which one that is not 0
// overrides it, and the kernel for enlarging (0 Lanczos, 1 bicubic). Where only one of width and height is given, the
// other side follows in proportion. A smaller side averages the area of each new pixel. The resolution stays. A picture
// with a palette becomes 8 bits where it is grey, else 24 bits; colours are weighted by alpha.
void Resize(Bitmap& picture, std::span<const double> values);

std::uint64_t MemoryOfResize(const Bitmap& picture, std::span<const double> values);

}  // namespace kw
