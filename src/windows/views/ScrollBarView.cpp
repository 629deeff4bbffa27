#include "windows/views/ScrollBarView.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "windows/base/Gdi.h"

namespace kw::windows {
namespace {

std::int32_t Clamped(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(),
                                                            std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

HWND ScrollBarView::Create(HWND parent) {
  // With WS_TABSTOP the bar takes the focus when it is pressed; its model may pass it on.
  return CreateSystemWindow(parent, WC_SCROLLBARW,
                            WS_TABSTOP | static_cast<DWORD>(bar.IsVertical() ? SBS_VERT : SBS_HORZ));
}

void ScrollBarView::Show(Aspect aspect) {
  if (aspect != Aspect::Content) return;
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
  info.nMin = std::min(bar.Min(), bar.Max());
  // The system's range includes the visible page; the model's value runs up to its maximum.
  info.nMax = Clamped(std::int64_t{std::max(bar.Min(), bar.Max())} + bar.LargeChange() - 1);
  info.nPage = static_cast<UINT>(bar.LargeChange());
  info.nPos = bar.Value();
  SetScrollInfo(Handle(), SB_CTL, &info, TRUE);
  if (!IsEffectivelyEnabled()) EnableWindow(Handle(), FALSE);
}

void ScrollBarView::ShowEnabled() {
  ControlView::ShowEnabled();
  const bool isUseful = IsEffectivelyEnabled() && bar.Min() != bar.Max();
  EnableScrollBar(Handle(), SB_CTL, isUseful ? ESB_ENABLE_BOTH : ESB_DISABLE_BOTH);
}

void ScrollBarView::OnScroll(WORD code) {
  if (!TakesInput()) return;
  std::int64_t value = bar.Value();
  switch (code) {
    case SB_LINEUP:
      value -= bar.SmallChange();
      break;
    case SB_LINEDOWN:
      value += bar.SmallChange();
      break;
    case SB_PAGEUP:
      value -= bar.LargeChange();
      break;
    case SB_PAGEDOWN:
      value += bar.LargeChange();
      break;
    case SB_TOP:
      value = bar.Min();
      break;
    case SB_BOTTOM:
      value = bar.Max();
      break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: {
      SCROLLINFO info = {};
      info.cbSize = sizeof info;
      info.fMask = SIF_TRACKPOS;
      GetScrollInfo(Handle(), SB_CTL, &info);
      value = info.nTrackPos;
      break;
    }
    default:
      return;
  }
  bar.UserSetValue(Clamped(value));
}

void ScrollBarView::Draw(const Look& look, const RECT& bounds, const ScrollBar& bar) {
  FillWith(look.context, bounds, GetSysColor(COLOR_SCROLLBAR));
  const int side = bar.IsVertical() ? WidthOf(bounds) : HeightOf(bounds);
  RECT first = bounds;
  RECT last = bounds;
  if (bar.IsVertical()) {
    first.bottom = first.top + side;
    last.top = last.bottom - side;
  } else {
    first.right = first.left + side;
    last.left = last.right - side;
  }
  const UINT state = bar.Enabled() ? 0U : DFCS_INACTIVE;
  DrawFrameControl(look.context, &first, DFC_SCROLL, state | (bar.IsVertical() ? DFCS_SCROLLUP : DFCS_SCROLLLEFT));
  DrawFrameControl(look.context, &last, DFC_SCROLL, state | (bar.IsVertical() ? DFCS_SCROLLDOWN : DFCS_SCROLLRIGHT));
  const int range = std::abs(bar.Max() - bar.Min());
  const int track = (bar.IsVertical() ? HeightOf(bounds) : WidthOf(bounds)) - 2 * side;
  if (!bar.Enabled() || range == 0 || track < side) return;
  const int length = std::max(side / 2, MulDiv(track, bar.LargeChange(), range + bar.LargeChange()));
  const int start = side + MulDiv(track - length, bar.Value() - std::min(bar.Min(), bar.Max()), range);
  RECT thumb = bar.IsVertical() ? RECT{bounds.left, bounds.top + start, bounds.right, bounds.top + start + length}
                                : RECT{bounds.left + start, bounds.top, bounds.left + start + length, bounds.bottom};
  DrawFrameControl(look.context, &thumb, DFC_BUTTON, DFCS_BUTTONPUSH);
}

}  // namespace kw::windows
