#pragma once

#include <span>

#include "drawing/Rasteriser.h"

namespace kw {

// Outlines of figures for a rasteriser, all with the inside to the same side, so that figures given together unite.
// Sizes below zero count as zero; a figure without an area covers nothing.
//
// Curves are replaced by chords that stay within 1/160 pixel of them. What lies outside the rasteriser's clip is not
// divided into chords, so a curve of any size takes time in the size of the clip only.

struct Box {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  friend bool operator==(const Box&, const Box&) = default;
};

// The box, or nothing where left is not below right or top not below bottom.
void AddRectangle(Rasteriser& rasteriser, const Box& box);
// A band of the given width along the box's edges, half of it on each side, with square corners.
void AddRectangleStroke(Rasteriser& rasteriser, const Box& box, double width);

// The ellipse that touches the four sides of the box.
void AddEllipse(Rasteriser& rasteriser, const Box& box);
// All points that lie no farther than half the width from the ellipse's line.
void AddEllipseStroke(Rasteriser& rasteriser, const Box& box, double width);

// All points that lie no farther than half the width from the lines that join the points in their order: round joins
// and round ends. A single point gives a disc.
void AddPolylineStroke(Rasteriser& rasteriser, std::span<const Point> points, double width);

}  // namespace kw
