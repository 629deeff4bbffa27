#include "scene/HitTest.h"

#include "components/base/Arithmetic.h"

namespace kw {

bool IsPointInRect(std::int32_t x, std::int32_t y, std::int32_t left, std::int32_t top, std::int32_t width,
                   std::int32_t height) {
  const std::int32_t right = AddChecked(left, width);
  const std::int32_t bottom = AddChecked(top, height);
  return left <= x && x <= right && top <= y && y <= bottom;
}

bool IsPointIn(const Control& control, float x, float y) {
  const auto whole = [](float value) { return RoundToEven<std::int32_t>(value); };
  return IsPointInRect(whole(x), whole(y), whole(control.Left()), whole(control.Top()), whole(control.Width()),
                       whole(control.Height()));
}

bool IsPointInLayer(const TransparentPicture& layer, float x, float y) {
  if (IsPointIn(layer, x, y)) return true;
  // Picking shifts a layer by its frame of one pixel. What counts as inside must not shift, so the old edges count too.
  return layer.SelectionFrame() != 0 &&
         (IsPointIn(layer, x - 1, y - 1) || IsPointIn(layer, x - 1, y) || IsPointIn(layer, x, y - 1));
}

bool IsPointInItem(const Control& item, float x, float y) {
  const auto* const layer = dynamic_cast<const TransparentPicture*>(&item);
  return layer == nullptr ? IsPointIn(item, x, y) : IsPointInLayer(*layer, x, y);
}

}  // namespace kw
