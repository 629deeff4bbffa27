#include "windows/toolbar/ToolBarView.h"

#include <algorithm>
#include <cwchar>
#include <utility>

#include "components/base/Texts.h"
#include "windows/base/Gdi.h"
#include "windows/base/Owned.h"
#include "windows/base/Text.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

constexpr const char* MoreImage = "More";

BYTE StyleOf(const ToolBar::Button& button) {
  switch (button.style) {
    case ButtonStyle::Separator:
      return BTNS_SEP;
    case ButtonStyle::Check:
    case ButtonStyle::Group:
      // Not a system check group: the model implements the group's rule.
      return BTNS_CHECK;
    case ButtonStyle::Push:
      break;
  }
  return BTNS_BUTTON;
}

}  // namespace

ToolBarView::ToolBarView(ViewTree& shared, ToolBar& shown, ControlView* container, BarRows& fellows)
    : ControlView(shared, shown, container), bar(shown), rows(fellows) {
  rows.Add(*this);
}

ToolBarView::~ToolBarView() { rows.Remove(*this); }

HWND ToolBarView::Create(HWND parent) {
  const HWND created = CreateSystemWindow(
      parent, TOOLBARCLASSNAMEW,
      TBSTYLE_FLAT | TBSTYLE_TOOLTIPS | TBSTYLE_LIST | CCS_NORESIZE | CCS_NOPARENTALIGN | CCS_NODIVIDER);
  if (created == nullptr) return nullptr;
  SendMessageW(created, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
  SendMessageW(created, TB_SETEXTENDEDSTYLE, 0, TBSTYLE_EX_MIXEDBUTTONS | TBSTYLE_EX_DOUBLEBUFFER);
  SetSizes(created);
  return created;
}

void ToolBarView::SetSizes(HWND shown) const {
  // The space that a tool bar adds to the size of its pictures for a button, whatever size is requested.
  constexpr SIZE padding = {8, 6};
  const int side = Sizes().button;
  SendMessageW(shown, TB_SETBITMAPSIZE, 0, MAKELPARAM(side - padding.cx, side - padding.cy));
  SendMessageW(shown, TB_SETBUTTONSIZE, 0, MAKELPARAM(side, side));
}

void ToolBarView::Rescale() {
  SetSizes(Handle());
  shownStates.clear();  // the widths have changed
  ControlView::Rescale();
}

BarSizes ToolBarView::Sizes() const { return BarSizes(Shared().Scaling()); }

void ToolBarView::SetRoom(const BarRoom& newRoom) {
  if (room == newRoom) return;
  room = newRoom;
  ShowButtons();
}

void ToolBarView::Show(Aspect aspect) {
  if (aspect == Aspect::Content) ShowButtons();
  if (aspect == Aspect::Visibility && isComplete) rows.LayOut();
}

void ToolBarView::Fit() {
  ShowButtons();
  if (isComplete) rows.LayOut();
}

void ToolBarView::ShowEnabled() {
  ControlView::ShowEnabled();
  ShowButtons();
}

// The buttons wait until all bars are known, since a bar's room depends on those beside it.
void ToolBarView::Complete() {
  rows.LayOut();
  isComplete = true;
  ShowButtons();
  ControlView::Complete();
}

void ToolBarView::ShowButtons() {
  if (!isComplete) return;
  const HDC measuring = GetDC(Handle());
  const HGDIOBJ before = SelectObject(measuring, Shared().Font());
  const RECT bounds = Bounds();
  const BarLayout layout = LayOut(bar, {WidthOf(bounds), HeightOf(bounds)}, room, Sizes(), measuring);
  SelectObject(measuring, before);
  ReleaseDC(Handle(), measuring);
  const std::vector<BYTE> states = States(layout);
  constexpr unsigned LayoutBits = TBSTATE_HIDDEN | TBSTATE_WRAP;
  const bool isLaidOut = std::ranges::equal(
      states, shownStates, [](BYTE a, BYTE b) { return ((static_cast<unsigned>(a) ^ b) & LayoutBits) == 0; });
  if (!isLaidOut) return AddButtons(layout, states);
  for (std::size_t i = 0; i < states.size(); ++i) {
    if (states[i] == shownStates[i]) continue;
    shownStates[i] = states[i];
    SendMessageW(Handle(), TB_SETSTATE, i + 1, MAKELPARAM(states[i], 0));
  }
}

std::vector<BYTE> ToolBarView::States(const BarLayout& layout) const {
  const bool isEnabled = IsEffectivelyEnabled();
  const std::vector<RECT>& buttonBounds = layout.buttonBounds;
  std::vector<BYTE> states;
  for (std::size_t i = 0; i < buttonBounds.size(); ++i) {
    const ToolBar::Button& button = bar.Buttons()[i];
    unsigned state = 0;
    if (isEnabled && button.enabled) state |= TBSTATE_ENABLED;
    if (WidthOf(buttonBounds[i]) == 0) state |= TBSTATE_HIDDEN;
    if (button.pressed) state |= TBSTATE_CHECKED;
    states.push_back(static_cast<BYTE>(state));
  }
  // The last visible button of a row has the wrap state.
  std::size_t last = 0;
  for (std::size_t i = 0; i < buttonBounds.size(); ++i) {
    if ((states[i] & TBSTATE_HIDDEN) != 0) continue;
    if (buttonBounds[i].top > buttonBounds[last].top) states[last] = static_cast<BYTE>(states[last] | TBSTATE_WRAP);
    last = i;
  }
  // The overflow menu opens even if its entries are disabled.
  if (layout.more) states.push_back(TBSTATE_ENABLED);
  return states;
}

// Adds all buttons again: the system lays out a bar when buttons are added, but not when a wrap state changes.
void ToolBarView::AddButtons(const BarLayout& layout, const std::vector<BYTE>& states) {
  SendMessageW(Handle(), WM_SETREDRAW, FALSE, 0);
  while (SendMessageW(Handle(), TB_DELETEBUTTON, 0, 0) != FALSE) continue;
  std::vector<std::wstring> names(states.size());
  std::vector<TBBUTTON> buttons;
  for (std::size_t i = 0; i < states.size(); ++i) buttons.push_back(SystemButton(i, states[i], names[i]));
  SendMessageW(Handle(), TB_ADDBUTTONSW, buttons.size(), reinterpret_cast<LPARAM>(buttons.data()));
  for (std::size_t i = 0; i < states.size(); ++i) {
    TBBUTTONINFOW info = {};
    info.cbSize = sizeof info;
    info.dwMask = TBIF_SIZE;
    info.cx = static_cast<WORD>(WidthOf(i < layout.buttonBounds.size() ? layout.buttonBounds[i] : *layout.more));
    if (info.cx > 0) SendMessageW(Handle(), TB_SETBUTTONINFOW, i + 1, reinterpret_cast<LPARAM>(&info));
  }
  SendMessageW(Handle(), TB_AUTOSIZE, 0, 0);
  SendMessageW(Handle(), WM_SETREDRAW, TRUE, 0);
  InvalidateRect(Handle(), nullptr, TRUE);
  shownStates = states;
}

ToolBar::Button ToolBarView::ButtonAt(std::size_t index) const {
  if (index < bar.Buttons().size()) return bar.Buttons()[index];
  return {.toolTip = Translated("More Buttons"), .image = MoreImage};
}

// A button's text is not shown; screen readers use it as the button's name. `name` keeps it.
TBBUTTON ToolBarView::SystemButton(std::size_t index, BYTE state, std::wstring& name) const {
  const ToolBar::Button button = ButtonAt(index);
  name = ToWide(button.toolTip);
  TBBUTTON shown = {};
  shown.idCommand = static_cast<int>(index) + 1;
  shown.fsStyle = StyleOf(button);
  shown.fsState = state;
  shown.iBitmap = button.style == ButtonStyle::Separator ? Sizes().gap : I_IMAGENONE;
  if (!name.empty()) shown.iString = reinterpret_cast<INT_PTR>(name.c_str());
  return shown;
}

// A click's command may destroy the window while the system's code for the message is on the stack, which would crash.
// So a click waits until that code has returned.
LRESULT ToolBarView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  ++messagesUnderWay;
  const bool isTaken = (message == WM_KEYDOWN && OnKey(wParam)) || (message == WM_CHAR && OnCharacter(wParam, lParam));
  LRESULT result = message == WM_GETDLGCODE ? DLGC_WANTARROWS | DLGC_WANTCHARS : 0;
  if (!isTaken && result == 0) result = ControlView::OnMessage(message, wParam, lParam);
  // The button that was hot last becomes hot again.
  if (message == WM_SETFOCUS) SetHotButton(TakesKeys(lastKeyed) ? lastKeyed : Next(-1, 1));
  if (message == WM_KILLFOCUS) SetHotButton(std::nullopt);
  --messagesUnderWay;
  if (messagesUnderWay == 0 && IsAttached()) FinishMessage(message);
  return result;
}

