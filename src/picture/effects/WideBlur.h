#pragma once

#include <cstdint>
#include <vector>

#include "components/base/Bitmap.h"

namespace kw {

// From this standard deviation on, in pixels, a picture is blurred in a smaller size.
constexpr double LeastWideSigma = 5;

// Blurs a picture of 8, 24 or 32 bits of values by a Gaussian bell that is at least that wide; colours are weighted by
// alpha. docs/effects.md has the formula. If it throws, the picture is as it was. Besides the picture it takes less
// than one page's memory.
void BlurWidely(Bitmap& picture, double sigma);

// One side of a Gaussian bell, the middle first, in 32768ths; both sides add up to 32768. Empty if the bell is so
// narrow that only the middle counts.
std::vector<std::int16_t> BellWeights(double sigma, std::int32_t radius);

}  // namespace kw
