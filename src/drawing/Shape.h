#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "components/base/Units.h"
#include "drawing/DrawOptions.h"
#include "drawing/FrameBuffer.h"
#include "drawing/Outline.h"

namespace kw {

// A figure that is kept as such and drawn when it is needed: at any size as sharp as at first.
struct Shape {
  enum class Kind : std::uint8_t {
    Rectangle,  // the box, square corners
    Ellipse,    // touches the box
    Line,       // from the box's left top to its right bottom; left may lie to the right of right, top below bottom
    Polyline,   // through the points
  };

  Kind kind = Kind::Rectangle;
  Box box = {};                    // pixels; the middle of the line, half of whose width lies on each side
  std::vector<Point> points = {};  // of a polyline
  double lineWidth = 1;            // pixels; none is drawn for 0 or less
  Colour lineColour = 0;
  std::optional<Colour> fill = std::nullopt;  // of a rectangle or an ellipse
  friend bool operator==(const Shape&, const Shape&) = default;
};

// Draws the filled inside and the line above it, anti-aliased, clipped to `part` and to the buffer. The shape's
// coordinates count from `origin`. What has the look's transparent colour is left out: a line or a fill as a whole.
// The rasteriser is only borrowed; one that is used again saves its memory's allocation.
void DrawShape(const FrameBuffer& target, const Shape& shape, Point origin, const PixelRect& part,
               const DrawOptions& options, Rasteriser& rasteriser);

// Paints what a rasteriser's edges enclose, as it was begun, in one colour. Its clip must lie inside the buffer.
void PaintCoverage(const FrameBuffer& target, Rasteriser& rasteriser, Colour colour);

}  // namespace kw