void ToolBarView::FinishMessage(UINT message) {
  if (message == WM_LBUTTONUP && clicked == 0) {
    // Some versions of Windows press a disabled check button without a notification.
    ReadChecks();
    ShowButtons();
  }
  if (clicked != 0) Click(std::exchange(clicked, WORD{0}));
}

void ToolBarView::OnCommand(WORD /*notification*/, WORD id) {
  if (messagesUnderWay > 0)
    clicked = id;
  else
    Click(id);
}

void ToolBarView::Click(WORD id) {
  const auto index = static_cast<std::size_t>(id) - 1;
  if (index == bar.Buttons().size() && TakesInput()) return PopUpRest();
  // The system has toggled a check button already; the model decides what the click does.
  ReadChecks();
  Choose(index);
}

void ToolBarView::Choose(std::size_t button) {
  if (button >= bar.Buttons().size()) return;
  if (!TakesInput()) return ShowButtons();
  const std::string key = bar.Buttons()[button].key;
  bar.UserClick(key);
  if (IsAttached()) ShowButtons();
}

void ToolBarView::ReadChecks() {
  for (std::size_t i = 0; i < shownStates.size(); ++i) {
    const auto checked = static_cast<unsigned>(SendMessageW(Handle(), TB_GETSTATE, i + 1, 0)) & TBSTATE_CHECKED;
    shownStates[i] = static_cast<BYTE>((shownStates[i] & ~unsigned{TBSTATE_CHECKED}) | checked);
  }
}

