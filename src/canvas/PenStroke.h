#pragma once

#include <span>

#include "components/Bitmap.h"
#include "components/Units.h"
#include "drawing/Rasteriser.h"

namespace kw {

// A stroke through the points, round at joins and ends, as a picture that is transparent around it. Points are pixels
// of the picture. Raises InvalidProcedureCall for a size below 1.
Bitmap PictureOfStroke(std::span<const Point> points, double width, Colour colour, std::int32_t pictureWidth,
                       std::int32_t pictureHeight);

}  // namespace kw
