#include "windows/ToolBarView.h"

#include <algorithm>
#include <cwchar>
#include <utility>

#include "windows/Gdi.h"
#include "windows/Pane.h"
#include "windows/Text.h"

namespace kw::windows {
namespace {

// Sizes on the screen.
struct Sizes {
  explicit Sizes(const Scale& scale)
      : button(scale.LengthOnDevice(Images::ButtonSize)),
        gap(scale.LengthOnDevice(8)),
        textMargin(scale.LengthOnDevice(6)),
        imageRoom(scale.LengthOnDevice(20)) {}

  int button;
  int gap;
  int textMargin;  // left and right of a caption
  int imageRoom;   // beside a caption; the system keeps it free where there is no image too
};

int WidthOf(const ToolBar::Button& button, const Sizes& sizes, HDC measuring) {
  if (button.style == ButtonStyle::Separator) return sizes.gap;
  if (button.caption.empty()) return sizes.button;
  const std::wstring text = ToWide(button.caption);
  SIZE size = {};
  GetTextExtentPoint32W(measuring, text.c_str(), static_cast<int>(text.size()), &size);
  return size.cx + 2 * sizes.textMargin + sizes.imageRoom;
}

// Where each button lies in a bar of that width; rows wrap. A hidden button's place is empty.
std::vector<RECT> LayOut(const ToolBar& bar, int width, const Sizes& sizes, HDC measuring) {
  std::vector<RECT> places;
  LONG x = 0;
  LONG y = 0;
  for (const ToolBar::Button& button : bar.Buttons()) {
    const int own = button.visible ? WidthOf(button, sizes, measuring) : 0;
    if (x > 0 && x + own > width) {
      x = 0;
      y += sizes.button;
    }
    places.push_back({x, y, x + own, y + sizes.button});
    x += own;
  }
  // A gap at the end of a row parts nothing.
  for (std::size_t i = 0; i + 1 < places.size(); ++i) {
    const bool isGap = bar.Buttons()[i].style == ButtonStyle::Separator;
    if (isGap && places[i + 1].top > places[i].top) places[i].right = places[i].left;
  }
  return places;
}

BYTE StyleOf(const ToolBar::Button& button) {
  const auto extra = static_cast<BYTE>(button.caption.empty() ? 0 : BTNS_SHOWTEXT);
  switch (button.style) {
    case ButtonStyle::Separator:
      return BTNS_SEP;
    case ButtonStyle::Check:
    case ButtonStyle::Group:
      // The model keeps the group's rule.
      return static_cast<BYTE>(BTNS_CHECK | extra);
    case ButtonStyle::Push:
      break;
  }
  return static_cast<BYTE>(BTNS_BUTTON | extra);
}

}  // namespace

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
  SendMessageW(shown, TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(Shared().Pictures().Normal()));
  SendMessageW(shown, TB_SETDISABLEDIMAGELIST, 0, reinterpret_cast<LPARAM>(Shared().Pictures().Disabled()));
  const int side = Sizes(Shared().Scaling()).button;
  SendMessageW(shown, TB_SETBUTTONSIZE, 0, MAKELPARAM(side, side));
}

void ToolBarView::Rescale() {
  SetSizes(Handle());
  shownStates.clear();  // their widths are others
  ControlView::Rescale();
}

void ToolBarView::Show(Aspect aspect) {
  if (aspect == Aspect::Content) ShowButtons();
}

void ToolBarView::ShowPlace() {
  ControlView::ShowPlace();
  ShowButtons();
}

void ToolBarView::ShowEnabled() {
  ControlView::ShowEnabled();
  ShowButtons();
}

void ToolBarView::ShowButtons() {
  const HDC measuring = GetDC(Handle());
  const HGDIOBJ before = SelectObject(measuring, Shared().Font());
  const std::vector<RECT> places = LayOut(bar, kw::windows::WidthOf(Place()), Sizes(Shared().Scaling()), measuring);
  SelectObject(measuring, before);
  ReleaseDC(Handle(), measuring);
  const std::vector<BYTE> states = States(places);
  constexpr unsigned LayoutBits = TBSTATE_HIDDEN | TBSTATE_WRAP;
  const bool isLaidOut = std::ranges::equal(
      states, shownStates, [](BYTE a, BYTE b) { return ((static_cast<unsigned>(a) ^ b) & LayoutBits) == 0; });
  if (!isLaidOut) return AddButtons(places, states);
  for (std::size_t i = 0; i < states.size(); ++i) {
    if (states[i] == shownStates[i]) continue;
    shownStates[i] = states[i];
    SendMessageW(Handle(), TB_SETSTATE, i + 1, MAKELPARAM(states[i], 0));
  }
}

std::vector<BYTE> ToolBarView::States(const std::vector<RECT>& places) const {
  const bool isEnabled = IsEffectivelyEnabled();
  std::vector<BYTE> states;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const ToolBar::Button& button = bar.Buttons()[i];
    unsigned state = 0;
    if (isEnabled && button.enabled) state |= TBSTATE_ENABLED;
    if (kw::windows::WidthOf(places[i]) == 0) state |= TBSTATE_HIDDEN;
    if (button.pressed) state |= TBSTATE_CHECKED;
    states.push_back(static_cast<BYTE>(state));
  }
  // The last button of a row that shows carries the mark that a new row begins.
  std::size_t last = 0;
  for (std::size_t i = 0; i < places.size(); ++i) {
    if ((states[i] & TBSTATE_HIDDEN) != 0) continue;
    if (places[i].top > places[last].top) states[last] = static_cast<BYTE>(states[last] | TBSTATE_WRAP);
    last = i;
  }
  return states;
}

