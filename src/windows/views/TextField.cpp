#include "windows/views/TextField.h"

#include <commctrl.h>

#include <algorithm>
#include <string_view>

#include "scene/Accessible.h"
#include "scene/CanvasItems.h"
#include "windows/base/Gdi.h"
#include "windows/base/Guard.h"
#include "windows/base/Module.h"
#include "windows/base/Mouse.h"
#include "windows/base/Text.h"
#include "windows/base/TextDrawing.h"
#include "windows/views/ControlView.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {

namespace {

// The window property that holds the field's object.
constexpr const wchar_t* PropertyName = L"KwTextField";

// Converts line ends to CR LF, which edit fields need; a caption may have LF only.
std::wstring WithFieldsLineEnds(const std::wstring& text) {
  std::wstring result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'\n' && (i == 0 || text[i - 1] != L'\r')) result += L'\r';
    result += text[i];
  }
  return result;
}

}  // namespace

TextField::TextField(HWND shownOn, TransparentPicture& typedInto, const Scale& shownAt)
    : canvas(shownOn),
      layer(&typedInto),
      scale(shownAt),
      window(CreateWindowExW(0, WC_EDITW, nullptr,
                             WS_CHILD | WS_CLIPSIBLINGS | ES_MULTILINE | ES_WANTRETURN | ES_AUTOVSCROLL, 0, 0, 1, 1,
                             canvas, nullptr, Module(), nullptr)),
      named(window, ToWide(AccessibleOf(typedInto).name)) {
  if (window == nullptr) return;
  SetPropW(window, PropertyName, this);
  SetWindowSubclass(window, &Subclass, 0, reinterpret_cast<DWORD_PTR>(this));
  ViewTree::ClaimTabOf(window);
  Show();
  isFilling = true;
  SetWindowTextW(window, WithFieldsLineEnds(ToWide(layer->Caption())).c_str());
  isFilling = false;
  SendMessageW(window, EM_SETSEL, 0, -1);
  SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
  SetFocus(window);
}

TextField::~TextField() {
  if (window != nullptr) {
    const bool hadKeyboard = GetFocus() == window;
    Release(window);
    ShowWindow(window, SW_HIDE);
    if (hadKeyboard) SetFocus(canvas);
    // Do not destroy the window at once: its code may be on the stack.
    PostMessageW(window, WM_CLOSE, 0, 0);
    SendMessageW(window, WM_SETFONT, 0, FALSE);
  }
  if (font != nullptr) DeleteObject(font);
}

void TextField::Show() {
  if (window == nullptr) return;
  const RECT bounds = ToRect(scale.ToDevice(ContentsOfLayer(*layer)));
  SetWindowPos(window, nullptr, bounds.left, bounds.top, std::max(1, WidthOf(bounds)), std::max(1, HeightOf(bounds)),
               SWP_NOZORDER | SWP_NOACTIVATE);
  const HFONT before = font;
  font = CreateLayerFont(scale.ToDevice(layer->TextFont()));
  SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  SendMessageW(window, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
  if (before != nullptr) DeleteObject(before);
}

void TextField::Rescale(const Scale& newScale) {
  scale = newScale;
  Show();
}

void TextField::Release(HWND window) {
  RemoveWindowSubclass(window, &Subclass, 0);
  RemovePropW(window, PropertyName);
}

TextField* TextField::FieldOf(HWND window) { return static_cast<TextField*>(GetPropW(window, PropertyName)); }

bool TextField::WantsKey(HWND window, WPARAM key) {
  if (FieldOf(window) == nullptr) return false;
  constexpr std::wstring_view Shortcuts = L"ACVXZ";
  const std::int16_t shift = ShiftState();
  switch (key) {
    case VK_BACK:
    case VK_DELETE:
    case VK_RETURN:
    case VK_ESCAPE:
      return true;
    case VK_INSERT:
      return shift == Mouse::ShiftKey || shift == Mouse::ControlKey;
    default:
      if (key >= VK_PRIOR && key <= VK_DOWN) return true;  // Page Up, Page Down, End, Home and the arrows
      return shift == Mouse::ControlKey && Shortcuts.find(static_cast<wchar_t>(key)) != std::wstring_view::npos;
  }
}

void TextField::TakeTextOf(HWND field) {
  if (TextField* const found = FieldOf(field)) found->TakeText();
}

void TextField::TakeText() {
  if (isFilling) return;
  layer->Type(FromWide(TextOf(window)));
}

HBRUSH TextField::BackgroundOf(HWND field, HDC context) {
  const TextField* const found = FieldOf(field);
  if (found == nullptr) return static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
  SetTextColor(context, found->layer->ForeColor());
  SetBkColor(context, found->layer->BackColor());
  SetDCBrushColor(context, found->layer->BackColor());
  return static_cast<HBRUSH>(GetStockObject(DC_BRUSH));
}

LRESULT CALLBACK TextField::Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                                     DWORD_PTR self) {
  TransparentPicture* const layer = reinterpret_cast<TextField*>(self)->layer;
  switch (message) {
    case WM_NCDESTROY:
      // The canvas's window was destroyed, and this one with it.
      reinterpret_cast<TextField*>(self)->window = nullptr;
      Release(window);
      break;
    case WM_KEYDOWN:
      if (wParam != VK_ESCAPE) break;
      Guard([layer] { layer->SetTyping(false); });
      return 0;
    case WM_CHAR:
      if (wParam == VK_ESCAPE) return 0;
      break;
    case WM_KILLFOCUS: {
      const LRESULT result = DefSubclassProc(window, message, wParam, lParam);
      Guard([layer] { layer->SetTyping(false); });
      return result;
    }
    default:
      break;
  }
  return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace kw::windows
