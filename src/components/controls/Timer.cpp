#include "components/controls/Timer.h"

#include "components/base/RunTimeError.h"
#include "components/platform/Desktop.h"

namespace kw {

Timer::Timer(std::string controlName, Desktop& clock) : Control(std::move(controlName), "Timer"), desktop(clock) {
  Control::SetEnabled(false);
}

Timer::~Timer() { desktop.StopTimer(*this); }

void Timer::SetInterval(std::int32_t milliseconds) {
  if (milliseconds < 0 || milliseconds > 65535) Raise(ErrorNumber::InvalidPropertyValue);
  interval = milliseconds;
  Restart();
}

void Timer::SetEnabled(bool value) {
  if (Enabled() == value) return;
  Control::SetEnabled(value);
  Restart();
}

bool Timer::TrySetInterval(std::int32_t milliseconds) {
  SetInterval(milliseconds);
  return true;
}

void Timer::Hold(bool value) {
  if (isHeld == value) return;
  isHeld = value;
  Restart();
}

void Timer::Fire() {
  if (Runs()) Tick.Raise();
}

void Timer::Restart() {
  if (Runs())
    desktop.StartTimer(*this, interval);
  else
    desktop.StopTimer(*this);
}

}  // namespace kw
