#pragma once

#include <windows.h>

#include "drawing/Scale.h"
#include "windows/base/Images.h"

namespace kw::windows {

// What is needed to draw a control without a window.
struct Look {
  HDC context;
  const Images& images;
  const Scale& scale;
};

}  // namespace kw::windows
