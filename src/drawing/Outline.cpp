#include "drawing/Outline.h"

#include <array>
#include <cmath>
#include <optional>

namespace kw {
namespace {

constexpr double Flatness = 1.0 / 256;
// Sharper bends than this have no useful point where their inner sides meet.
constexpr double LeastCosine = -0.999;
constexpr int LeastDepth = 2;
constexpr int MostDepth = 24;
// Beyond this the rasteriser takes all for equally far; keeping to it here keeps every product finite.
constexpr double Farthest = 1e9;

double Limited(double value) { return std::isnan(value) ? 0 : std::clamp(value, -Farthest, Farthest); }

Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
Point operator*(Point a, double factor) { return {a.x * factor, a.y * factor}; }
double Dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }
double Cross(Point a, Point b) { return a.x * b.y - a.y * b.x; }
double Length(Point a) { return std::sqrt(Dot(a, a)); }
// A quarter turn, from right to down.
Point Turned(Point a) { return {-a.y, a.x}; }

// The line that runs at a distance along an ellipse; with no radii a circle. A unit vector, the normal, names a point.
struct OffsetEllipse {
  Point centre;
  double radiusX = 0;
  double radiusY = 0;
  double offset = 0;

  Point OnEllipse(Point normal) const {
    const double x = radiusX * normal.x;
    const double y = radiusY * normal.y;
    const double length = std::sqrt(x * x + y * y);
    if (length <= 0) return centre;
    return {centre.x + radiusX * x / length, centre.y + radiusY * y / length};
  }
};

struct ArcEnd {
  Point normal;
  Point onEllipse;
  Point at;
};

class ArcWalker {
public:
  // An arc walked backward lets its edges run against the direction in which it is divided.
  ArcWalker(Rasteriser& to, const OffsetEllipse& along, bool runsBackward)
      : rasteriser(to), curve(along), isBackward(runsBackward) {}

  // The arc between two normals that are not more than a quarter turn apart and, where the ellipse has radii, in one
  // quadrant.
  void Walk(Point fromNormal, Point toNormal) { Divide(EndAt(fromNormal), EndAt(toNormal), 0); }

private:
  ArcEnd EndAt(Point normal) const {
    const Point onEllipse = curve.OnEllipse(normal);
    return {normal, onEllipse, onEllipse + normal * curve.offset};
  }

  void AddChord(Point a, Point b) {
    if (isBackward) std::swap(a, b);
    rasteriser.AddEdge(a, b);
  }

  void Divide(const ArcEnd& from, const ArcEnd& to, int depth) {
    const PixelRect& clip = rasteriser.Clip();
    // A circle's arc of up to a quarter turn leaves the bounds of its ends by less than a quarter of its chord.
    const double bulge = std::abs(curve.offset) * Length(to.normal - from.normal) / 4;
    const auto [lowY, highY] = std::minmax(from.at.y, to.at.y);
    const double spreadY = bulge + std::abs(to.onEllipse.y - from.onEllipse.y);
    if (highY + spreadY <= clip.top || lowY - spreadY >= clip.bottom) return;
    const auto [lowX, highX] = std::minmax(from.at.x, to.at.x);
    const double spreadX = bulge + std::abs(to.onEllipse.x - from.onEllipse.x);
    const bool isBeside = highX + spreadX < clip.left || lowX - spreadX >= clip.right;
    if (isBeside || depth == MostDepth) {
      AddChord(from.at, to.at);
      return;
    }
    const Point sum = from.normal + to.normal;
    const ArcEnd middle = EndAt(sum * (1 / Length(sum)));
    const Point deviation = middle.at - (from.at + to.at) * 0.5;
    if (depth >= LeastDepth && Dot(deviation, deviation) <= Flatness * Flatness) {
      AddChord(from.at, to.at);
      return;
    }
    Divide(from, middle, depth + 1);
    Divide(middle, to, depth + 1);
  }

  Rasteriser& rasteriser;
  const OffsetEllipse& curve;
  bool isBackward;
};

void AddClosedCurve(Rasteriser& rasteriser, const OffsetEllipse& curve, bool isBackward) {
  constexpr std::array<Point, 5> axes = {{{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 0}}};
  ArcWalker walker(rasteriser, curve, isBackward);
  for (std::size_t i = 0; i + 1 < axes.size(); ++i) walker.Walk(axes[i], axes[i + 1]);
}

OffsetEllipse EllipseIn(const Box& box, double offset) {
  const double left = Limited(box.left);
  const double top = Limited(box.top);
  const double right = std::max(left, Limited(box.right));
  const double bottom = std::max(top, Limited(box.bottom));
  return {{(left + right) / 2, (top + bottom) / 2}, (right - left) / 2, (bottom - top) / 2, offset};
}

void AddBox(Rasteriser& rasteriser, const Box& box, bool isBackward) {
  if (!(box.left < box.right && box.top < box.bottom)) return;
  Point rightTop = {box.right, box.top};
  Point rightBottom = {box.right, box.bottom};
  Point leftTop = {box.left, box.top};
  Point leftBottom = {box.left, box.bottom};
  if (isBackward) {
    std::swap(rightTop, rightBottom);
    std::swap(leftTop, leftBottom);
  }
  rasteriser.AddEdge(rightTop, rightBottom);
  rasteriser.AddEdge(leftBottom, leftTop);
}

// A half circle or less around a joint or an end, from one normal to another, in the direction of Turned.
void AddRound(Rasteriser& rasteriser, Point centre, double radius, Point from, Point to) {
  if (from == to) return;
  const OffsetEllipse circle = {centre, 0, 0, radius};
  ArcWalker walker(rasteriser, circle, false);
  if (Dot(from, to) >= 0) {
    walker.Walk(from, to);
    return;
  }
  // More than a quarter turn: by way of the direction halfway, which also serves normals that are opposite.
  Point middle = Turned(from - to);
  middle = middle * (1 / Length(middle));
  walker.Walk(from, middle);
  walker.Walk(middle, to);
}

// One side of a stroke in the making: an open chain of edges that both sides' rounds will close.
class StrokeSide {
public:
  StrokeSide(Rasteriser& to, Point start, bool runsBackward) : rasteriser(to), at(start), isBackward(runsBackward) {}

