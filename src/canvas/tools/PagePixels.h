#pragma once

#include <optional>

#include "components/base/Bitmap.h"
#include "components/controls/TransparentPicture.h"
#include "drawing/PixelRect.h"

namespace kw {

// The colour of the page at a point of the canvas; none beside the page. White paper is white.
std::optional<Colour> ColourOfPageAt(const TransparentPicture& page, float x, float y);

// A copy of what the page shows in a part of the canvas, 24 bits deep; white beside the page. Raises OutOfMemory.
Bitmap CopyOfPage(const TransparentPicture& page, const PixelRect& area);

// The pixels of the page around a point that are connected with it, side by side, and whose red, green and blue differ
// from its colour by no more than `tolerance`.
struct PageRegion {
  // Where it lies on the canvas.
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
  // In the page's own pixels, 32 bits deep: the colour asked for in the region, and alpha 0 outside.
  Bitmap picture;
};
// None if the point lies beside the page. Raises OutOfMemory.
std::optional<PageRegion> RegionOfPageAt(const TransparentPicture& page, float x, float y, Colour colour,
                                         int tolerance);

// A colour that differs from this one in every bit, for a picture in which nothing but alpha is to be transparent.
constexpr Colour OtherThan(Colour colour) { return ~colour & 0xFFFFFFU; }

}  // namespace kw
