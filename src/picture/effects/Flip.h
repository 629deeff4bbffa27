#pragma once

#include <span>

#include "components/base/Bitmap.h"

namespace kw {

// Left becomes right. Any depth stays.
void HorizontalFlip(Bitmap& picture, std::span<const double> values);

// Top becomes bottom. Any depth stays.
void VerticalFlip(Bitmap& picture, std::span<const double> values);

}  // namespace kw
