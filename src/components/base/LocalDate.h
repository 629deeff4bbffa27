#pragma once

namespace kw {

// A date of the Gregorian calendar, as the clock on the wall shows it.
struct LocalDate {
  int year = 0;
  int month = 0;  // 1 to 12
  int day = 0;    // 1 to 31
  friend bool operator==(const LocalDate&, const LocalDate&) = default;
};

// Whether the calendar has such a day.
bool IsDate(const LocalDate& date);

// The date so many days later; `date` must be one.
LocalDate AddDays(const LocalDate& date, int days);

}  // namespace kw
