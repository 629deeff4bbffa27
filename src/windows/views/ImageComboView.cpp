#include "windows/views/ImageComboView.h"

#include "components/base/RaisedFlag.h"
#include "scene/Accessible.h"
#include "windows/base/Gdi.h"
#include "windows/base/Text.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

constexpr int ListRows = 16;  // rows of the dropped-down list
constexpr int ComboRowHeight = 16;
constexpr int BorderHeight = 6;  // top and bottom border of the closed combo together, at every scale

// All zero if the system has no answer.
COMBOBOXINFO PartsOf(HWND combo) {
  COMBOBOXINFO parts = {};
  parts.cbSize = sizeof parts;
  return GetComboBoxInfo(combo, &parts) == FALSE ? COMBOBOXINFO{} : parts;
}

}  // namespace

HWND ImageComboView::Create(HWND parent) {
  const DWORD kind = combo.IsEditable() ? CBS_DROPDOWN | CBS_AUTOHSCROLL : CBS_DROPDOWNLIST;
  const HWND created = CreateSystemWindow(parent, WC_COMBOBOXW, WS_VSCROLL | WS_TABSTOP | CBS_HASSTRINGS | kind);
  if (combo.IsEditable()) edit = PartsOf(created).hwndItem;
  return created;
}

// With the room of the dropped-down list.
RECT ImageComboView::Place() const {
  RECT place = Bounds();
  place.bottom += ListRows * Shared().Scaling().LengthOnDevice(ComboRowHeight);
  return place;
}

void ImageComboView::Fit() {
  constexpr auto Closed = static_cast<WPARAM>(-1);
  const LRESULT height = HeightOf(Bounds()) - BorderHeight;
  if (SendMessageW(Handle(), CB_GETITEMHEIGHT, Closed, 0) != height) {
    SendMessageW(Handle(), CB_SETITEMHEIGHT, Closed, height);
  }
  CentreEdit();
}

void ImageComboView::Complete() {
  ControlView::Complete();
  if (edit == nullptr) return;
  namedEdit = std::make_unique<NamedWindow>(edit, ToWide(AccessibleOf(combo).name));
  ViewTree::ClaimTabOf(edit);
  CentreEdit();  // the window was shown before its messages came here
}

LRESULT ImageComboView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == TakeFieldMessage) {
    const auto held = Shared().Hold();
    TakeField();
    return 0;
  }
  const LRESULT result = Default(message, wParam, lParam);
  if ((message == WM_WINDOWPOSCHANGED || message == WM_SHOWWINDOW) && IsAttached()) CentreEdit();
  return result;
}

