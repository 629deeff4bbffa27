#include "windows/views/PageSpinnerView.h"

#include "windows/base/Gdi.h"

namespace kw::windows {

HWND PageSpinnerView::Create(HWND parent) { return CreateSystemWindow(parent, UPDOWN_CLASSW, 0); }

// The system gives a new spinner a width of its own.
void PageSpinnerView::Fit() {
  RECT shown = {};
  GetWindowRect(Handle(), &shown);
  const RECT place = Place();
  if (WidthOf(shown) == WidthOf(place)) return;
  SetWindowPos(Handle(), nullptr, 0, 0, WidthOf(place), HeightOf(place), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void PageSpinnerView::Show(Aspect aspect) {
  if (aspect != Aspect::Content) return;
  SendMessageW(Handle(), UDM_SETRANGE32, static_cast<WPARAM>(spinner.Min()), spinner.Max());
  SendMessageW(Handle(), UDM_SETPOS32, 0, spinner.Value());
}

LRESULT PageSpinnerView::OnNotify(NMHDR& header) {
  if (header.code != static_cast<UINT>(UDN_DELTAPOS)) return 0;
  const auto& step = reinterpret_cast<const NMUPDOWN&>(header);
  if (TakesInput()) spinner.UserSetValue(spinner.Value() + (step.iDelta > 0 ? 1 : -1));
  return TRUE;  // the model sets the position itself
}

void PageSpinnerView::Draw(const Look& look, const RECT& bounds, const PageSpinner& spinner) {
  const UINT state = spinner.Enabled() ? 0U : DFCS_INACTIVE;
  RECT up = bounds;
  up.bottom = (bounds.top + bounds.bottom) / 2;
  RECT down = bounds;
  down.top = up.bottom;
  DrawFrameControl(look.context, &up, DFC_SCROLL, state | DFCS_SCROLLUP);
  DrawFrameControl(look.context, &down, DFC_SCROLL, state | DFCS_SCROLLDOWN);
}

}  // namespace kw::windows
