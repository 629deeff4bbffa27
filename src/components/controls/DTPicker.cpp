#include "components/controls/DTPicker.h"

#include "components/base/RunTimeError.h"

namespace kw {

void DTPicker::SetValue(const LocalDate& date) {
  if (!IsDate(date) || date.year < MinDate.year || date.year > MaxDate.year) Raise(ErrorNumber::InvalidPropertyValue);
  if (date == value) return;
  value = date;
  Tell(Aspect::Content);
  Change.Raise();
}

}  // namespace kw
