#pragma once

#include <span>

#include "components/base/Bitmap.h"

namespace kw {

// Turns the picture clockwise by values[0] degrees. Multiples of 90 move pixels and keep any depth. Other angles blend
// the four nearest pixels, on a page large enough for all of them; what the picture does not reach is white, or
// transparent where there is alpha. A picture with a palette becomes 8 bits where it is grey, else 24 bits.
void Rotate(Bitmap& picture, std::span<const double> values);

std::uint64_t MemoryOfRotate(const Bitmap& picture, std::span<const double> values);

}  // namespace kw
