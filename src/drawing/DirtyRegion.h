#pragma once

#include <vector>

#include "drawing/PixelRect.h"

namespace kw {

// Collects the rectangles that are out of date. Those that overlap, or lie so close that one is hardly more to paint
// than two, become one; a great number of them become few.
class DirtyRegion {
public:
  static constexpr std::size_t MostParts = 32;

  void Add(PixelRect part);
  const std::vector<PixelRect>& Parts() const { return parts; }

private:
  std::vector<PixelRect> parts;
};

}  // namespace kw
