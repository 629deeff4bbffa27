#pragma once

#include <windows.h>

#include <span>
#include <vector>

namespace kw::windows {

// The formats on the clipboard: those that a program left in their order, and behind them those that the system makes
// of them. The clipboard is not opened for it, so a program that holds it open hinders nothing. Empty where the system
// does not tell.
std::vector<UINT> ClipboardFormats();

// Whether a program left an image as a device-independent bitmap: not where the system would make one of a bitmap of
// the old kind, CF_BITMAP.
bool HoldDeviceIndependentBitmap(std::span<const UINT> formats);

}  // namespace kw::windows
