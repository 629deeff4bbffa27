#include "EventList.h"

#include <commctrl.h>

#include <algorithm>

namespace kw::host {
namespace {

constexpr LRESULT MostLines = 1000;

// Sizes at 96 dots per inch.
constexpr int LabelHeight = 22;
constexpr int ListMargin = 10;

HWND AddListChild(HWND parent, const wchar_t* type, const wchar_t* text, DWORD style, DWORD extendedStyle) {
  return CreateWindowExW(extendedStyle, type, text, WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, parent, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

int TextWidth(HWND window, const std::wstring& text) {
  const HDC context = GetDC(window);
  const HGDIOBJ before = SelectObject(context, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
  SIZE size = {};
  GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
  SelectObject(context, before);
  ReleaseDC(window, context);
  return size.cx;
}

}  // namespace

EventList::EventList(HWND parent)
    : label(AddListChild(parent, WC_STATICW, L"Events", SS_CENTERIMAGE, 0)),
      list(AddListChild(parent, WC_LISTBOXW, nullptr, WS_VSCROLL | WS_HSCROLL | LBS_NOINTEGRALHEIGHT,
                        WS_EX_CLIENTEDGE)) {}

void EventList::Arrange(const RECT& place, HFONT font, int dpi) {
  for (const HWND child : {label, list}) SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  const int width = place.right - place.left;
  const int labelHeight = MulDiv(LabelHeight, dpi, USER_DEFAULT_SCREEN_DPI);
  const int margin = MulDiv(ListMargin, dpi, USER_DEFAULT_SCREEN_DPI);
  MoveWindow(label, place.left + margin, place.top, width - margin, labelHeight, TRUE);
  MoveWindow(list, place.left, place.top + labelHeight, width, place.bottom - place.top - labelHeight, TRUE);
}

void EventList::Add(const std::wstring& line) {
  if (SendMessageW(list, LB_GETCOUNT, 0, 0) >= MostLines) SendMessageW(list, LB_DELETESTRING, 0, 0);
  const LRESULT index = SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
  SendMessageW(list, LB_SETTOPINDEX, static_cast<WPARAM>(index), 0);
  const LRESULT width =
      std::max<LRESULT>(SendMessageW(list, LB_GETHORIZONTALEXTENT, 0, 0), TextWidth(list, line) + ListMargin);
  SendMessageW(list, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(width), 0);
}

}  // namespace kw::host
