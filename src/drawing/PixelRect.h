#pragma once

#include <algorithm>
#include <cstdint>

namespace kw {

// Whole pixels from (left, top) to (right, bottom), half open.
struct PixelRect {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;

  std::int32_t Width() const { return right - left; }
  std::int32_t Height() const { return bottom - top; }
  bool IsEmpty() const { return right <= left || bottom <= top; }
  friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

// The intersection; empty if they do not overlap.
inline PixelRect Common(const PixelRect& a, const PixelRect& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
}

inline PixelRect Inset(const PixelRect& r, std::int32_t by) {
  return {r.left + by, r.top + by, r.right - by, r.bottom - by};
}

}  // namespace kw