// Makes the edit field as high as its font, in the middle: the system makes it as high as the combo, with the text at
// the top, whenever it moves or shows the combo.
void ImageComboView::CentreEdit() const {
  if (edit == nullptr) return;
  const HDC measuring = GetDC(edit);
  const HGDIOBJ before = SelectObject(measuring, Shared().Font());
  TEXTMETRICW text = {};
  GetTextMetricsW(measuring, &text);
  SelectObject(measuring, before);
  ReleaseDC(edit, measuring);
  RECT client = {};
  GetClientRect(Handle(), &client);
  const RECT item = PartsOf(Handle()).rcItem;
  SetWindowPos(edit, nullptr, item.left, (client.bottom - text.tmHeight) / 2, WidthOf(item), text.tmHeight,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void ImageComboView::ShowEnabled() {
  ControlView::ShowEnabled();
  // Not every system repaints the edit field.
  if (edit != nullptr) RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void ImageComboView::Show(Aspect aspect) {
  if (aspect != Aspect::Content) return;
  const RaisedFlag showing(isShowing);
  ShowItems();
  ShowText();
}

void ImageComboView::ShowItems() {
  // Except during start-up, items are only appended, or all removed.
  auto count = static_cast<std::int32_t>(shownItems.size());
  bool isSame = count <= combo.ItemCount();
  for (std::int32_t i = 1; isSame && i <= count; ++i) {
    isSame = shownItems[static_cast<std::size_t>(i - 1)] == combo.ItemText(i);
  }
  if (!isSame) {
    SendMessageW(Handle(), CB_RESETCONTENT, 0, 0);
    shownItems.clear();
    count = 0;
  }
  for (std::int32_t i = count + 1; i <= combo.ItemCount(); ++i) {
    shownItems.push_back(combo.ItemText(i));
    const std::wstring text = ToWide(shownItems.back());
    SendMessageW(Handle(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  }
}

void ImageComboView::ShowText() {
  DWORD start = 0;
  DWORD end = 0;
  if (edit != nullptr) SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
  const std::int32_t selected = combo.SelectedItem() - 1;
  if (SendMessageW(Handle(), CB_GETCURSEL, 0, 0) != selected) {
    SendMessageW(Handle(), CB_SETCURSEL, static_cast<WPARAM>(selected), 0);
  }
  if (edit == nullptr) return;
  const std::wstring text = ToWide(combo.Text());
  if (TextOf(edit) != text) SetWindowTextW(edit, text.c_str());
  SendMessageW(edit, EM_SETSEL, start, static_cast<LPARAM>(end));  // the caret stays where the user types
}

bool ImageComboView::WantsKey(WPARAM key) const {
  switch (key) {
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
    case VK_HOME:
    case VK_END:
    case VK_PRIOR:
    case VK_NEXT:
    case VK_DELETE:
      return true;
    case VK_RETURN:
    case VK_ESCAPE:
      return isDropped;
    default:
      return false;
  }
}

std::int32_t ImageComboView::Chosen() const {
  const auto chosen = static_cast<std::int32_t>(SendMessageW(Handle(), CB_GETCURSEL, 0, 0)) + 1;
  return chosen <= combo.ItemCount() ? chosen : 0;
}

void ImageComboView::OnCommand(WORD notification, WORD /*id*/) {
  if (notification == CBN_DROPDOWN || notification == CBN_CLOSEUP) {
    isDropped = notification == CBN_DROPDOWN;
    Shared().NoteKeys();
    // A list that drops down then chooses the item that begins with what was typed.
    if (edit != nullptr) PostMessageW(Handle(), TakeFieldMessage, 0, 0);
  }
  if (isShowing) return;
  const bool isInput = notification == CBN_SELCHANGE || notification == CBN_EDITCHANGE;
  if (isInput && !TakesInput()) return Show(Aspect::Content);
  switch (notification) {
    case CBN_SELCHANGE:
      if (const std::int32_t chosen = Chosen(); chosen > 0) combo.UserChoose(chosen);
      // A handler may have restored the old choice.
      if (IsAttached()) Show(Aspect::Content);
      break;
    case CBN_EDITCHANGE:
      if (edit != nullptr) combo.UserType(FromWide(TextOf(edit)));
      break;
    // A combo without a field has the focus itself.
    case CBN_SETFOCUS:
      if (edit != nullptr) FocusCame();
      break;
    case CBN_KILLFOCUS:
      if (edit != nullptr) FocusWent(GetFocus());
      break;
    default:
      break;
  }
}

void ImageComboView::TakeField() {
  const std::string text = FromWide(TextOf(edit));
  const std::int32_t chosen = Chosen();
  if (text == combo.Text() && chosen == combo.SelectedItem()) return;
  if (TakesInput()) {
    if (chosen > 0 && combo.ItemText(chosen) == text)
      combo.UserChoose(chosen);
    else
      combo.UserType(text);
  }
  if (IsAttached()) Show(Aspect::Content);
}

void ImageComboView::Draw(const Look& look, const RECT& bounds, const ImageCombo& combo) {
  FillWith(look.context, bounds, GetSysColor(COLOR_WINDOW));
  RECT edge = bounds;
  DrawEdge(look.context, &edge, BDR_SUNKENOUTER, BF_RECT | BF_ADJUST);
  RECT arrow = edge;
  arrow.left = arrow.right - HeightOf(arrow);
  DrawFrameControl(look.context, &arrow, DFC_SCROLL,
                   combo.Enabled() ? DFCS_SCROLLCOMBOBOX : DFCS_SCROLLCOMBOBOX | DFCS_INACTIVE);
  RECT inner = {edge.left + look.scale.LengthOnDevice(3), edge.top, arrow.left, edge.bottom};
  const std::wstring text = ToWide(combo.Text());
  SetBkMode(look.context, TRANSPARENT);
  SetTextColor(look.context, GetSysColor(combo.Enabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
  DrawTextW(look.context, text.c_str(), static_cast<int>(text.size()), &inner,
            DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

}  // namespace kw::windows
