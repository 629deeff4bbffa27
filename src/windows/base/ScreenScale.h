#pragma once

#include <windows.h>

#include "drawing/Scale.h"

namespace kw::windows {

// The scale of a window as its program sees the screen: 96 to the inch where the program leaves scaling to the system.
// Null stands for the primary screen.
Scale ScaleOf(HWND window);

}  // namespace kw::windows
