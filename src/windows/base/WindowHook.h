#pragma once

#include <windows.h>

namespace kw::windows {

// A procedure in front of a window's own. The subclasses of the common controls library would do, but they keep their
// list as a property of the window and ask for it several times for each message; if the system keeps properties in
// another process, as Wine does, each time waits for that process. So they serve windows that get few messages, or that
// need several procedures.
//
// One hook for a window; called on the window's thread only. Needs no memory of its own, so hooking cannot fail.
class WindowHook {
public:
  // Gets every message of the window; Default() is what the window makes of it. What it throws counts as the answer 0.
  using Receiver = LRESULT (*)(void* self, UINT message, WPARAM wParam, LPARAM lParam);

  WindowHook() = default;
  WindowHook(const WindowHook&) = delete;
  WindowHook& operator=(const WindowHook&) = delete;
  ~WindowHook() { Unhook(); }

  // A null window is left alone.
  void Hook(HWND hooked, Receiver receiver, void* self) noexcept;
  // From now on the receiver is not called, also if others have put procedures of their own in front meanwhile. Has to
  // come before the window is gone. May come while a message is under way; Default() still works then.
  void Unhook() noexcept;
  LRESULT Default(UINT message, WPARAM wParam, LPARAM lParam) const;

private:
  static LRESULT CALLBACK Procedure(HWND receiving, UINT message, WPARAM wParam, LPARAM lParam);
  static LRESULT HandOn(HWND receiving, UINT message, WPARAM wParam, LPARAM lParam);
  static WindowHook*& ListOf(HWND listed);

  bool isHooked = false;
  HWND window = nullptr;
  WNDPROC before = nullptr;
  Receiver receive = nullptr;
  void* owner = nullptr;
  WindowHook* next = nullptr;
};

}  // namespace kw::windows
