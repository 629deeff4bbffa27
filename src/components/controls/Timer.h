#pragma once

#include <cstdint>
#include <string>

#include "components/controls/Control.h"

namespace kw {

class Desktop;

// Raises Tick each Interval milliseconds while it is enabled and the interval is not 0. Starts disabled.
class Timer : public Control {
public:
  // The desktop must outlive the timer.
  Timer(std::string controlName, Desktop& clock);
  ~Timer() override;

  std::int32_t Interval() const { return interval; }
  // Raises InvalidPropertyValue outside 0 to 65535.
  void SetInterval(std::int32_t milliseconds);
  // Starts or stops the clock; setting True again does not restart a running interval.
  void SetEnabled(bool value) override;
  bool TrySetInterval(std::int32_t milliseconds) override;
  // While it is held it does not run, whatever its properties are. After that an enabled timer begins its interval
  // afresh.
  void Hold(bool value);

  // Input procedure: the desktop calls it when the time is up. A tick that was under way when the timer was stopped
  // is dropped.
  void Fire();

  Event<> Tick;

private:
  bool Runs() const { return Enabled() && interval > 0 && !isHeld; }
  void Restart();

  Desktop& desktop;
  std::int32_t interval = 0;
  bool isHeld = false;
};

}  // namespace kw
