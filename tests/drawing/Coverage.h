#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "drawing/Rasteriser.h"

namespace kw::test {

// The pixels of its clip that a rasteriser covers; sweeping must neither leave the clip nor meet a pixel twice.
class Coverage {
public:
  explicit Coverage(Rasteriser& rasteriser) : area(rasteriser.Clip()) {
    values.resize(static_cast<std::size_t>(area.Width()) * static_cast<std::size_t>(area.Height()));
    rasteriser.Sweep([this](std::int32_t y, std::int32_t left, std::int32_t right, int coverage) {
      isWellFormed = isWellFormed && y >= area.top && y < area.bottom && left >= area.left && right <= area.right &&
                     left < right && coverage >= 1 && coverage <= 255;
      if (!isWellFormed) return;
      for (std::int32_t x = left; x < right; ++x) {
        isWellFormed = isWellFormed && values[IndexOf(x, y)] == 0;
        values[IndexOf(x, y)] = coverage;
      }
    });
  }

  bool IsWellFormed() const { return isWellFormed; }
  int At(std::int32_t x, std::int32_t y) const { return values[IndexOf(x, y)]; }
  // In pixels.
  double Area() const {
    double sum = 0;
    for (const int value : values) sum += value;
    return sum / 255;
  }

private:
  std::size_t IndexOf(std::int32_t x, std::int32_t y) const {
    return static_cast<std::size_t>(y - area.top) * static_cast<std::size_t>(area.Width()) +
           static_cast<std::size_t>(x - area.left);
  }

  PixelRect area;
  std::vector<int> values;
  bool isWellFormed = true;
};

// Adds the outline of a polygon.
inline void AddPolygon(Rasteriser& rasteriser, const std::vector<Point>& corners) {
  for (std::size_t i = 0; i < corners.size(); ++i) rasteriser.AddEdge(corners[i], corners[(i + 1) % corners.size()]);
}

// The part of a polygon on one side of an axis-parallel line: the points with sign * (x or y - limit) >= 0.
inline std::vector<Point> Cut(const std::vector<Point>& polygon, double Point::*axis, double limit, double sign) {
  std::vector<Point> result;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Point& a = polygon[i];
    const Point& b = polygon[(i + 1) % polygon.size()];
    const double da = sign * (a.*axis - limit);
    const double db = sign * (b.*axis - limit);
    if (da >= 0) result.push_back(a);
    if ((da > 0 && db < 0) || (da < 0 && db > 0)) {
      const double t = da / (da - db);
      result.push_back({a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t});
    }
  }
  return result;
}

// The exact area of a polygon without crossings inside the pixel (x, y).
inline double AreaInPixel(std::vector<Point> polygon, std::int32_t x, std::int32_t y) {
  polygon = Cut(polygon, &Point::x, x, 1);
  polygon = Cut(polygon, &Point::x, x + 1, -1);
  polygon = Cut(polygon, &Point::y, y, 1);
  polygon = Cut(polygon, &Point::y, y + 1, -1);
  double twice = 0;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Point& a = polygon[i];
    const Point& b = polygon[(i + 1) % polygon.size()];
    twice += (a.x - x) * (b.y - y) - (a.y - y) * (b.x - x);
  }
  return std::abs(twice) / 2;
}

}  // namespace kw::test
