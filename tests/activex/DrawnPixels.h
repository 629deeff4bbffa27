#pragma once

#include <windows.h>

#include <unknwn.h>

#include <vector>

namespace kw::test {

// What a control draws of itself without a window, row by row; each pixel is 0xRRGGBB.
std::vector<DWORD> DrawnPixels(IUnknown* control, int width, int height);

}  // namespace kw::test
