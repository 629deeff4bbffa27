#include "windows/views/OptionButtonView.h"

#include <algorithm>
#include <vector>

#include "windows/base/Gdi.h"
#include "windows/base/Text.h"

namespace kw::windows {

HWND OptionButtonView::Create(HWND parent) {
  return CreateSystemWindow(parent, WC_BUTTONW, BS_RADIOBUTTON | WS_TABSTOP);
}

void OptionButtonView::Show(Aspect aspect) {
  if (aspect != Aspect::Content) return;
  SetWindowTextW(Handle(), ToWide(option.Caption()).c_str());
  SendMessageW(Handle(), BM_SETCHECK, option.Value() ? BST_CHECKED : BST_UNCHECKED, 0);
}

void OptionButtonView::OnCommand(WORD notification, WORD /*id*/) {
  if (notification == BN_CLICKED && TakesInput()) option.UserChoose();
}

LRESULT OptionButtonView::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_KEYDOWN && WantsKey(wParam)) {
    ChooseNeighbour(wParam == VK_LEFT || wParam == VK_UP);
    return 0;
  }
  return Default(message, wParam, lParam);
}

void OptionButtonView::ChooseNeighbour(bool isBackward) {
  std::vector<OptionButton*> group;
  for (Control* sibling : option.Container()->Children()) {
    auto* const one = dynamic_cast<OptionButton*>(sibling);
    if (one != nullptr && one->CanTakeFocus()) group.push_back(one);
  }
  if (isBackward) std::ranges::reverse(group);
  const auto self = std::ranges::find(group, &option);
  if (self == group.end()) return;
  OptionButton& next = self + 1 == group.end() ? *group.front() : **(self + 1);
  next.UserChoose();
  next.SetFocus();
}

void OptionButtonView::Draw(const Look& look, const RECT& bounds, const OptionButton& option) {
  const int side = look.scale.LengthOnDevice(13);
  const int top = (bounds.top + bounds.bottom - side) / 2;
  RECT circle = {bounds.left, top, bounds.left + side, top + side};
  const UINT chosen = option.Value() ? DFCS_CHECKED : 0U;
  DrawFrameControl(look.context, &circle, DFC_BUTTON,
                   DFCS_BUTTONRADIO | chosen | (option.Enabled() ? 0U : DFCS_INACTIVE));
  RECT text = bounds;
  text.left = circle.right + look.scale.LengthOnDevice(4);
  const std::wstring caption = ToWide(option.Caption());
  SetBkMode(look.context, TRANSPARENT);
  SetTextColor(look.context, GetSysColor(option.Enabled() ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
  DrawTextW(look.context, caption.c_str(), static_cast<int>(caption.size()), &text, DT_SINGLELINE | DT_VCENTER);
}

}  // namespace kw::windows
