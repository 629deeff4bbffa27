#pragma once

#include <span>

#include "drawing/Rasteriser.h"

namespace kw {

// Outlines of figures for a rasteriser, all with the same winding, so that figures added together unite. Negative sizes
// count as 0; a figure without an area covers nothing.
//
// Curves become chords with an error of at most 1/160 pixel. Outside the rasteriser's clip curves are not divided, so
// the time depends on the clip, not on the curve's size.

struct Box {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  friend bool operator==(const Box&, const Box&) = default;
};

// Adds the box; nothing unless left < right and top < bottom.
void AddRectangle(Rasteriser& rasteriser, const Box& box);
// Adds a band of the given width along the box's edges, half of it on each side, with square corners.
void AddRectangleStroke(Rasteriser& rasteriser, const Box& box, double width);

// Adds the ellipse inscribed in the box.
void AddEllipse(Rasteriser& rasteriser, const Box& box);
// Adds all points at most half the width away from the ellipse's line.
void AddEllipseStroke(Rasteriser& rasteriser, const Box& box, double width);

// Adds all points at most half the width away from the polyline: round joins and round ends. A single point gives a
// disc.
void AddPolylineStroke(Rasteriser& rasteriser, std::span<const Point> points, double width);

}  // namespace kw
