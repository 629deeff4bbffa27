#include "PropertyPanel.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

namespace kw::host {
namespace {

constexpr wchar_t PanelClassName[] = L"KwHostPanel";
constexpr int FirstRowId = 1000;

// Sizes at 96 dots per inch.
constexpr int PanelMargin = 10;
constexpr int Gap = 8;
constexpr int SwitchHeight = 21;
constexpr int FieldHeight = 23;
constexpr int FieldPitch = 28;
constexpr int FieldWidth = 150;

std::wstring WindowText(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

SIZE TextSize(HWND window, HFONT font) {
  const std::wstring text = WindowText(window);
  const HDC context = GetDC(window);
  const HGDIOBJ before = SelectObject(context, font);
  SIZE size = {};
  GetTextExtentPoint32W(context, text.c_str(), static_cast<int>(text.size()), &size);
  SelectObject(context, before);
  ReleaseDC(window, context);
  return size;
}

HINSTANCE Instance() { return GetModuleHandleW(nullptr); }

HWND AddChild(HWND parent, const wchar_t* type, const std::wstring& text, DWORD style, DWORD extendedStyle, int id) {
  return CreateWindowExW(extendedStyle, type, text.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, parent,
                         reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), Instance(), nullptr);
}

}  // namespace

PropertyPanel::PropertyPanel(HWND parent, IDispatch& described, const std::vector<Property>& properties,
                             Callbacks callbacks)
    : object(&described), told(std::move(callbacks)) {
  WNDCLASSW windowClass = {};
  windowClass.lpfnWndProc = &Procedure;
  windowClass.hInstance = Instance();
  windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  windowClass.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
  windowClass.lpszClassName = PanelClassName;
  RegisterClassW(&windowClass);
  panel = AddChild(parent, PanelClassName, {}, WS_CLIPCHILDREN, WS_EX_CONTROLPARENT, 0);
  SetWindowLongPtrW(panel, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  CreateTips();
  for (const bool switches : {true, false})
    for (const Property& property : properties)
      if ((property.type == VT_BOOL) == switches) AddRow(property);
  hint = AddChild(panel, WC_STATICW, L"Enter sets a field, Escape restores it.", SS_NOPREFIX, 0, 0);
}

void PropertyPanel::CreateTips() {
  tips = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0,
                         panel, nullptr, Instance(), nullptr);
}

void PropertyPanel::AddRow(const Property& property) {
  Row row;
  row.property = property;
  const int id = FirstRowId + static_cast<int>(rows.size());
  if (row.IsSwitch()) {
    row.control = AddChild(panel, WC_BUTTONW, property.name, WS_TABSTOP | BS_CHECKBOX | BS_NOTIFY, 0, id);
  } else {
    row.label = AddChild(panel, WC_STATICW, property.name, SS_NOPREFIX | SS_CENTERIMAGE, 0, 0);
    row.control = AddChild(panel, WC_EDITW, {}, WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE, id);
    if (!property.isReadable)
      SendMessageW(row.control, EM_SETCUEBANNER, TRUE, reinterpret_cast<LPARAM>(L"can be set only"));
  }
  rows.push_back(row);
  AddTip(rows.back());
}

void PropertyPanel::AddTip(const Row& row) {
  std::wstring help = row.property.help;
  TTTOOLINFOW tip = {};
  tip.cbSize = sizeof tip;
  tip.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tip.hwnd = panel;
  tip.uId = reinterpret_cast<UINT_PTR>(row.control);
  tip.lpszText = help.data();
  SendMessageW(tips, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tip));
}

