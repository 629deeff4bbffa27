#include "windows/views/ImageComboView.h"

#include "scene/Accessible.h"
#include "windows/base/Gdi.h"
#include "windows/base/Text.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

constexpr int ListRows = 16;  // rows of the dropped-down list
constexpr int ComboRowHeight = 16;
constexpr int BorderHeight = 6;  // top and bottom border of the closed combo together, at every scale

}  // namespace

HWND ImageComboView::Create(HWND parent) {
  const HWND created = CreateSystemWindow(
      parent, WC_COMBOBOXEXW, WS_VSCROLL | static_cast<DWORD>(combo.IsEditable() ? CBS_DROPDOWN : CBS_DROPDOWNLIST));
  const auto nameInner = [&](UINT message) {
    return std::make_unique<NamedWindow>(reinterpret_cast<HWND>(SendMessageW(created, message, 0, 0)),
                                         ToWide(AccessibleOf(combo).name));
  };
  namedList = nameInner(CBEM_GETCOMBOCONTROL);
  namedEdit = nameInner(CBEM_GETEDITCONTROL);
  // One of these has the focus.
  for (const UINT part : {CBEM_GETCOMBOCONTROL, CBEM_GETEDITCONTROL}) {
    ViewTree::ClaimTabOf(reinterpret_cast<HWND>(SendMessageW(created, part, 0, 0)));
  }
  return created;
}

HWND ImageComboView::Edit() const { return reinterpret_cast<HWND>(SendMessageW(Handle(), CBEM_GETEDITCONTROL, 0, 0)); }

void ImageComboView::ShowBounds() {
  const RECT bounds = Bounds();
  SetWindowPos(Handle(), nullptr, bounds.left, bounds.top, WidthOf(bounds),
               HeightOf(bounds) + ListRows * Shared().Scaling().LengthOnDevice(ComboRowHeight),
               SWP_NOZORDER | SWP_NOACTIVATE);
  constexpr auto Closed = static_cast<WPARAM>(-1);
  SendMessageW(Handle(), CB_SETITEMHEIGHT, Closed, HeightOf(bounds) - BorderHeight);
  CentreEdit();
}

void ImageComboView::Complete() {
  ControlView::Complete();
  CentreEdit();  // the window was shown before its messages came here
}

LRESULT ImageComboView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  const LRESULT result = Default(message, wParam, lParam);
  if ((message == WM_WINDOWPOSCHANGED || message == WM_SHOWWINDOW) && IsAttached()) CentreEdit();
  return result;
}

// Centres the edit field. It is as high as its font, and the system may put it at the bottom of a higher combo whenever
// it moves or shows the combo.
void ImageComboView::CentreEdit() const {
  const HWND edit = Edit();
  if (edit == nullptr) return;
  RECT room = {};
  GetClientRect(GetParent(edit), &room);
  RECT field = {};
  GetWindowRect(edit, &field);
  MapWindowPoints(nullptr, GetParent(edit), reinterpret_cast<POINT*>(&field), 2);
  SetWindowPos(edit, nullptr, field.left, (room.bottom - HeightOf(field)) / 2, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void ImageComboView::ShowEnabled() {
  ControlView::ShowEnabled();
  // The edit field is nested two windows deep, and not every system repaints it.
  RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void ImageComboView::Show(Aspect aspect) {
  if (aspect != Aspect::Content) return;
  isShowing = true;
  ShowItems();
  ShowText();
  isShowing = false;
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
    std::wstring text = ToWide(shownItems.back());
    COMBOBOXEXITEMW item = {};
    item.mask = CBEIF_TEXT;
    item.iItem = -1;
    item.pszText = text.data();
    SendMessageW(Handle(), CBEM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
  }
}

void ImageComboView::ShowText() {
  const HWND edit = Edit();
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
    case CBN_EDITCHANGE: {
      const HWND edit = Edit();
      if (edit == nullptr) break;
      const std::wstring text = TextOf(edit);
      // A choice by the arrow keys notifies only a change of the edit field.
      const std::int32_t chosen = Chosen();
      if (chosen == 0 || text != ToWide(combo.ItemText(chosen))) {
        combo.UserType(FromWide(text));
      } else if (chosen != combo.SelectedItem()) {
        combo.UserChoose(chosen);
      }
      break;
    }
    case CBN_SETFOCUS:
      FocusCame();
      break;
    case CBN_KILLFOCUS:
      FocusWent(GetFocus());
      break;
    default:
      break;
  }
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
