#include "windows/ScrollBarView.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "windows/Gdi.h"

namespace kw::windows {
namespace {

std::int32_t Clamped(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, std::numeric_limits<std::int32_t>::min(),
                                                            std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

HWND ScrollBarView::Create(HWND parent) {
  // As a tab stop the bar takes the focus when it is pressed, and its model may pass it on.
  return CreateSystemWindow(parent, WC_SCROLLBARW,
                            WS_TABSTOP | static_cast<DWORD>(bar.IsVertical() ? SBS_VERT : SBS_HORZ));
}

void ScrollBarView::Show(Aspect aspect) {
  if (aspect != Aspect::Content) return;
  SCROLLINFO info = {};
  info.cbSize = sizeof info;
  info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS | SIF_DISABLENOSCROLL;
  info.nMin = std::min(bar.Min(), bar.Max());
  // The system counts the visible page as part of the range; the model's value runs up to its maximum.
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

void ScrollBarView::Draw(const Look& look, const RECT& place, const ScrollBar& bar) {
  FillWith(look.context, place, GetSysColor(COLOR_SCROLLBAR));
  const int side = bar.IsVertical() ? WidthOf(place) : HeightOf(place);
  RECT first = place;
  RECT last = place;
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
}

}  // namespace kw::windows
