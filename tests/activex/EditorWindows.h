#pragma once

#include <windows.h>

#include <vector>

namespace kw::test {

// The visible windows of a control.
std::vector<HWND> VisibleWindows(HWND editor);
// The window of the control that shows the page: the largest one inside another one. Null if there is none.
HWND CanvasOf(HWND editor);

}  // namespace kw::test
