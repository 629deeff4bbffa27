#include "drawing/Outline.h"

#include <array>
#include <cmath>
#include <optional>
#include <vector>

namespace kw {
namespace {

constexpr double Flatness = 1.0 / 160;
// If a bend is sharper than this, the point where its inner sides meet is numerically useless.
constexpr double LeastCosine = -0.999;
constexpr int LeastDepth = 2;
constexpr int MostDepth = 24;
// Ellipses up to this radius, in pixels, are divided whole, without regard to the clip.
constexpr double LargestMirrored = 4096;
// Coordinates are clamped to this, as the rasteriser does; so every product stays finite.
constexpr double FarthestPoint = 1e9;

double LimitedCoordinate(double value) {
  return std::isnan(value) ? 0 : std::clamp(value, -FarthestPoint, FarthestPoint);
}

Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
Point operator*(Point a, double factor) { return {a.x * factor, a.y * factor}; }
double Dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }
double Cross(Point a, Point b) { return a.x * b.y - a.y * b.x; }
double Length(Point a) { return std::sqrt(Dot(a, a)); }
// Turns a vector by a quarter, from right to down.
Point Turned(Point a) { return {-a.y, a.x}; }

// A point of an offset curve of an ellipse, outside it (or inside, if the distance is negative), given by its unit
// normal.
struct ArcPoint {
  Point normal;
  Point onEllipse;
  Point at;
};

// Divides an offset curve into chords. If the radii are 0, the curve is a circle around the centre.
template <class Sink>
class ArcDivider {
public:
  // Calls sink(from, to) for each chord in turn. An arc that lies wholly above, below or beside the bounds is not
  // divided; above or below it is left out.
  ArcDivider(Point ellipseCentre, Point ellipseRadii, double signedDistance, const PixelRect& within, Sink& to)
      : centre(ellipseCentre), radii(ellipseRadii), distance(signedDistance), bounds(within), sink(to) {}

  // Divides the arc between two normals at most a quarter turn apart; if there are radii, both in one quadrant.
  void Divide(Point from, Point to) { Divide(PointWith(from), PointWith(to), 0); }

private:
  ArcPoint PointWith(Point normal) const {
    const double x = radii.x * normal.x;
    const double y = radii.y * normal.y;
    const double length = std::sqrt(x * x + y * y);
    const Point on = length > 0 ? Point{centre.x + radii.x * x / length, centre.y + radii.y * y / length} : centre;
    return {normal, on, on + normal * distance};
  }

  void Divide(const ArcPoint& from, const ArcPoint& to, int depth) {
    // The arc leaves the bounding box of its ends by less than the ellipse moves while the normal turns, plus a quarter
    // of the chord of a circle's arc of up to a quarter turn.
    const double bulge = std::abs(distance) * Length(to.normal - from.normal) / 4;
    const double spreadY = bulge + std::abs(to.onEllipse.y - from.onEllipse.y);
    const auto [lowY, highY] = std::minmax(from.at.y, to.at.y);
    if (highY + spreadY <= bounds.top || lowY - spreadY >= bounds.bottom) return;
    const double spreadX = bulge + std::abs(to.onEllipse.x - from.onEllipse.x);
    const auto [lowX, highX] = std::minmax(from.at.x, to.at.x);
    const bool isBeside = highX + spreadX < bounds.left || lowX - spreadX >= bounds.right;
    if (isBeside || depth == MostDepth) {
      sink(from.at, to.at);
      return;
    }
    const Point sum = from.normal + to.normal;
    const ArcPoint middle = PointWith(sum * (1 / Length(sum)));
    const Point deviation = middle.at - (from.at + to.at) * 0.5;
    if (depth >= LeastDepth && Dot(deviation, deviation) <= Flatness * Flatness) {
      sink(from.at, to.at);
      return;
    }
    Divide(from, middle, depth + 1);
    Divide(middle, to, depth + 1);
  }

