#pragma once

#include <string>
#include <utility>

#include "components/base/LocalDate.h"
#include "components/controls/Control.h"

namespace kw {

// A date picker. It always holds a date of the calendar from MinDate to MaxDate.
class DTPicker : public Control {
public:
  static constexpr LocalDate MinDate{1601, 1, 1};
  static constexpr LocalDate MaxDate{9999, 12, 31};

  explicit DTPicker(std::string controlName) : Control(std::move(controlName), "DTPicker") {}

  const LocalDate& Value() const { return value; }
  // Raises InvalidPropertyValue for what is no date or out of the range; raises Change if the date is another one.
  void SetValue(const LocalDate& date);
  int Year() const { return value.year; }
  int Month() const { return value.month; }
  int Day() const { return value.day; }

  // Input procedure: the user chose this date. Ignored while the picker is disabled.
  void UserChoose(const LocalDate& date) {
    if (Enabled()) SetValue(date);
  }

  Event<> Change;

private:
  LocalDate value = MinDate;
};

}  // namespace kw
