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

void FrameArea(const FrameBuffer& target, const PixelRect& rectangle, Colour colour, bool isDotted) {
  if (rectangle.IsEmpty()) return;
  const PixelRect sides[] = {
      {rectangle.left, rectangle.top, rectangle.right, rectangle.top + 1},
      {rectangle.left, rectangle.bottom - 1, rectangle.right, rectangle.bottom},
      {rectangle.left, rectangle.top, rectangle.left + 1, rectangle.bottom},
      {rectangle.right - 1, rectangle.top, rectangle.right, rectangle.bottom},
  };
  for (const PixelRect& side : sides) {
    const PixelRect part = Common(side, target.area);
    if (part.IsEmpty()) continue;
    for (std::int32_t y = part.top; y < part.bottom; ++y) {
      const auto row = target.Row(y, part.left, part.right);
      for (std::size_t i = 0; i < row.size(); ++i) {
        const bool isOdd = ((part.left + static_cast<std::int32_t>(i) + y) & 1) != 0;
        if (!isDotted || isOdd) row[i] = PixelOf(colour);
      }
    }
  }
}

}  // namespace kw
