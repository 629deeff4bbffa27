#include "windows/views/PaintedView.h"

#include <cstdint>

#include "windows/base/Gdi.h"
#include "windows/base/Mouse.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

// Raises the event of a key message; false for another message. The model may be gone afterwards.
bool SendKey(const KeyInput& input, UINT message, WPARAM wParam) {
  const auto code = static_cast<std::int16_t>(wParam);
  switch (message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
      input.KeyDown.Raise(code, ShiftState());
      return true;
    case WM_CHAR:
      input.KeyPress.Raise(code);
      return true;
    case WM_KEYUP:
    case WM_SYSKEYUP:
      input.KeyUp.Raise(code, ShiftState());
      return true;
    default:
      return false;
  }
}

}  // namespace

void PaintedView::Show(Aspect aspect) {
  if (aspect == Aspect::Pointer) RenewPointer();
  if (aspect == Aspect::Content || aspect == Aspect::Colours || aspect == Aspect::Font || aspect == Aspect::Geometry) {
    if (IsFilled()) InvalidateRect(Handle(), nullptr, FALSE);
  }
}

// Also called if a container of the control was disabled.
void PaintedView::ShowEnabled() {
  ControlView::ShowEnabled();
  if (IsFilled()) InvalidateRect(Handle(), nullptr, FALSE);
}

void PaintedView::PaintWith(HDC context) {
  RECT client = {};
  GetClientRect(Handle(), &client);
  const HGDIOBJ before = SelectObject(context, Shared().Font());
  Paint(context, client);
  SelectObject(context, before);
}

bool PaintedView::WantsKey(WPARAM key) const {
  bool isInUse = false;
  if (keys != nullptr) keys->KeyUse.Raise(static_cast<std::int16_t>(key), ShiftState(), isInUse);
  return isInUse;
}

LRESULT PaintedView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (keys != nullptr && SendKey(*keys, message, wParam)) {
    // The system hears of keys with Alt, too: they open menus.
    const bool isSystemKey = message == WM_SYSKEYDOWN || message == WM_SYSKEYUP;
    return isSystemKey && IsAttached() ? Default(message, wParam, lParam) : 0;
  }
  switch (message) {
    case WM_GETDLGCODE:
      if (keys != nullptr) return DLGC_WANTCHARS;
      break;
    case ViewTree::TabMessage:
      return Shared().OnTabMessage(static_cast<UINT>(wParam), lParam);
    case WM_ERASEBKGND: {
      // WM_PAINT paints the view's own background. A transparent child requests it with its own context.
      auto* const context = reinterpret_cast<HDC>(wParam);
      if (WindowFromDC(context) != Handle()) PaintWith(context);
      return TRUE;
    }
    case WM_PRINTCLIENT:
      PaintWith(reinterpret_cast<HDC>(wParam));
      return 0;
    case WM_PAINT: {
      const BufferedPaint paint(Handle(), Shared().Buffer());
      if (paint.IsNeeded()) PaintWith(paint.Context());
      return 0;
    }
    case WM_CAPTURECHANGED:
      if (!isReleasing) OnMouseLost();
      break;
    default:
      break;
  }
  if (const auto event = MouseEvent::Of(message, wParam, lParam)) {
    // Release the mouse before the event, because the handler may show a message box.
    isReleasing = true;
    HoldMouse(Handle(), *event);
    isReleasing = false;
    OnMouse(*event);
    return 0;
  }
  return Default(message, wParam, lParam);
}

// Passes fractions of model pixels, so that a dragged control stays below the pointer.
void PaintedView::OnMouse(const MouseEvent& event) {
  const Scale& scale = Shared().Scaling();
  SendMouse(event, {scale.ToModel(event.at.x), scale.ToModel(event.at.y)});
}

void PaintedView::SendMouse(const MouseEvent& event, Point at) { sender.Send(*this, mouse, event, at); }

}  // namespace kw::windows
