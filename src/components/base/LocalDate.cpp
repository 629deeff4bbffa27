#include "components/base/LocalDate.h"

#include <chrono>

namespace kw {
namespace {

namespace time = std::chrono;

time::year_month_day ToCalendar(const LocalDate& date) {
  return time::year(date.year) / time::month(static_cast<unsigned>(date.month)) /
         time::day(static_cast<unsigned>(date.day));
}

}  // namespace

bool IsDate(const LocalDate& date) { return date.month > 0 && date.day > 0 && ToCalendar(date).ok(); }

LocalDate AddDays(const LocalDate& date, int days) {
  const time::year_month_day later = time::sys_days(ToCalendar(date)) + time::days(days);
  return {static_cast<int>(later.year()), static_cast<int>(static_cast<unsigned>(later.month())),
          static_cast<int>(static_cast<unsigned>(later.day()))};
}

}  // namespace kw
