#include "windows/base/Mouse.h"

#include <windowsx.h>

#include "components/controls/Control.h"

namespace kw::windows {

namespace {

// The message carries Shift and Ctrl. Alt would need a system call, which moves, being frequent, do without.
std::int16_t ShiftStateAt(MouseEvent::Kind kind, WPARAM keys) {
  std::int16_t state = 0;
  if ((keys & MK_SHIFT) != 0) state |= Mouse::ShiftKey;
  if ((keys & MK_CONTROL) != 0) state |= Mouse::ControlKey;
  if (kind != MouseEvent::Kind::Move && GetKeyState(VK_MENU) < 0) state |= Mouse::AltKey;
  return state;
}

}  // namespace

std::int16_t ShiftState() {
  const auto held = [](int key, std::int16_t bit) { return GetKeyState(key) < 0 ? bit : std::int16_t{0}; };
  return static_cast<std::int16_t>(held(VK_SHIFT, Mouse::ShiftKey) | held(VK_CONTROL, Mouse::ControlKey) |
                                   held(VK_MENU, Mouse::AltKey));
}

std::optional<MouseEvent> MouseEvent::Of(UINT message, WPARAM wParam, LPARAM lParam) {
  const auto held = [wParam](WPARAM bit, std::int16_t button) {
    return (wParam & bit) != 0 ? button : std::int16_t{0};
  };
  const auto allHeld =
      static_cast<std::int16_t>(held(MK_LBUTTON, Mouse::LeftButton) | held(MK_RBUTTON, Mouse::RightButton) |
                                held(MK_MBUTTON, Mouse::MiddleButton));
  struct Row {
    UINT message;
    Kind kind;
    std::int16_t button;
  };
  static constexpr Row rows[] = {
      {WM_LBUTTONDOWN, Kind::Down, Mouse::LeftButton},
      {WM_LBUTTONUP, Kind::Up, Mouse::LeftButton},
      {WM_LBUTTONDBLCLK, Kind::DoubleClick, Mouse::LeftButton},
      {WM_RBUTTONDOWN, Kind::Down, Mouse::RightButton},
      {WM_RBUTTONUP, Kind::Up, Mouse::RightButton},
      {WM_RBUTTONDBLCLK, Kind::Down, Mouse::RightButton},
      {WM_MBUTTONDOWN, Kind::Down, Mouse::MiddleButton},
      {WM_MBUTTONUP, Kind::Up, Mouse::MiddleButton},
      {WM_MBUTTONDBLCLK, Kind::Down, Mouse::MiddleButton},
      {WM_MOUSEMOVE, Kind::Move, 0},
  };
  for (const Row& row : rows) {
    if (row.message != message) continue;
    return MouseEvent{.kind = row.kind,
                      .button = row.kind == Kind::Move ? allHeld : row.button,
                      .shift = ShiftStateAt(row.kind, wParam),
                      .at = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)},
                      .isAnyHeld = allHeld != 0};
  }
  return std::nullopt;
}

void CancelMouse(HWND window) {
  const HWND holder = GetCapture();
  if (holder != nullptr && (holder == window || IsChild(window, holder) != FALSE)) {
    SendMessageW(holder, WM_CANCELMODE, 0, 0);
  }
}

void RenewPointer() {
  POINT mouse = {};
  GetCursorPos(&mouse);
  const HWND below = WindowFromPoint(mouse);
  if (below == nullptr || GetWindowThreadProcessId(below, nullptr) != GetCurrentThreadId()) return;
  SendMessageW(below, WM_SETCURSOR, reinterpret_cast<WPARAM>(below), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
}

void HoldMouse(HWND window, const MouseEvent& event) {
  const bool isPress = event.kind == MouseEvent::Kind::Down || event.kind == MouseEvent::Kind::DoubleClick;
  if (isPress) SetCapture(window);
  if (event.kind == MouseEvent::Kind::Up && !event.isAnyHeld && GetCapture() == window) ReleaseCapture();
}

}  // namespace kw::windows
