#pragma once

#include <windows.h>

namespace kw::windows {

// Shows the hourglass during its life, for work during which the thread handles no messages.
class Hourglass {
public:
  Hourglass() : before(SetCursor(LoadCursorW(nullptr, IDC_WAIT))) {}
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;
  ~Hourglass() { SetCursor(before); }

private:
  HCURSOR before;
};

}  // namespace kw::windows
