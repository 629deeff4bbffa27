#include "windows/views/SliderView.h"

#include <algorithm>

#include "windows/base/Gdi.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {
namespace {

constexpr int ThumbLength = 18;

}  // namespace

HWND SliderView::Create(HWND parent) {
  const HWND created =
      CreateSystemWindow(parent, TRACKBAR_CLASSW,
                         TBS_HORZ | TBS_FIXEDLENGTH | WS_TABSTOP |
                             static_cast<DWORD>(slider.HasTicks() ? TBS_AUTOTICKS | TBS_TOOLTIPS : TBS_NOTICKS));
  if (created != nullptr) SetThumbLength(created);
  return created;
}

void SliderView::Rescale() {
  SetThumbLength(Handle());
  ControlView::Rescale();
}

void SliderView::SetThumbLength(HWND bar) const {
  SendMessageW(bar, TBM_SETTHUMBLENGTH, static_cast<WPARAM>(Shared().Scaling().LengthOnDevice(ThumbLength)), 0);
}

void SliderView::Show(Aspect aspect) {
  if (aspect != Aspect::Content) return;
  const std::int32_t low = std::min(slider.Min(), slider.Max());
  const std::int32_t high = std::max(slider.Min(), slider.Max());
  if (SendMessageW(Handle(), TBM_GETRANGEMIN, 0, 0) != low) SendMessageW(Handle(), TBM_SETRANGEMIN, TRUE, low);
  if (SendMessageW(Handle(), TBM_GETRANGEMAX, 0, 0) != high) SendMessageW(Handle(), TBM_SETRANGEMAX, TRUE, high);
  if (slider.LargeChange() > 0) SendMessageW(Handle(), TBM_SETPAGESIZE, 0, slider.LargeChange());
  if (SendMessageW(Handle(), TBM_GETPOS, 0, 0) != slider.Value()) {
    SendMessageW(Handle(), TBM_SETPOS, TRUE, slider.Value());
  }
}

bool SliderView::WantsKey(WPARAM key) const { return key >= VK_PRIOR && key <= VK_DOWN; }

void SliderView::OnScroll(WORD /*code*/) {
  if (!TakesInput()) return Show(Aspect::Content);
  slider.UserSetValue(static_cast<std::int32_t>(SendMessageW(Handle(), TBM_GETPOS, 0, 0)));
}

void SliderView::Draw(const Look& look, const RECT& bounds, const Slider& slider) {
  const int margin = look.scale.LengthOnDevice(12);
  const int halfGroove = look.scale.LengthOnDevice(2);
  const int halfThumb = look.scale.LengthOnDevice(4);
  const int halfLength = look.scale.LengthOnDevice(ThumbLength) / 2;
  const int middle = (bounds.top + bounds.bottom) / 2;
  RECT groove = {bounds.left + margin, middle - halfGroove, bounds.right - margin, middle + halfGroove};
  DrawEdge(look.context, &groove, BDR_SUNKENOUTER, BF_RECT);
  const int steps = std::max(1, slider.Max() - slider.Min());
  const int x = groove.left + WidthOf(groove) * (slider.Value() - slider.Min()) / steps;
  RECT thumb = {x - halfThumb, middle - halfLength, x + halfThumb, middle + halfLength};
  FillWithFace(look.context, thumb);
  DrawEdge(look.context, &thumb, EDGE_RAISED, BF_RECT);
}

}  // namespace kw::windows
