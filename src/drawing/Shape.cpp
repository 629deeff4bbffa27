#include "drawing/Shape.h"

#include <algorithm>

#include "drawing/Blend.h"

namespace kw {
namespace {

constexpr std::int32_t PrefetchRows = 3;

// Paints the rasteriser's outlines in a colour, with the draw options applied.
void Paint(const FrameBuffer& target, Rasteriser& rasteriser, Colour colour, const DrawOptions& options) {
  const std::uint32_t pixel = options.isLightened ? Lightened(PixelOf(colour)) : PixelOf(colour);
  rasteriser.Sweep([&](std::int32_t y, std::int32_t left, std::int32_t right, int coverage) {
    const auto row = target.Row(y, left, right);
    // Prefetch the pixels some rows below: edges mostly continue there.
    if (y + PrefetchRows < target.area.bottom) __builtin_prefetch(row.data() + PrefetchRows * target.stride, 1);
    if (coverage == 255) {
      std::ranges::fill(row, pixel);
    } else {
      for (std::uint32_t& below : row) below = Mix(below, pixel, static_cast<std::uint32_t>(coverage));
    }
  });
}

}  // namespace

void PaintCoverage(const FrameBuffer& target, Rasteriser& rasteriser, Colour colour) {
  Paint(target, rasteriser, colour, {});
}

void DrawShape(const FrameBuffer& target, const Shape& shape, Point origin, const PixelRect& part,
               const DrawOptions& options, Rasteriser& rasteriser) {
  const PixelRect clip = Common(part, target.area);
  if (clip.IsEmpty()) return;
  const Box box = {shape.box.left + origin.x, shape.box.top + origin.y, shape.box.right + origin.x,
                   shape.box.bottom + origin.y};
  const bool hasInside = shape.kind == Shape::Kind::Rectangle || shape.kind == Shape::Kind::Ellipse;
  if (hasInside && shape.fill && shape.fill != options.transparent) {
    rasteriser.Begin(clip);
    if (shape.kind == Shape::Kind::Ellipse) {
      AddEllipse(rasteriser, box);
    } else {
      AddRectangle(rasteriser, box);
    }
    Paint(target, rasteriser, *shape.fill, options);
  }
  if (!(shape.lineWidth > 0) || options.transparent == shape.lineColour) return;
  rasteriser.Begin(clip);
  switch (shape.kind) {
    case Shape::Kind::Rectangle:
      AddRectangleStroke(rasteriser, box, shape.lineWidth);
      break;
    case Shape::Kind::Ellipse:
      AddEllipseStroke(rasteriser, box, shape.lineWidth);
      break;
    case Shape::Kind::Line: {
      const Point ends[] = {{box.left, box.top}, {box.right, box.bottom}};
      AddPolylineStroke(rasteriser, ends, shape.lineWidth);
      break;
    }
    case Shape::Kind::Polyline: {
      std::vector<Point> points = shape.points;
      for (Point& point : points) point = {point.x + origin.x, point.y + origin.y};
      AddPolylineStroke(rasteriser, points, shape.lineWidth);
      break;
    }
  }
  Paint(target, rasteriser, shape.lineColour, options);
}

}  // namespace kw
