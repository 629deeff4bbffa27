#include "components/controls/RangeControl.h"

#include <algorithm>

#include "components/base/RunTimeError.h"

namespace kw {

void RangeControl::SetValue(std::int32_t newValue) {
  newValue = std::clamp(newValue, std::min(minimum, maximum), std::max(minimum, maximum));
  if (newValue == value) return;
  value = newValue;
  Tell(Aspect::Content);
  Change.Raise();
}

void RangeControl::SetMin(std::int32_t newMinimum) { SetRange(newMinimum, maximum); }
void RangeControl::SetMax(std::int32_t newMaximum) { SetRange(minimum, newMaximum); }

void RangeControl::SetRange(std::int32_t newMinimum, std::int32_t newMaximum) {
  if (newMinimum == minimum && newMaximum == maximum) return;
  minimum = newMinimum;
  maximum = newMaximum;
  const std::int32_t before = value;
  value = std::clamp(value, std::min(minimum, maximum), std::max(minimum, maximum));
  Tell(Aspect::Content);
  if (value != before && RangeMovesValueLoudly()) Change.Raise();
}

void RangeControl::UserSetValue(std::int32_t newValue) {
  if (Enabled()) SetValue(newValue);
}

void ScrollBar::SetLargeChange(std::int16_t amount) {
  if (amount < 1) Raise(ErrorNumber::InvalidPropertyValue);
  largeChange = amount;
  Tell(Aspect::Content);
}

void ScrollBar::SetSmallChange(std::int16_t amount) {
  if (amount < 1) Raise(ErrorNumber::InvalidPropertyValue);
  smallChange = amount;
  Tell(Aspect::Content);
}

}  // namespace kw
