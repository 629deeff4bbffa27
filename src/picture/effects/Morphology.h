#pragma once

#include <span>

#include "components/base/Bitmap.h"

namespace kw {

// Each value becomes the greatest (Dilate) or least (Erode) of its 3x3 neighbourhood inside the picture. One bit stays
// one bit, the lighter palette entry being the greater; other pictures with a palette become 8 bits where it is grey,
// else 24 bits. Alpha stays.
void Dilate(Bitmap& picture, std::span<const double> values);
void Erode(Bitmap& picture, std::span<const double> values);

// A picture of 1 bit stays one.
std::uint64_t MemoryOfSpread(const Bitmap& picture, std::span<const double> values);

}  // namespace kw
