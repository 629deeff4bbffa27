#include "windows/views/LabelView.h"

#include "windows/base/Gdi.h"
#include "windows/base/Text.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

// The colour halfway to the form's background, for a disabled sample.
COLORREF Faint(COLORREF colour) {
  const COLORREF background = GetSysColor(COLOR_3DFACE);
  const auto middle = [](BYTE a, BYTE b) { return (a + b) / 2; };
  return RGB(middle(GetRValue(colour), GetRValue(background)), middle(GetGValue(colour), GetGValue(background)),
             middle(GetBValue(colour), GetBValue(background)));
}

}  // namespace

void LabelView::Draw(const Look& look, const RECT& bounds, const Label& label) {
  const HDC context = look.context;
  const bool isEnabled = IsEffectivelyEnabled(label);
  RECT inner = bounds;
  if (label.HasBorder()) {
    FillWith(context, inner, GetSysColor(COLOR_3DSHADOW));
    InflateRect(&inner, -1, -1);
  }
  const COLORREF sample = isEnabled ? label.BackColor() : Faint(label.BackColor());
  FillWith(context, inner, label.IsOpaque() ? sample : GetSysColor(COLOR_3DFACE));
  if (label.Caption().empty()) return;
  if (label.HasBorder()) InflateRect(&inner, -look.scale.LengthOnDevice(3), 0);
  const std::wstring text = ToWide(label.Caption());
  SetBkMode(context, TRANSPARENT);
  // A caption on the form's background, which has a system colour, takes the system's text colour unless it has one of
  // its own.
  const bool isPlain = !label.IsOpaque() && label.ForeColor() == MakeColour(0, 0, 0);
  const COLORREF ink = isPlain ? GetSysColor(COLOR_BTNTEXT) : label.ForeColor();
  SetTextColor(context, isEnabled ? ink : GetSysColor(COLOR_GRAYTEXT));
  DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &inner,
            DT_SINGLELINE | DT_VCENTER | (label.HasMnemonic() ? 0U : DT_NOPREFIX));
}

void LabelView::Paint(HDC context, const RECT& client) {
  Draw({context, Shared().Pictures(), Shared().Scaling()}, client, label);
}

}  // namespace kw::windows
