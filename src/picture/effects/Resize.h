#pragma once

#include <span>

#include "components/Bitmap.h"
#include "picture/effects/Effect.h"

namespace kw {

// Another size: `values` are the per cent of either side, a width and a height in pixels that override it (0: they do
// not), and the kernel for enlarging (0 Lanczos, 1 bicubic). A smaller side averages the area of each new pixel. The
// resolution stays. A picture with a palette becomes 8 bits where it is grey, else 24 bits; colours are weighted by
// alpha.
void Resize(Bitmap& picture, std::span<const double> values);

// Values that make of a copy of the picture, reduced to fit into `room`, what `values` make of the whole; where that
// does not fit into it, the largest picture of the same shape that does.
void ReduceResize(const Bitmap& whole, PictureSize room, std::span<double> values);

std::uint64_t MemoryOfResize(const Bitmap& picture, std::span<const double> values);

}  // namespace kw