std::vector<ToolBarView::MenuEntry> ToolBarView::EntriesOfRest() {
  std::vector<MenuEntry> entries;
  const auto add = [&](ToolBarView* view, bool isAll) {
    for (std::size_t i = 0; i < view->bar.Buttons().size(); ++i) {
      const ToolBar::Button& button = view->bar.Buttons()[i];
      const bool isOut = isAll || (view->shownStates[i] & TBSTATE_HIDDEN) != 0;
      if (isOut && button.visible && button.style != ButtonStyle::Separator) entries.push_back({view, i});
    }
  };
  add(this, false);
  for (ToolBarView* behind : rows.Behind(*this)) add(behind, true);
  return entries;
}

void ToolBarView::PopUpRest() {
  OwnedMenu owned(CreatePopupMenu());
  const HMENU popUp = owned.get();
  if (popUp == nullptr) return;
  const std::vector<MenuEntry> entries = EntriesOfRest();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const auto& [view, index] = entries[i];
    const ToolBar::Button& button = view->bar.Buttons()[index];
    if (i > 0 && entries[i - 1].bar != view) AppendMenuW(popUp, MF_SEPARATOR, 0, nullptr);
    const bool isEnabled = button.enabled && view->IsEffectivelyEnabled();
    const UINT flags = (isEnabled ? 0U : unsigned{MF_GRAYED}) | (button.pressed ? unsigned{MF_CHECKED} : 0U);
    AppendMenuW(popUp, MF_STRING | flags, i + 1, ToWide(button.toolTip).c_str());
  }
  RECT bounds = ButtonBounds(bar.Buttons().size());
  MapWindowPoints(Handle(), nullptr, reinterpret_cast<POINT*>(&bounds), 2);
  TPMPARAMS besides = {sizeof besides, bounds};
  // The window may be destroyed while the menu is up; `held` keeps the control alive until then.
  const auto held = Shared().Hold();
  const int chosen = TrackPopupMenuEx(popUp, TPM_RETURNCMD | TPM_RIGHTALIGN | TPM_VERTICAL, bounds.right, bounds.bottom,
                                      Shared().Window(), &besides);
  owned.reset();
  if (chosen <= 0 || !IsAttached()) return;
  const auto& [view, index] = entries[static_cast<std::size_t>(chosen) - 1];
  if (view->IsAttached()) view->Choose(index);
}

