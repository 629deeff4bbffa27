#include "windows/views/CommandButtonView.h"

#include "windows/base/Text.h"

namespace kw::windows {

HWND CommandButtonView::Create(HWND parent) {
  return CreateSystemWindow(parent, WC_BUTTONW,
                            WS_TABSTOP | static_cast<DWORD>(button.IsDefault() ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON));
}

void CommandButtonView::Show(Aspect aspect) {
  if (aspect == Aspect::Content) SetWindowTextW(Handle(), ToWide(button.Caption()).c_str());
}

void CommandButtonView::OnCommand(WORD notification, WORD /*id*/) {
  if (notification == BN_CLICKED && TakesInput()) button.UserClick();
}

void CommandButtonView::Draw(const Look& look, const RECT& bounds, const CommandButton& button) {
  RECT area = bounds;
  DrawFrameControl(look.context, &area, DFC_BUTTON, DFCS_BUTTONPUSH | (button.Enabled() ? 0U : DFCS_INACTIVE));
  const std::wstring caption = ToWide(button.Caption());
  SetBkMode(look.context, TRANSPARENT);
  SetTextColor(look.context, GetSysColor(button.Enabled() ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
  DrawTextW(look.context, caption.c_str(), static_cast<int>(caption.size()), &area,
            DT_SINGLELINE | DT_VCENTER | DT_CENTER);
}

}  // namespace kw::windows
