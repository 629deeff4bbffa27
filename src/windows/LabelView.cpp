#include "windows/LabelView.h"

#include "windows/Gdi.h"
#include "windows/Pane.h"
#include "windows/Text.h"

namespace kw::windows {

void LabelView::Draw(const Look& look, const RECT& place, const Label& label) {
  const HDC context = look.context;
  RECT inner = place;
  if (label.HasBorder()) {
    FillWith(context, inner, GetSysColor(COLOR_3DSHADOW));
    InflateRect(&inner, -1, -1);
  }
  FillWith(context, inner, label.IsOpaque() ? label.BackColor() : GetSysColor(COLOR_3DFACE));
  if (label.Caption().empty()) return;
  if (label.HasBorder()) InflateRect(&inner, -look.scale.LengthOnDevice(3), 0);
  const std::wstring text = ToWide(label.Caption());
  SetBkMode(context, TRANSPARENT);
  // A caption on the form's own ground, which is the system's, has the system's colour unless it is given another.
  const bool isPlain = !label.IsOpaque() && label.ForeColor() == MakeColour(0, 0, 0);
  const COLORREF ink = isPlain ? GetSysColor(COLOR_BTNTEXT) : label.ForeColor();
  SetTextColor(context, label.Enabled() ? ink : GetSysColor(COLOR_GRAYTEXT));
  DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &inner, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
}

void LabelView::Paint(HDC context, const RECT& client) {
  Draw({context, Shared().Pictures(), Shared().Scaling()}, client, label);
}

}  // namespace kw::windows
