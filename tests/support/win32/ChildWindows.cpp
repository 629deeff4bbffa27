#include "tests/support/win32/ChildWindows.h"

#include <gtest/gtest.h>

namespace kw::test {
namespace {

struct ChildSearch {
  std::wstring className;
  std::vector<HWND> found;
};

BOOL CALLBACK Collect(HWND window, LPARAM search) {
  auto& asked = *reinterpret_cast<ChildSearch*>(search);
  wchar_t name[128];
  if (GetClassNameW(window, name, 128) > 0 && asked.className == name) asked.found.push_back(window);
  return TRUE;
}

}  // namespace

std::vector<HWND> ChildWindows(HWND parent, const std::wstring& className) {
  ChildSearch search{className, {}};
  EnumChildWindows(parent, &Collect, reinterpret_cast<LPARAM>(&search));
  return search.found;
}

std::wstring EntryOf(HWND combo, LRESULT index) {
  const LRESULT length = SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
  if (length <= 0) return {};
  std::wstring text(static_cast<std::size_t>(length) + 1, L'\0');
  SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

void PumpMessages(DWORD milliseconds) {
  const DWORD start = GetTickCount();
  for (;;) {
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
    const DWORD gone = GetTickCount() - start;
    if (gone >= milliseconds) return;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, milliseconds - gone, QS_ALLINPUT);
  }
}

bool PumpUntil(const std::function<bool()>& condition) {
  for (const DWORD start = GetTickCount(); GetTickCount() - start < 10000;) {
    PumpMessages();
    if (condition()) return true;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  }
  return false;
}

void SendKey(WORD key, bool isUp) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = isUp ? KEYEVENTF_KEYUP : 0;
  if (key == VK_DELETE) input.ki.dwFlags |= KEYEVENTF_EXTENDEDKEY;
  EXPECT_EQ(SendInput(1, &input, sizeof input), 1U) << GetLastError();
}

}  // namespace kw::test
