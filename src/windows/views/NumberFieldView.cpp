#include "windows/views/NumberFieldView.h"

#include <string>

#include "windows/base/Gdi.h"
#include "windows/base/Text.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

constexpr int WidthOfSpin = 17;
constexpr int RightMargin = 3;

}  // namespace

HWND NumberFieldView::Create(HWND parent) {
  const HWND edit = CreateSystemWindow(parent, WC_EDITW, WS_TABSTOP | ES_AUTOHSCROLL | ES_RIGHT, WS_EX_CLIENTEDGE);
  if (edit == nullptr) return nullptr;
  SendMessageW(edit, EM_LIMITTEXT, NumberField::MaxLength, 0);
  spin = CreateSystemWindow(parent, UPDOWN_CLASSW, 0);
  if (spin == nullptr) return edit;
  Shared().NoteWindow(spin, *this);
  SendMessageW(spin, UDM_SETRANGE32, static_cast<WPARAM>(-1), 1);
  SendMessageW(spin, UDM_SETPOS32, 0, 0);
  return edit;
}

void NumberFieldView::Leave() {
  if (spin == nullptr) return;
  Shared().ForgetWindow(spin);
  DestroyWindow(spin);
  spin = nullptr;
}

int NumberFieldView::SpinWidth() const { return Shared().Scaling().LengthOnDevice(WidthOfSpin); }

RECT NumberFieldView::Place() const {
  RECT place = Bounds();
  place.right -= SpinWidth();
  return place;
}

void NumberFieldView::Fit() {
  const int margin = Shared().Scaling().LengthOnDevice(RightMargin);
  SendMessageW(Handle(), EM_SETMARGINS, EC_RIGHTMARGIN, MAKELPARAM(0, margin));
}

void NumberFieldView::Complete() {
  ControlView::Complete();
  if (spin != nullptr) PlaceSpin();  // the field was shown before its messages came here
}

void NumberFieldView::PlaceSpin() const {
  const RECT bounds = Bounds();
  SetWindowPos(spin, nullptr, bounds.right - SpinWidth(), bounds.top, SpinWidth(), HeightOf(bounds),
               SWP_NOZORDER | SWP_NOACTIVATE | static_cast<UINT>(field.Visible() ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
}

void NumberFieldView::ShowEnabled() {
  ControlView::ShowEnabled();
  if (spin != nullptr) EnableWindow(spin, IsWindowEnabled(Handle()));
}

void NumberFieldView::Show(Aspect aspect) {
  if (aspect == Aspect::Content) ShowText();
  if (aspect == Aspect::Typing) SelectAll();
}

void NumberFieldView::ShowText() {
  const std::wstring text = ToWide(field.Text());
  if (TextOf(Handle()) == text) return;
  SetWindowTextW(Handle(), text.c_str());
  if (GetFocus() == Handle()) SelectAll();
}

bool NumberFieldView::WantsKey(WPARAM key) const {
  return (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_DELETE || key == VK_BACK;
}

void NumberFieldView::OnCommand(WORD notification, WORD /*id*/) {
  if (notification != EN_CHANGE) return;
  if (TakesInput())
    field.UserType(FromWide(TextOf(Handle())));
  else
    ShowText();
}

LRESULT NumberFieldView::OnNotify(NMHDR& header) {
  if (header.code != static_cast<UINT>(UDN_DELTAPOS)) return 0;
  if (TakesInput()) field.UserStep(reinterpret_cast<const NMUPDOWN&>(header).iDelta);
  return TRUE;  // the spin button's own number stays
}

void NumberFieldView::Turn(int wheel) {
  wheelRest += wheel;
  const int steps = wheelRest / WHEEL_DELTA;
  wheelRest %= WHEEL_DELTA;
  field.UserStep(steps);
}

LRESULT NumberFieldView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_KEYDOWN:
      if (wParam != VK_UP && wParam != VK_DOWN) break;
      field.UserStep(wParam == VK_UP ? 1 : -1);
      return 0;
    case WM_MOUSEWHEEL:
      Turn(GET_WHEEL_DELTA_WPARAM(wParam));
      return 0;
    case WM_SETFOCUS: {
      const LRESULT result = Default(message, wParam, lParam);
      // From another control by the keyboard; a press places the caret.
      const bool isNeighbour = GetAncestor(reinterpret_cast<HWND>(wParam), GA_ROOT) == GetAncestor(Handle(), GA_ROOT);
      if (isNeighbour && GetKeyState(VK_LBUTTON) >= 0) SelectAll();
      return result;
    }
    case WM_WINDOWPOSCHANGED: {
      const LRESULT result = Default(message, wParam, lParam);
      if (spin != nullptr && IsAttached()) PlaceSpin();
      return result;
    }
    default:
      break;
  }
  return Default(message, wParam, lParam);
}

void NumberFieldView::Draw(const Look& look, const RECT& bounds, const NumberField& field) {
  FillWith(look.context, bounds, GetSysColor(COLOR_WINDOW));
  RECT edge = bounds;
  DrawEdge(look.context, &edge, BDR_SUNKENOUTER, BF_RECT | BF_ADJUST);
  const UINT state = field.Enabled() ? 0U : DFCS_INACTIVE;
  RECT up = edge;
  up.left = up.right - look.scale.LengthOnDevice(WidthOfSpin);
  RECT down = up;
  up.bottom = down.top = (edge.top + edge.bottom) / 2;
  DrawFrameControl(look.context, &up, DFC_SCROLL, state | DFCS_SCROLLUP);
  DrawFrameControl(look.context, &down, DFC_SCROLL, state | DFCS_SCROLLDOWN);
  edge.right = up.left - look.scale.LengthOnDevice(RightMargin);
  const std::wstring text = ToWide(field.Text());
  SetBkMode(look.context, TRANSPARENT);
  SetTextColor(look.context, GetSysColor(field.Enabled() ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
  DrawTextW(look.context, text.c_str(), static_cast<int>(text.size()), &edge,
            DT_SINGLELINE | DT_VCENTER | DT_RIGHT | DT_NOPREFIX);
}

}  // namespace kw::windows
