#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "components/base/Units.h"
#include "drawing/DrawOptions.h"
#include "drawing/FrameBuffer.h"
#include "drawing/Outline.h"

namespace kw {

// A vector figure, drawn when it is needed, sharp at any size.
struct Shape {
  enum class Kind : std::uint8_t {
    Rectangle,  // the box with square corners
    Ellipse,    // inscribed in the box
    Line,       // from the box's (left, top) to its (right, bottom), in any direction
    Polyline,   // through the points
  };

  Kind kind = Kind::Rectangle;
  Box box = {};                    // pixels; the middle of the line
  std::vector<Point> points = {};  // for a polyline
  double lineWidth = 1;            // pixels; 0 or less draws none
  Colour lineColour = 0;
  std::optional<Colour> fill = std::nullopt;  // for a rectangle or an ellipse
  friend bool operator==(const Shape&, const Shape&) = default;
};

// Draws the fill and the line above it, anti-aliased, clipped to `part` and to the buffer. The shape's coordinates are
// relative to `origin`. A line or fill of the options' transparent colour is left out. `rasteriser` is scratch; reusing
// one saves allocations.
void DrawShape(const FrameBuffer& target, const Shape& shape, Point origin, const PixelRect& part,
               const DrawOptions& options, Rasteriser& rasteriser);

// Paints the area inside the rasteriser's edges in one colour. The rasteriser's clip must lie inside the buffer.
void PaintCoverage(const FrameBuffer& target, Rasteriser& rasteriser, Colour colour);

}  // namespace kw