  void LineTo(Point next) {
    if (isBackward) {
      rasteriser.AddEdge(next, at);
    } else {
      rasteriser.AddEdge(at, next);
    }
    at = next;
  }
  void JumpTo(Point next) { at = next; }

  // How much of the present segment's length a joint at its start has cut off on this side.
  double used = 0;

private:
  Rasteriser& rasteriser;
  Point at;
  bool isBackward;
};

struct Segment {
  Point from;
  Point to;
  Point normal;  // unit, a quarter turn from the direction
  double length = 0;
};

// The inner side of a bend: the two sides are cut where they meet, or, where the segments are too short for that, both
// run to the joint itself, so that nothing is covered that lies outside the stroke.
void JoinInside(StrokeSide& side, const Segment& a, const Segment& b, double signedHalf) {
  const double cosine = Dot(a.normal, b.normal);
  const double cut = std::abs(signedHalf * Cross(a.normal, b.normal)) / (1 + cosine);
  if (cosine > LeastCosine && cut <= a.length - side.used && cut <= b.length) {
    side.LineTo(a.to + (a.normal + b.normal) * (signedHalf / (1 + cosine)));
    side.used = cut;
    return;
  }
  side.LineTo(a.to + a.normal * signedHalf);
  side.LineTo(a.to);
  side.LineTo(a.to + b.normal * signedHalf);
  side.used = 0;
}

void Join(Rasteriser& rasteriser, StrokeSide& left, StrokeSide& right, const Segment& a, const Segment& b,
          double half) {
  const bool turnsRight = Cross(a.normal, b.normal) >= 0;  // y runs downward
  if (turnsRight) {
    JoinInside(right, a, b, half);
    left.LineTo(a.to - a.normal * half);
    left.JumpTo(a.to - b.normal * half);
    left.used = 0;
    AddRound(rasteriser, a.to, half, a.normal * -1, b.normal * -1);
  } else {
    JoinInside(left, a, b, -half);
    right.LineTo(a.to + a.normal * half);
    right.JumpTo(a.to + b.normal * half);
    right.used = 0;
    AddRound(rasteriser, a.to, half, b.normal, a.normal);
  }
}

std::optional<Segment> SegmentBetween(Point from, Point to) {
  const Point way = to - from;
  const double length = Length(way);
  if (length <= 0) return std::nullopt;
  return Segment{from, to, Turned(way) * (1 / length), length};
}

}  // namespace

void AddRectangle(Rasteriser& rasteriser, const Box& box) { AddBox(rasteriser, box, false); }

void AddRectangleStroke(Rasteriser& rasteriser, const Box& box, double width) {
  if (!(width > 0) || !(box.left <= box.right && box.top <= box.bottom)) return;
  const double half = width / 2;
  AddBox(rasteriser, {box.left - half, box.top - half, box.right + half, box.bottom + half}, false);
  AddBox(rasteriser, {box.left + half, box.top + half, box.right - half, box.bottom - half}, true);
}

void AddEllipse(Rasteriser& rasteriser, const Box& box) {
  const OffsetEllipse ellipse = EllipseIn(box, 0);
  if (ellipse.radiusX > 0 && ellipse.radiusY > 0) AddClosedCurve(rasteriser, ellipse, false);
}

void AddEllipseStroke(Rasteriser& rasteriser, const Box& box, double width) {
  if (!(width > 0)) return;
  const double half = Limited(width) / 2;
  AddClosedCurve(rasteriser, EllipseIn(box, half), false);
  // No point inside is farther from the line than the shorter radius.
  const OffsetEllipse hole = EllipseIn(box, -half);
  if (half < std::min(hole.radiusX, hole.radiusY)) AddClosedCurve(rasteriser, hole, true);
}

// The outline is the sum of the segments' rectangles and the joints' sectors, all with the same inside, without the
// edges that two of them share.
void AddPolylineStroke(Rasteriser& rasteriser, std::span<const Point> points, double width) {
  if (!(width > 0) || points.empty()) return;
  const double half = Limited(width) / 2;
  const auto limited = [](Point p) { return Point{Limited(p.x), Limited(p.y)}; };
  const Point start = limited(points.front());
  std::optional<Segment> last;
  std::optional<StrokeSide> left;
  std::optional<StrokeSide> right;
  for (const Point& point : points) {
    const auto next = SegmentBetween(last ? last->to : start, limited(point));
    if (!next) continue;
    if (last) {
      Join(rasteriser, *left, *right, *last, *next, half);
    } else {
      left.emplace(rasteriser, next->from - next->normal * half, false);
      right.emplace(rasteriser, next->from + next->normal * half, true);
      AddRound(rasteriser, next->from, half, next->normal, next->normal * -1);
    }
    last = next;
  }
  if (!last) {
    AddClosedCurve(rasteriser, {start, 0, 0, half}, false);
    return;
  }
  left->LineTo(last->to - last->normal * half);
  right->LineTo(last->to + last->normal * half);
  AddRound(rasteriser, last->to, half, last->normal * -1, last->normal);
}

}  // namespace kw
