#include "windows/views/RootView.h"

#include "components/controls/RangeControl.h"
#include "windows/base/Gdi.h"
#include "windows/base/Module.h"
#include "windows/base/Mouse.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

// Pixels to scroll for one notch of the wheel.
constexpr int WheelStep = 48;

ScrollBar* FindScrollBar(const Control& holder, bool isVertical) {
  for (Control* child : holder.Children()) {
    auto* const bar = dynamic_cast<ScrollBar*>(child);
    if (bar != nullptr && bar->IsVertical() == isVertical && bar->Enabled() && bar->Visible()) return bar;
  }
  return nullptr;
}

}  // namespace

HWND RootView::Create(HWND /*parent*/) {
  // One stop of the host's Tab key: within the form the tree moves the focus.
  const HWND created = CreateWindowExW(WS_EX_NOPARENTNOTIFY, OwnWindowClass::Name, nullptr,
                                       WS_CHILD | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | WS_TABSTOP, start.left, start.top,
                                       WidthOf(start), HeightOf(start), host, nullptr, Module(), nullptr);
  // A window takes the direction of a mirrored parent. Pages, drawings and English captions are not mirrored.
  if (created != nullptr) {
    const LONG style = GetWindowLongW(created, GWL_EXSTYLE);
    if ((style & WS_EX_LAYOUTRTL) != 0) SetWindowLongW(created, GWL_EXSTYLE, style & ~WS_EX_LAYOUTRTL);
  }
  return created;
}

// The host did not hear of a window that was still being made; from now on it hears of clicks into it.
void RootView::LetHostHear() const {
  SetWindowLongW(Handle(), GWL_EXSTYLE, GetWindowLongW(Handle(), GWL_EXSTYLE) & ~WS_EX_NOPARENTNOTIFY);
}

void RootView::Show(Aspect aspect) {
  if (aspect == Aspect::Pointer) RenewPointer();
}

// The system does not take the focus from an edit field if a container is disabled; do it here.
void RootView::ShowEnabled() {
  PaintedView::ShowEnabled();
  if (TakesInput()) return;
  CancelMouse(Handle());
  if (IsAttached() && IsChild(Handle(), GetFocus()) != FALSE) SetFocus(nullptr);
}

void RootView::Paint(HDC context, const RECT& client) { FillWithFace(context, client); }

bool RootView::Scroll(WPARAM wheel) {
  ScrollBar* const bar = FindScrollBar(root, (LOWORD(wheel) & MK_SHIFT) == 0);
  if (bar == nullptr) return false;
  wheelRest += GET_WHEEL_DELTA_WPARAM(wheel);
  const int pixels = wheelRest * WheelStep / WHEEL_DELTA;
  wheelRest -= pixels * WHEEL_DELTA / WheelStep;
  bar->UserSetValue(bar->Value() - pixels);
  return true;
}

LRESULT RootView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_PAINT: {
      // Run the handler after painting: it may show a message box, below which a window that is out of date would be
      // painted forever.
      const LRESULT result = PaintedView::OnMessage(message, wParam, lParam);
      root.UserPaint();
      return result;
    }
    case WM_SIZE:
      Shared().LayOut();
      break;
    case WM_SYSCOLORCHANGE:
    case WM_SETTINGCHANGE:
    case WM_THEMECHANGED:
      Shared().Refresh();
      break;
    case WM_MOUSEWHEEL:
      if (Scroll(wParam)) return 0;
      break;
    case WM_ENTERMENULOOP:
    case WM_EXITMENULOOP:
      Shared().NoteMenu(message == WM_ENTERMENULOOP);
      break;
    case ViewTree::KeysMessage:
      Shared().TellKeys();
      return 0;
    case Announcements::Message:
      Shared().TellAnnouncements();
      return 0;
    default:
      break;
  }
  return PaintedView::OnMessage(message, wParam, lParam);
}

}  // namespace kw::windows
