#pragma once

#include <span>

#include "components/base/Bitmap.h"

namespace kw {

// White where the brightness is at least the level, black elsewhere; level 0 stands for the one that Otsu's method
// finds. The result has 1 bit a pixel; transparent pixels lie on white paper.
void Threshold(Bitmap& picture, std::span<const double> values);
// Puts the level that is found in the picture in the place of 0.
void FindLevel(const Bitmap& picture, std::span<double> values);

// Black and white whose mixture looks like the brightness, by Floyd and Steinberg's error diffusion. As above else.
void Dither(Bitmap& picture, std::span<const double> values);

// To the next depth above or below; the last stays as it is.
void IncreaseBpp(Bitmap& picture, std::span<const double> values);
void DecreaseBpp(Bitmap& picture, std::span<const double> values);

std::uint64_t MemoryOfIncrease(const Bitmap& picture, std::span<const double> values);

}  // namespace kw