SIZE PropertyPanel::Arrange(HFONT font, int dpi) {
  const auto scale = [dpi](int size) { return MulDiv(size, dpi, USER_DEFAULT_SCREEN_DPI); };
  int labels = 0;
  int widest = TextSize(hint, font).cx;
  for (const Row& row : rows) {
    SendMessageW(row.control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    if (row.label != nullptr) {
      SendMessageW(row.label, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
      labels = std::max(labels, static_cast<int>(TextSize(row.label, font).cx));
    } else {
      widest = std::max(widest, static_cast<int>(TextSize(row.control, font).cx) + scale(SwitchHeight));
    }
  }
  SendMessageW(hint, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  const int left = scale(PanelMargin);
  const int fieldLeft = left + labels + scale(Gap);
  const int right = std::max(fieldLeft + scale(FieldWidth), left + widest);
  int top = left;
  bool wasSwitch = true;
  for (const Row& row : rows) {
    if (wasSwitch && !row.IsSwitch()) top += scale(Gap);
    wasSwitch = row.IsSwitch();
    if (wasSwitch) {
      MoveWindow(row.control, left, top, right - left, scale(SwitchHeight), TRUE);
    } else {
      MoveWindow(row.label, left, top, labels, scale(FieldHeight), TRUE);
      MoveWindow(row.control, fieldLeft, top, right - fieldLeft, scale(FieldHeight), TRUE);
    }
    top += scale(wasSwitch ? SwitchHeight : FieldPitch);
  }
  MoveWindow(hint, left, top + scale(Gap), right - left, scale(SwitchHeight), TRUE);
  return {right + left, top + scale(Gap + SwitchHeight + PanelMargin)};
}

void PropertyPanel::Refresh() {
  for (const Row& row : rows) {
    _variant_t value;
    if (!row.property.isReadable || FAILED(GetProperty(*object.Get(), row.property.id, value))) continue;
    if (row.IsSwitch()) {
      SendMessageW(row.control, BM_SETCHECK, V_BOOL(&value) != VARIANT_FALSE ? BST_CHECKED : BST_UNCHECKED, 0);
    } else if (GetFocus() != row.control || SendMessageW(row.control, EM_GETMODIFY, 0, 0) == 0) {
      // Typing that is under way stays.
      if (WindowText(row.control) != TextOf(value)) SetWindowTextW(row.control, TextOf(value).c_str());
    }
  }
}

void PropertyPanel::Apply(const Row& row) {
  _variant_t text(WindowText(row.control).c_str());
  _variant_t value(SendMessageW(row.control, BM_GETCHECK, 0, 0) != BST_CHECKED);
  std::wstring error;
  if (FAILED(PutProperty(*object.Get(), row.property.id, row.IsSwitch() ? value : text, error)))
    told.failed(row.property.name + L": " + error);
  SendMessageW(row.control, EM_SETMODIFY, FALSE, 0);
  Refresh();
}

void PropertyPanel::Focus(bool onLastRow) const {
  const HWND row = onLastRow ? rows.back().control : rows.front().control;
  SetFocus(row);
  SendMessageW(row, EM_SETSEL, 0, -1);
}

bool PropertyPanel::TranslateMessage(MSG& message) const {
  if (IsChild(panel, message.hwnd) == FALSE) return false;
  if (message.message == WM_KEYDOWN && message.wParam == VK_TAB) {
    const bool backwards = GetKeyState(VK_SHIFT) < 0;
    if (message.hwnd == (backwards ? rows.front() : rows.back()).control) {
      told.leave(backwards);
      return true;
    }
  }
  return IsDialogMessageW(panel, &message) != FALSE;
}

PropertyPanel::Row* PropertyPanel::FocusedRow() {
  const HWND focus = GetFocus();
  const auto row = std::find_if(rows.begin(), rows.end(), [focus](const Row& r) { return r.control == focus; });
  return row == rows.end() ? nullptr : &*row;
}

LRESULT PropertyPanel::OnCommand(int id, int notification) {
  if (id == IDOK || id == IDCANCEL) {  // what a dialog makes of Enter and Escape
    Row* const row = FocusedRow();
    if (row == nullptr || row->IsSwitch()) return 0;
    if (id == IDOK) {
      Apply(*row);
    } else {
      SendMessageW(row->control, EM_SETMODIFY, FALSE, 0);
      Refresh();
    }
    SendMessageW(row->control, EM_SETSEL, 0, -1);
  } else if (id >= FirstRowId) {
    const Row& row = rows[static_cast<std::size_t>(id - FirstRowId)];
    if (notification == (row.IsSwitch() ? BN_SETFOCUS : EN_SETFOCUS)) told.focused();
    if (row.IsSwitch() && notification == BN_CLICKED) Apply(row);
    if (!row.IsSwitch() && notification == EN_KILLFOCUS) Refresh();
  }
  return 0;
}

LRESULT CALLBACK PropertyPanel::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* const self = reinterpret_cast<PropertyPanel*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == WM_COMMAND && self != nullptr) return self->OnCommand(LOWORD(wParam), HIWORD(wParam));
  return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace kw::host