// The system lays a bar out when buttons are added, but not when one of them is to begin a new row.
void ToolBarView::AddButtons(const std::vector<RECT>& places, const std::vector<BYTE>& states) {
  SendMessageW(Handle(), WM_SETREDRAW, FALSE, 0);
  while (SendMessageW(Handle(), TB_DELETEBUTTON, 0, 0) != FALSE) continue;
  for (std::size_t i = 0; i < states.size(); ++i) {
    const ToolBar::Button& button = bar.Buttons()[i];
    const std::wstring caption = ToWide(button.caption);
    TBBUTTON added = {};
    added.idCommand = static_cast<int>(i) + 1;
    added.fsStyle = StyleOf(button);
    added.fsState = states[i];
    added.iBitmap = button.style == ButtonStyle::Separator ? Sizes(Shared().Scaling()).gap
                    : button.image.empty()                 ? I_IMAGENONE
                                                           : Shared().Pictures().IndexOf(button.image);
    if (!caption.empty()) added.iString = reinterpret_cast<INT_PTR>(caption.c_str());
    SendMessageW(Handle(), TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&added));
    TBBUTTONINFOW info = {};
    info.cbSize = sizeof info;
    info.dwMask = TBIF_SIZE;
    info.cx = static_cast<WORD>(kw::windows::WidthOf(places[i]));
    if (info.cx > 0) SendMessageW(Handle(), TB_SETBUTTONINFOW, i + 1, reinterpret_cast<LPARAM>(&info));
  }
  SendMessageW(Handle(), TB_AUTOSIZE, 0, 0);
  SendMessageW(Handle(), WM_SETREDRAW, TRUE, 0);
  InvalidateRect(Handle(), nullptr, TRUE);
  shownStates = states;
}

// What a click runs may take the window down, which the system's code for a message does not survive: a click that it
// tells of waits until that code is through.
LRESULT ToolBarView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  ++messagesUnderWay;
  const LRESULT result = ControlView::OnMessage(message, wParam, lParam);
  --messagesUnderWay;
  if (messagesUnderWay > 0 || !IsAttached()) return result;
  if (message == WM_LBUTTONUP && clicked == 0) {
    // Some systems press a disabled check button, without a word.
    ReadChecks();
    ShowButtons();
  }
  if (clicked == 0) return result;
  const WORD id = std::exchange(clicked, WORD{0});
  Click(id);
  return result;
}

void ToolBarView::OnCommand(WORD, WORD id) {
  if (messagesUnderWay > 0)
    clicked = id;
  else
    Click(id);
}

void ToolBarView::Click(WORD id) {
  const auto index = static_cast<std::size_t>(id) - 1;
  if (index >= bar.Buttons().size()) return;
  // The system has toggled a check button by itself; what the model makes of the click counts.
  ReadChecks();
  const std::string key = bar.Buttons()[index].key;
  bar.UserClick(key);
  if (IsAttached()) ShowButtons();
}

void ToolBarView::ReadChecks() {
  for (std::size_t i = 0; i < shownStates.size(); ++i) {
    const auto checked = static_cast<unsigned>(SendMessageW(Handle(), TB_GETSTATE, i + 1, 0)) & TBSTATE_CHECKED;
    shownStates[i] = static_cast<BYTE>((shownStates[i] & ~unsigned{TBSTATE_CHECKED}) | checked);
  }
}

LRESULT ToolBarView::OnNotify(NMHDR& header) {
  if (header.code != static_cast<UINT>(TBN_GETINFOTIPW)) return 0;
  auto& asked = reinterpret_cast<NMTBGETINFOTIPW&>(header);
  const auto index = static_cast<std::size_t>(asked.iItem) - 1;
  if (index >= bar.Buttons().size() || asked.cchTextMax <= 0) return 0;
  const std::wstring text = ToWide(bar.Buttons()[index].toolTip);
  std::wcsncpy(asked.pszText, text.c_str(), static_cast<std::size_t>(asked.cchTextMax));
  asked.pszText[asked.cchTextMax - 1] = L'\0';
  return 0;
}

void ToolBarView::Draw(const Look& look, const RECT& place, const ToolBar& bar) {
  const Sizes sizes(look.scale);
  const std::vector<RECT> places = LayOut(bar, kw::windows::WidthOf(place), sizes, look.context);
  for (std::size_t i = 0; i < places.size(); ++i) {
    const ToolBar::Button& button = bar.Buttons()[i];
    if (!button.visible || button.style == ButtonStyle::Separator) continue;
    RECT own = places[i];
    if (button.pressed) DrawEdge(look.context, &own, BDR_SUNKENOUTER, BF_RECT);
    if (!button.image.empty()) {
      const RECT square = {own.left, own.top, own.left + sizes.button, own.top + sizes.button};
      look.images.Draw(look.context, square, button.image, bar.Enabled() && button.enabled);
    }
    if (button.caption.empty()) continue;
    const std::wstring text = ToWide(button.caption);
    SetBkMode(look.context, TRANSPARENT);
    SetTextColor(look.context, GetSysColor(bar.Enabled() && button.enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    if (!button.image.empty()) own.left += sizes.imageRoom;
    DrawTextW(look.context, text.c_str(), static_cast<int>(text.size()), &own, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  }
}

}  // namespace kw::windows
