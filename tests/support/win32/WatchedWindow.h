#pragma once

#include <windows.h>

#include <functional>
#include <utility>

namespace kw::test {

// A window that does something before it handles a message; one at a time.
class WatchedWindow {
public:
  WatchedWindow(HWND watched, std::function<void(UINT message, WPARAM wParam)> work)
      : window(watched),
        former(reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&WatchedWindow::Procedure)))) {
    before = std::move(work);
    next = former;
  }
  WatchedWindow(const WatchedWindow&) = delete;
  WatchedWindow& operator=(const WatchedWindow&) = delete;
  ~WatchedWindow() {
    if (IsWindow(window) != FALSE) SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former));
    before = {};
  }

private:
  static LRESULT CALLBACK Procedure(HWND receiver, UINT message, WPARAM wParam, LPARAM lParam) {
    if (before) before(message, wParam);
    return CallWindowProcW(next, receiver, message, wParam, lParam);
  }

  static inline std::function<void(UINT message, WPARAM wParam)> before;
  static inline WNDPROC next = nullptr;
  HWND window;
  WNDPROC former;
};

}  // namespace kw::test
