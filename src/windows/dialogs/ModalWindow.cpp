#include "windows/dialogs/ModalWindow.h"

#include <commctrl.h>

#include <algorithm>
#include <string>

#include "components/base/RunTimeError.h"
#include "windows/base/Gdi.h"
#include "windows/base/Guard.h"
#include "windows/base/Module.h"
#include "windows/base/Mouse.h"
#include "windows/base/ScreenScale.h"
#include "windows/base/Text.h"
#include "windows/views/ControlView.h"

namespace kw::windows {
namespace {

constexpr DWORD Style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr DWORD ExtendedStyle = WS_EX_DLGMODALFRAME | WS_EX_CONTROLPARENT;

// Centres a window on its owner, but keeps it inside the owner's screen.
POINT PositionFor(int width, int height, HWND owner) {
  MONITORINFO screen = {};
  screen.cbSize = sizeof screen;
  GetMonitorInfoW(MonitorFromWindow(owner, MONITOR_DEFAULTTOPRIMARY), &screen);
  RECT around = screen.rcWork;
  if (owner != nullptr && IsIconic(owner) == FALSE) GetWindowRect(owner, &around);
  const auto within = [](LONG middle, int size, LONG low, LONG high) {
    return std::max(low, std::min(middle - size / 2, high - size));
  };
  const RECT& work = screen.rcWork;
  return {within((around.left + around.right) / 2, width, work.left, work.right),
          within((around.top + around.bottom) / 2, height, work.top, work.bottom)};
}

}  // namespace

ModalWindow::ModalWindow(DialogForm& shown, HWND above) : form(shown), owner(above) {
  const Scale scale = ScaleOf(owner);
  form.UserScale(scale.Factor());
  const int width = scale.ToDevice(ToPixels(form.Width()));
  const int height = scale.ToDevice(ToPixels(form.Height()));
  RECT frame = {0, 0, width, height};
  AdjustWindowRectEx(&frame, Style, FALSE, ExtendedStyle);
  const POINT position = PositionFor(WidthOf(frame), HeightOf(frame), owner);
  OwnWindowClass::Register();
  const HWND made =
      CreateWindowExW(ExtendedStyle, OwnWindowClass::Name, ToWide(form.Caption()).c_str(), Style, position.x,
                      position.y, WidthOf(frame), HeightOf(frame), owner, nullptr, Module(), nullptr);
  if (made == nullptr) Raise(ErrorNumber::OutOfMemory, static_cast<std::int32_t>(GetLastError()));
  window.reset(made);
  SetWindowSubclass(made, &Subclass, 0, reinterpret_cast<DWORD_PTR>(this));
  // AdjustWindowRectEx used the primary screen's frame; correct the size.
  RECT client = {};
  GetClientRect(made, &client);
  SetWindowPos(made, nullptr, 0, 0, WidthOf(frame) + width - client.right, HeightOf(frame) + height - client.bottom,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  content = std::make_unique<EditorWindow>(form, made, RECT{0, 0, width, height}, scale);
  content->Show(true);
}

void ModalWindow::Run() {
  // Enables the owner before the dialog is destroyed; else the system would activate another program's window.
  struct Disabled {
    explicit Disabled(HWND disabled)
        : owner(disabled), wasEnabled(owner != nullptr && EnableWindow(owner, FALSE) == FALSE) {}
    Disabled(const Disabled&) = delete;
    Disabled& operator=(const Disabled&) = delete;
    ~Disabled() {
      if (wasEnabled) EnableWindow(owner, TRUE);
    }
    HWND owner;
    bool wasEnabled;
  };
  const Disabled whileUp(owner);
  form.SetVisible(true);
  ShowWindow(window.get(), SW_SHOW);
  form.Activate.Raise();
  Loop();
  if (form.Visible()) form.UserClose();
}

void ModalWindow::Loop() {
  MSG message = {};
  while (form.Visible() && window != nullptr) {
    const BOOL got = GetMessageW(&message, nullptr, 0, 0);
    if (got == FALSE) PostQuitMessage(static_cast<int>(message.wParam));  // for the calling message loop.
    if (got <= 0) return;
    if (IsTaken(message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

bool ModalWindow::IsTaken(MSG& message) {
  if (message.hwnd != window.get() && IsChild(window.get(), message.hwnd) == FALSE) return false;
  if (message.message == WM_SYSCHAR) return form.UserAltKey(static_cast<char16_t>(message.wParam));
  if (message.message != WM_KEYDOWN) return false;
  if (message.wParam == VK_TAB) {
    MoveFocus(message);
    return true;
  }
  if (!form.KeyPreview() && content->WantsKey(message.wParam)) return false;
  if (message.wParam == VK_RETURN) TakeTyping(message.hwnd);
  form.KeyDown.Raise(static_cast<std::int16_t>(message.wParam), ShiftState());
  return message.wParam == VK_RETURN || message.wParam == VK_ESCAPE || !form.Visible();
}

// A date picker takes what was typed only when it loses the focus.
void ModalWindow::TakeTyping(HWND field) const {
  wchar_t name[64] = {};
  GetClassNameW(field, name, static_cast<int>(std::size(name)));
  if (std::wstring(name) != DATETIMEPICK_CLASSW) return;
  SetFocus(content->Handle());
  SetFocus(field);
}

void ModalWindow::MoveFocus(MSG& tab) {
  if (content->TranslateAccelerator(tab)) return;
  SetFocus(content->Handle());  // from here the first or last tab stop is next
  content->TranslateAccelerator(tab);
}

LRESULT CALLBACK ModalWindow::Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                                       DWORD_PTR self) {
  auto& dialog = *reinterpret_cast<ModalWindow*>(self);
  switch (message) {
    case WM_CLOSE:
      Guard([&] { dialog.form.UserClose(); });
      return 0;
    case WM_ACTIVATE:
      if (LOWORD(wParam) == WA_INACTIVE) {
        dialog.focus = GetFocus();
      } else if (dialog.focus != nullptr) {
        SetFocus(dialog.focus);
        return 0;
      }
      break;
    case WM_NCDESTROY:
      RemoveWindowSubclass(window, &Subclass, 0);
      static_cast<void>(dialog.window.release());  // destroyed with its owner, or being destroyed
      break;
    default:
      break;
  }
  return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace kw::windows
