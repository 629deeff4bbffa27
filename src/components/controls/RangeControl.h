#pragma once

#include <cstdint>
#include <string>

#include "components/controls/Control.h"

namespace kw {

// A control whose value stays between a minimum and a maximum. A value outside is clamped; Change is raised when the
// value is assigned, by a procedure or by the user, and differs from before.
class RangeControl : public Control {
public:
  using Control::Control;

  std::int32_t Value() const { return value; }
  void SetValue(std::int32_t newValue);
  std::int32_t Min() const { return minimum; }
  std::int32_t Max() const { return maximum; }
  void SetMin(std::int32_t newMinimum);
  void SetMax(std::int32_t newMaximum);

  // Input procedure: the user moved the control to this value. Ignored while it is disabled.
  void UserSetValue(std::int32_t newValue);

  Event<> Change;

protected:
  // Whether a value that a new range pushes inside counts as a change.
  virtual bool RangeMovesValueLoudly() const { return true; }

private:
  void SetRange(std::int32_t newMinimum, std::int32_t newMaximum);

  std::int32_t minimum = 0;
  std::int32_t maximum = 10;
  std::int32_t value = 0;
};

class Slider : public RangeControl {
public:
  explicit Slider(std::string controlName) : RangeControl(std::move(controlName), "Slider") {}

  // Ticks, and a tip that shows the value while it is dragged. A matter of design time.
  bool HasTicks() const { return hasTicks; }
  void SetHasTicks(bool value) { hasTicks = value; }
  // How far a press beside the thumb moves it; 0: as far as the system likes. A matter of design time.
  std::int32_t LargeChange() const { return largeChange; }
  void SetLargeChange(std::int32_t amount) { largeChange = amount; }

private:
  bool hasTicks = true;
  std::int32_t largeChange = 0;
};

// The page number: a range control that the tool bar's page buttons and the page list move. Setting its range afresh
// is no page change, so a value that the new range moves raises nothing.
class PageSpinner : public RangeControl {
public:
  explicit PageSpinner(std::string controlName) : RangeControl(std::move(controlName), "UpDown") {}

protected:
  bool RangeMovesValueLoudly() const override { return false; }
};

class ScrollBar : public RangeControl {
public:
  ScrollBar(std::string controlName, bool vertical)
      : RangeControl(std::move(controlName), "ScrollBar"), isVertical(vertical) {}

  bool IsVertical() const { return isVertical; }
  // How far a press beside the thumb and on an arrow moves; at least 1, else InvalidPropertyValue.
  std::int16_t LargeChange() const { return largeChange; }
  std::int16_t SmallChange() const { return smallChange; }
  void SetLargeChange(std::int16_t amount);
  void SetSmallChange(std::int16_t amount);

private:
  bool isVertical;
  std::int16_t largeChange = 1;
  std::int16_t smallChange = 1;
};

}  // namespace kw