  Point centre;
  Point radii;
  double distance;
  const PixelRect& bounds;
  Sink& sink;
};

struct Ellipse {
  Point centre;
  Point radii;
};

Ellipse EllipseIn(const Box& box) {
  const double left = LimitedCoordinate(box.left);
  const double top = LimitedCoordinate(box.top);
  const double right = std::max(left, LimitedCoordinate(box.right));
  const double bottom = std::max(top, LimitedCoordinate(box.bottom));
  return {{(left + right) / 2, (top + bottom) / 2}, {(right - left) / 2, (bottom - top) / 2}};
}

// Adds the closed offset curve of an ellipse; backward it cuts a hole.
void AddEllipseLine(Rasteriser& rasteriser, const Ellipse& ellipse, double distance, bool isBackward) {
  constexpr std::array<Point, 5> axes = {{{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 0}}};
  const auto add = [&](Point from, Point to) {
    if (isBackward) std::swap(from, to);
    rasteriser.AddEdge(from, to);
  };
  if (std::max(ellipse.radii.x, ellipse.radii.y) + std::abs(distance) > LargestMirrored) {
    ArcDivider divider(ellipse.centre, ellipse.radii, distance, rasteriser.Clip(), add);
    for (std::size_t i = 0; i + 1 < axes.size(); ++i) divider.Divide(axes[i], axes[i + 1]);
    return;
  }
  // Divide one quadrant around the origin and mirror it into the others.
  std::vector<Point> points = {{ellipse.radii.x + distance, 0}};
  points.reserve(128);
  const auto collect = [&](Point, Point to) { points.push_back(to); };
  constexpr PixelRect everywhere = {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
  ArcDivider(Point{}, ellipse.radii, distance, everywhere, collect).Divide(axes[0], axes[1]);
  for (const Point side : {Point{1, 1}, Point{-1, 1}, Point{-1, -1}, Point{1, -1}}) {
    const auto mirrored = [&](Point point) {
      return Point{ellipse.centre.x + point.x * side.x, ellipse.centre.y + point.y * side.y};
    };
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
      Point from = mirrored(points[i]);
      Point to = mirrored(points[i + 1]);
      if (side.x != side.y) std::swap(from, to);
      add(from, to);
    }
  }
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

// Adds a half circle or less around a joint or an end, from one normal to another, in the direction of Turned.
void AddRound(Rasteriser& rasteriser, Point centre, double radius, Point from, Point to) {
  if (from == to) return;
  const auto add = [&](Point a, Point b) { rasteriser.AddEdge(a, b); };
  ArcDivider divider(centre, {}, radius, rasteriser.Clip(), add);
  if (Dot(from, to) >= 0) {
    divider.Divide(from, to);
    return;
  }
  // Split arcs of more than a quarter turn at the direction halfway; this also handles opposite normals.
  Point middle = Turned(from - to);
  middle = middle * (1 / Length(middle));
  divider.Divide(from, middle);
  divider.Divide(middle, to);
}

// One side of a stroke: an open chain of edges, which the round joins and ends of both sides close.
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

  // The length that the join at the segment's start has cut off on this side.
  double used = 0;

private:
  Rasteriser& rasteriser;
  Point at;
  bool isBackward;
};

struct Segment {
  Point from;
  Point to;
  Point normal;  // unit length, a quarter turn from the direction
  double length = 0;
};

// Joins the inner side of a bend: cuts both sides where they meet. If the segments are too short for that, both sides
// run to the joint itself, so that nothing outside the stroke is covered.
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
  const Ellipse ellipse = EllipseIn(box);
  if (ellipse.radii.x > 0 && ellipse.radii.y > 0) AddEllipseLine(rasteriser, ellipse, 0, false);
}

void AddEllipseStroke(Rasteriser& rasteriser, const Box& box, double width) {
  if (!(width > 0)) return;
  const double half = LimitedCoordinate(width) / 2;
  const Ellipse ellipse = EllipseIn(box);
  AddEllipseLine(rasteriser, ellipse, half, false);
  // Every point inside is at most the shorter radius away from the line.
  if (half < std::min(ellipse.radii.x, ellipse.radii.y)) AddEllipseLine(rasteriser, ellipse, -half, true);
}

// The outline is the union of the segments' rectangles and the joints' sectors, without the edges that two of them
// share.
void AddPolylineStroke(Rasteriser& rasteriser, std::span<const Point> points, double width) {
  if (!(width > 0) || points.empty()) return;
  const double half = LimitedCoordinate(width) / 2;
  const auto limited = [](Point p) { return Point{LimitedCoordinate(p.x), LimitedCoordinate(p.y)}; };
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
    AddEllipse(rasteriser, {start.x - half, start.y - half, start.x + half, start.y + half});
    return;
  }
  left->LineTo(last->to - last->normal * half);
  right->LineTo(last->to + last->normal * half);
  AddRound(rasteriser, last->to, half, last->normal * -1, last->normal);
}

}  // namespace kw
