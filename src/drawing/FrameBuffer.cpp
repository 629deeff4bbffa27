#include "drawing/FrameBuffer.h"

#include <algorithm>

namespace kw {

void FillArea(const FrameBuffer& target, const PixelRect& rectangle, Colour colour) {
  const PixelRect part = Common(rectangle, target.area);
  if (part.IsEmpty()) return;
  for (std::int32_t y = part.top; y < part.bottom; ++y) {
    std::ranges::fill(target.Row(y, part.left, part.right), PixelOf(colour));
  }
}

void FrameArea(const FrameBuffer& target, const PixelRect& rectangle, Colour colour, bool isDotted,
               std::int32_t width) {
  if (rectangle.IsEmpty()) return;
  // The dots are squares as wide as the line. Coordinates may be negative.
  const auto dot = [width](std::int32_t at) { return at >= 0 ? at / width : (at + 1) / width - 1; };
  const PixelRect sides[] = {
      {rectangle.left, rectangle.top, rectangle.right, rectangle.top + width},
      {rectangle.left, rectangle.bottom - width, rectangle.right, rectangle.bottom},
      {rectangle.left, rectangle.top, rectangle.left + width, rectangle.bottom},
      {rectangle.right - width, rectangle.top, rectangle.right, rectangle.bottom},
  };
  for (const PixelRect& side : sides) {
    const PixelRect part = Common(side, target.area);
    if (part.IsEmpty()) continue;
    for (std::int32_t y = part.top; y < part.bottom; ++y) {
      const auto row = target.Row(y, part.left, part.right);
      for (std::size_t i = 0; i < row.size(); ++i) {
        const bool isOdd = ((dot(part.left + static_cast<std::int32_t>(i)) + dot(y)) & 1) != 0;
        if (!isDotted || isOdd) row[i] = PixelOf(colour);
      }
    }
  }
}

}  // namespace kw
