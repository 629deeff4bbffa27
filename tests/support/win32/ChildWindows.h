#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace kw::test {

// The windows of a class below a window.
std::vector<HWND> ChildWindows(HWND parent, const std::wstring& className);
// The text of an entry of a combo box, from 0; empty if there is none.
std::wstring EntryOf(HWND combo, LRESULT index);

// Handles the messages of this thread that are there and those that come within the time.
void PumpMessages(DWORD milliseconds = 0);
// Handles messages until the condition holds; false if that takes longer than ten seconds.
bool PumpUntil(const std::function<bool()>& condition);

// Sends a key's press or release as the keyboard does. Any thread may call it.
void SendKey(WORD key, bool isUp);

}  // namespace kw::test
