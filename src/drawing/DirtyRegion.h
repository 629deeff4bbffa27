#pragma once

#include <vector>

#include "drawing/PixelRect.h"

namespace kw {

// Collects rectangles that are out of date. It joins rectangles that overlap or are so close that joining costs little,
// and limits their number to MostParts.
class DirtyRegion {
public:
  static constexpr std::size_t MostParts = 32;

  void Add(PixelRect part);
  const std::vector<PixelRect>& Parts() const { return parts; }

private:
  std::vector<PixelRect> parts;
};

}  // namespace kw
