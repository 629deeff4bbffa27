#include "tests/support/win32/ToolBarButtons.h"

#include <commctrl.h>

#include <cstddef>
#include <vector>

#include "resources/KwIcons.h"
#include "tests/support/win32/ChildWindows.h"
#include "windows/base/Images.h"
#include "windows/base/ScreenScale.h"

namespace kw::test {
namespace {

LRESULT StateOf(const ToolBarButton& button) {
  return SendMessageW(button.bar, TB_GETSTATE, static_cast<WPARAM>(button.id), 0);
}

std::string NarrowToolTipOf(const ToolBarButton& button) {
  wchar_t text[80] = {};
  NMTBGETINFOTIPW asked = {};
  asked.hdr = {button.bar, static_cast<UINT_PTR>(GetDlgCtrlID(button.bar)), static_cast<UINT>(TBN_GETINFOTIPW)};
  asked.iItem = button.id;
  asked.pszText = text;
  asked.cchTextMax = 80;
  SendMessageW(GetParent(button.bar), WM_NOTIFY, asked.hdr.idFrom, reinterpret_cast<LPARAM>(&asked));
  const std::wstring wide = text;
  return {wide.begin(), wide.end()};
}

// What a pointer is to the eye: its hot spot, then its pixels.
std::vector<DWORD> LookOf(HCURSOR cursor) {
  ICONINFO parts = {};
  if (GetIconInfo(cursor, &parts) == FALSE) return {};
  std::vector<DWORD> look{parts.xHotspot, parts.yHotspot};
  BITMAP colours = {};
  GetObjectW(parts.hbmColor, sizeof colours, &colours);
  look.resize(2 + static_cast<std::size_t>(colours.bmWidth) * static_cast<std::size_t>(colours.bmHeight));
  BITMAPINFO info = {};
  info.bmiHeader = {sizeof info.bmiHeader, colours.bmWidth, -colours.bmHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const HDC context = GetDC(nullptr);
  GetDIBits(context, parts.hbmColor, 0, static_cast<UINT>(colours.bmHeight), &look[2], &info, DIB_RGB_COLORS);
  ReleaseDC(nullptr, context);
  DeleteObject(parts.hbmMask);
  DeleteObject(parts.hbmColor);
  return look;
}

}  // namespace

void ToolBarButton::Click() const {
  RECT place = {};
  SendMessageW(bar, TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
  const LPARAM middle = MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
  SendMessageW(bar, WM_LBUTTONDOWN, MK_LBUTTON, middle);
  SendMessageW(bar, WM_LBUTTONUP, 0, middle);
}

void ToolBarButton::Post() const {
  PostMessageW(GetParent(bar), WM_COMMAND, static_cast<WPARAM>(id), reinterpret_cast<LPARAM>(bar));
  PumpMessages();
}

POINT ToolBarButton::Middle() const {
  RECT bounds = {};
  SendMessageW(bar, TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&bounds));
  POINT middle = {(bounds.left + bounds.right) / 2, (bounds.top + bounds.bottom) / 2};
  ClientToScreen(bar, &middle);
  return middle;
}

bool ToolBarButton::IsShown() const { return IsWindowVisible(bar) != FALSE && (StateOf(*this) & TBSTATE_HIDDEN) == 0; }

bool ToolBarButton::IsEnabled() const {
  return IsWindowEnabled(bar) != FALSE && (StateOf(*this) & TBSTATE_ENABLED) != 0;
}

bool ToolBarButton::IsPressed() const { return (StateOf(*this) & TBSTATE_CHECKED) != 0; }

std::map<std::string, ToolBarButton> ToolBarButtons(HWND window) {
  std::map<std::string, ToolBarButton> buttons;
  for (const HWND bar : ChildWindows(window, TOOLBARCLASSNAMEW)) {
    const auto count = static_cast<int>(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0));
    for (int index = 0; index < count; ++index) {
      TBBUTTON found = {};
      SendMessageW(bar, TB_GETBUTTON, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&found));
      if ((found.fsStyle & BTNS_SEP) != 0) continue;
      const ToolBarButton button{bar, index, found.idCommand};
      buttons[NarrowToolTipOf(button)] = button;
    }
  }
  return buttons;
}

std::string PointerOver(HWND window) {
  SetCursor(nullptr);
  SendMessageW(window, WM_SETCURSOR, reinterpret_cast<WPARAM>(window), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
  const HCURSOR shown = GetCursor();
  if (shown == LoadCursorW(nullptr, IDC_ARROW)) return "0";
  if (shown == LoadCursorW(nullptr, IDC_CROSS)) return "2";
  const windows::Images images{windows::ScaleOf(window)};
  for (const CursorDrawing& drawing : CursorDrawings) {
    if (LookOf(shown) == LookOf(images.CursorOf(MousePointer::Custom, drawing.key))) {
      return std::string("99 ") + drawing.key;
    }
  }
  return "?";
}

}  // namespace kw::test
