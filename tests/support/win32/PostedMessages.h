#pragma once

#include <windows.h>

#include <atomic>

// What a user's thread needs to know of the thread whose windows it works with.
namespace kw::test::PostedMessages {

inline UINT Marker() {
  static const UINT marker = RegisterWindowMessageW(L"KwPostedBefore");
  return marker;
}

inline std::atomic<int> markersTaken = 0;

inline LRESULT CALLBACK SeeMarker(int code, WPARAM kind, LPARAM message) {
  if (code == HC_ACTION && kind == PM_REMOVE && reinterpret_cast<const MSG*>(message)->message == Marker()) {
    ++markersTaken;
  }
  return CallNextHookEx(nullptr, code, kind, message);
}

// Waits until the window's thread has handled all messages that were posted to it before, and those that these posted
// in turn: a key becomes a character, and what it changes may be told by another message. False if the window goes
// meanwhile, or after ten seconds.
inline bool AreHandled(HWND window) {
  constexpr int Turns = 3;
  const HHOOK hook = SetWindowsHookExW(WH_GETMESSAGE, &SeeMarker, nullptr, GetWindowThreadProcessId(window, nullptr));
  if (hook == nullptr) return false;
  const ULONGLONG end = GetTickCount64() + 10000;
  int turn = 0;
  for (; turn < Turns; ++turn) {
    const int before = markersTaken;
    if (PostMessageW(window, Marker(), 0, 0) == FALSE) break;
    while (markersTaken == before && IsWindow(window) != FALSE && GetTickCount64() < end) Sleep(1);
    if (markersTaken == before) break;
  }
  UnhookWindowsHookEx(hook);
  return turn == Turns;
}

}  // namespace kw::test::PostedMessages
