#pragma once

#include <windows.h>

#include <span>
#include <vector>

namespace kw::windows {

// The clipboard's formats: those that a program put there, in order, and then those that the system synthesises. Does
// not open the clipboard, so it works while another program holds it open. Empty if the system does not tell.
std::vector<UINT> ClipboardFormats();

// Whether a program put a device-independent bitmap on the clipboard. False if the system would synthesise it from
// CF_BITMAP.
bool HoldDeviceIndependentBitmap(std::span<const UINT> formats);

}  // namespace kw::windows
