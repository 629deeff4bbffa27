#pragma once

#include <span>

#include "components/base/Bitmap.h"

namespace kw {

// Effects that look at the pixels around each; beyond the edges the outermost pixels go on. A picture with a palette
// becomes 8 bits where the palette is grey, else 24 bits. Blur and Soften weigh colours by their alpha and filter it
// too; the others leave it.
void Blur(Bitmap& picture, std::span<const double> values);
void Soften(Bitmap& picture, std::span<const double> values);
void Sharpen(Bitmap& picture, std::span<const double> values);
void Edge(Bitmap& picture, std::span<const double> values);
void Emboss(Bitmap& picture, std::span<const double> values);

}  // namespace kw