// The system draws what lies below the picture: the face, and the frame of a button that is pressed or below the
// pointer.
LRESULT ToolBarView::DrawButton(const NMTBCUSTOMDRAW& drawing) const {
  if (drawing.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
  if (drawing.nmcd.dwDrawStage == CDDS_ITEMPREPAINT) return CDRF_NOTIFYPOSTPAINT;
  const auto index = static_cast<std::size_t>(drawing.nmcd.dwItemSpec) - 1;
  if (drawing.nmcd.dwDrawStage != CDDS_ITEMPOSTPAINT || index >= shownStates.size()) return CDRF_DODEFAULT;
  const HGDIOBJ before = SelectObject(drawing.nmcd.hdc, Shared().Font());
  DrawPicture({drawing.nmcd.hdc, Shared().Pictures(), Shared().Scaling()}, drawing.nmcd.rc, ButtonAt(index),
              (shownStates[index] & TBSTATE_ENABLED) != 0);
  SelectObject(drawing.nmcd.hdc, before);
  return CDRF_DODEFAULT;
}

LRESULT ToolBarView::OnNotify(NMHDR& header) {
  if (header.code == static_cast<UINT>(NM_CUSTOMDRAW)) {
    return DrawButton(reinterpret_cast<const NMTBCUSTOMDRAW&>(header));
  }
  if (header.code != static_cast<UINT>(TBN_GETINFOTIPW)) return 0;
  auto& asked = reinterpret_cast<NMTBGETINFOTIPW&>(header);
  const auto index = static_cast<std::size_t>(asked.iItem) - 1;
  if (index > bar.Buttons().size() || asked.cchTextMax <= 0) return 0;
  const std::wstring text = ToWide(index == bar.Buttons().size() ? Translated("More Buttons")
                                                                 : TranslatedIfOwn(bar.Buttons()[index].toolTip));
  std::wcsncpy(asked.pszText, text.c_str(), static_cast<std::size_t>(asked.cchTextMax));
  asked.pszText[asked.cchTextMax - 1] = L'\0';
  return 0;
}

void ToolBarView::Draw(const Look& look, const RECT& bounds, const ToolBar& bar) {
  const BarSizes sizes(look.scale);
  const SIZE size = {WidthOf(bounds), HeightOf(bounds)};
  const std::vector<RECT> buttonBounds = LayOut(bar, size, {size.cx, false}, sizes, look.context).buttonBounds;
  for (std::size_t i = 0; i < buttonBounds.size(); ++i) {
    const ToolBar::Button& button = bar.Buttons()[i];
    RECT own = buttonBounds[i];
    if (WidthOf(own) == 0 || button.style == ButtonStyle::Separator) continue;
    if (button.pressed) DrawEdge(look.context, &own, BDR_SUNKENOUTER, BF_RECT);
    const bool isEnabled = bar.Enabled() && button.enabled;
    DrawPicture(look, own, button, isEnabled);
  }
}

}  // namespace kw::windows
