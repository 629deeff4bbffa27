#include "windows/views/CheckBoxView.h"

#include "windows/base/Gdi.h"
#include "windows/base/Text.h"

namespace kw::windows {

HWND CheckBoxView::Create(HWND parent) {
  return CreateSystemWindow(parent, WC_BUTTONW,
                            BS_CHECKBOX | WS_TABSTOP | static_cast<DWORD>(box.IsButton() ? BS_PUSHLIKE : 0));
}

void CheckBoxView::Show(Aspect aspect) {
  if (aspect != Aspect::Content) return;
  SetWindowTextW(Handle(), ToWide(box.Caption()).c_str());
  SendMessageW(Handle(), BM_SETCHECK, box.Value() ? BST_CHECKED : BST_UNCHECKED, 0);
}

void CheckBoxView::OnCommand(WORD notification, WORD /*id*/) {
  if (notification == BN_CLICKED && TakesInput()) box.UserToggle();
}

void CheckBoxView::Draw(const Look& look, const RECT& bounds, const CheckBox& box) {
  const int side = look.scale.LengthOnDevice(13);
  RECT text = bounds;
  const UINT pressed = box.Value() ? DFCS_CHECKED : 0U;
  const UINT state = pressed | (box.Enabled() ? 0U : DFCS_INACTIVE);
  if (box.IsButton()) {
    RECT button = bounds;
    DrawFrameControl(look.context, &button, DFC_BUTTON, DFCS_BUTTONPUSH | state);
  } else {
    const int top = (bounds.top + bounds.bottom - side) / 2;
    RECT tick = {bounds.left, top, bounds.left + side, top + side};
    DrawFrameControl(look.context, &tick, DFC_BUTTON, DFCS_BUTTONCHECK | state);
    text.left = tick.right + look.scale.LengthOnDevice(4);
  }
  const std::wstring caption = ToWide(box.Caption());
  SetBkMode(look.context, TRANSPARENT);
  SetTextColor(look.context, GetSysColor(box.Enabled() ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
  DrawTextW(look.context, caption.c_str(), static_cast<int>(caption.size()), &text,
            DT_SINGLELINE | DT_VCENTER | static_cast<UINT>(box.IsButton() ? DT_CENTER : DT_LEFT));
}

}  // namespace kw::windows
