#include "drawing/DirtyRegion.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace kw {
namespace {

PixelRect Union(const PixelRect& a, const PixelRect& b) {
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}

// A double, because the area may exceed every integer type.
double Area(const PixelRect& r) {
  return (static_cast<double>(r.right) - r.left) * (static_cast<double>(r.bottom) - r.top);
}

// The number of extra pixels to paint if both become one.
double Waste(const PixelRect& a, const PixelRect& b) { return Area(Union(a, b)) - Area(a) - Area(b); }

}  // namespace

void DirtyRegion::Add(PixelRect part) {
  if (part.IsEmpty()) return;
  while (true) {
    auto best = parts.end();
    double least = parts.size() < MostParts ? 0 : std::numeric_limits<double>::max();
    for (auto other = parts.begin(); other != parts.end(); ++other) {
      const double waste = Waste(part, *other);
      if (waste <= least) {
        least = waste;
        best = other;
      }
    }
    if (best == parts.end()) break;
    part = Union(part, *best);
    parts.erase(best);
  }
  parts.push_back(part);
}

}  // namespace kw
