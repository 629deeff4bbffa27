#pragma once

#include <span>

#include "components/base/Bitmap.h"

namespace kw {

// Effects that look at each pixel alone. A picture with a palette gets another palette and keeps its pixels; alpha
// stays. `values` are the parameters of the effect's row in the table.
void Invert(Bitmap& picture, std::span<const double> values);
void Lighten(Bitmap& picture, std::span<const double> values);
void Darken(Bitmap& picture, std::span<const double> values);
void Contrast(Bitmap& picture, std::span<const double> values);
void GrayScale(Bitmap& picture, std::span<const double> values);
void Colorize(Bitmap& picture, std::span<const double> values);

}  // namespace kw
