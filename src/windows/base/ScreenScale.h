#pragma once

#include <windows.h>

#include "drawing/Scale.h"

namespace kw::windows {

// A window's scale as its program sees the screen: 96 to the inch if the system scales the program. Null stands for the
// primary screen.
Scale ScaleOf(HWND window);

}  // namespace kw::windows
