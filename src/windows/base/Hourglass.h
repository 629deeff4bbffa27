#pragma once

#include <windows.h>

namespace kw::windows {

// While one of these lives the mouse pointer is the hourglass, for work that keeps the thread from its messages.
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
