#pragma once

#include "components/base/Arithmetic.h"
#include "components/controls/Control.h"

namespace kw {

// Whether the point lies in the rectangle, all four edges included. Raises Overflow if an edge does not fit 32 bits.
inline bool IsPointInRect(std::int32_t x, std::int32_t y, std::int32_t left, std::int32_t top, std::int32_t width,
                          std::int32_t height) {
  const std::int32_t right = AddChecked(left, width);
  const std::int32_t bottom = AddChecked(top, height);
  return left <= x && x <= right && top <= y && y <= bottom;
}

// The same for a control's rectangle and a point in its container, rounded to whole units.
inline bool IsPointIn(const Control& control, float x, float y) {
  const auto whole = [](float value) { return RoundToEven<std::int32_t>(value); };
  return IsPointInRect(whole(x), whole(y), whole(control.Left()), whole(control.Top()), whole(control.Width()),
                       whole(control.Height()));
}

}  // namespace kw
