#include "drawing/DisplayItem.h"

#include <algorithm>

namespace kw {
namespace {

// Compares the shared pixel storage: bitmaps are copy-on-write, so a picture in the list cannot change unseen.
bool HasSamePixels(const Bitmap& a, const Bitmap& b) {
  if (a.IsEmpty() || b.IsEmpty()) return a.IsEmpty() == b.IsEmpty();
  return a.Row(0).data() == b.Row(0).data() && a.Width() == b.Width() && a.Height() == b.Height() &&
         a.BitsPerPixel() == b.BitsPerPixel() && std::ranges::equal(a.Palette(), b.Palette());
}

}  // namespace

bool operator==(const DisplayItem& a, const DisplayItem& b) {
  return a.key == b.key && a.bounds == b.bounds && a.rim == b.rim && a.background == b.background &&
         a.options == b.options && a.frame == b.frame && a.frameColour == b.frameColour &&
         a.frameWidth == b.frameWidth && a.hasHandles == b.hasHandles && a.handleSize == b.handleSize &&
         HasSamePixels(a.picture, b.picture) && a.shape == b.shape && a.text == b.text;
}

std::array<PixelRect, 8> HandlesOf(const PixelRect& bounds, std::int32_t size) {
  const auto limited = [](std::int64_t value) {
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, INT32_MIN, INT32_MAX));
  };
  const std::int64_t x[] = {bounds.left, (std::int64_t{bounds.left} + bounds.right - size) / 2,
                            std::int64_t{bounds.right} - size};
  const std::int64_t y[] = {bounds.top, (std::int64_t{bounds.top} + bounds.bottom - size) / 2,
                            std::int64_t{bounds.bottom} - size};
  const auto at = [limited, size](std::int64_t left, std::int64_t top) {
    return PixelRect{limited(left), limited(top), limited(left + size), limited(top + size)};
  };
  return {at(x[0], y[0]), at(x[1], y[0]), at(x[2], y[0]), at(x[2], y[1]),
          at(x[2], y[2]), at(x[1], y[2]), at(x[0], y[2]), at(x[0], y[1])};
}

}  // namespace kw
