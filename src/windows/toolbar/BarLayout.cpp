#include "windows/toolbar/BarLayout.h"

#include <algorithm>
#include <limits>
#include <string>

#include "windows/base/Gdi.h"
#include "windows/base/Images.h"
#include "windows/base/Text.h"

namespace kw::windows {
namespace {

int WidthOf(const ToolBar::Button& button, const BarSizes& sizes, HDC measuring) {
  if (button.style == ButtonStyle::Separator) return sizes.gap;
  if (button.caption.empty()) return sizes.button;
  const std::wstring text = ToWide(button.caption);
  SIZE size = {};
  GetTextExtentPoint32W(measuring, text.c_str(), static_cast<int>(text.size()), &size);
  return size.cx + 2 * sizes.textMargin + sizes.imageRoom;
}

// Starts a new row if the width does not suffice for the next button.
std::vector<RECT> LayOutRows(const ToolBar& bar, int width, const BarSizes& sizes, HDC measuring) {
  std::vector<RECT> buttonBounds;
  LONG x = 0;
  LONG y = 0;
  for (const ToolBar::Button& button : bar.Buttons()) {
    const int own = button.visible ? WidthOf(button, sizes, measuring) : 0;
    if (x > 0 && x + own > width) {
      x = 0;
      y += sizes.button;
    }
    buttonBounds.push_back({x, y, x + own, y + sizes.button});
    x += own;
  }
  // A separator at the end of a row has no width.
  for (std::size_t i = 0; i + 1 < buttonBounds.size(); ++i) {
    const bool isGap = bar.Buttons()[i].style == ButtonStyle::Separator;
    if (isGap && buttonBounds[i + 1].top > buttonBounds[i].top) buttonBounds[i].right = buttonBounds[i].left;
  }
  return buttonBounds;
}

bool HasRoom(const RECT& bounds) { return bounds.right > bounds.left; }

// Removes the buttons that do not fit before `end`, and the separators then left at the end. Returns the right edge of
// the rest.
LONG CutOff(const ToolBar& bar, LONG end, std::vector<RECT>& buttonBounds) {
  for (RECT& bounds : buttonBounds) {
    if (bounds.right > end) bounds.right = bounds.left;
  }
  for (std::size_t i = buttonBounds.size(); i-- > 0;) {
    if (!HasRoom(buttonBounds[i])) continue;
    if (bar.Buttons()[i].style != ButtonStyle::Separator) return buttonBounds[i].right;
    buttonBounds[i].right = buttonBounds[i].left;
  }
  return 0;
}

}  // namespace

BarSizes::BarSizes(const Scale& scale)
    : button(scale.LengthOnDevice(Images::ButtonSize)),
      gap(scale.LengthOnDevice(8)),
      textMargin(scale.LengthOnDevice(6)),
      imageRoom(scale.LengthOnDevice(20)) {}

bool IsOfOneRow(int height, const BarSizes& sizes) { return height < 2 * sizes.button; }

BarLayout LayOut(const ToolBar& bar, SIZE size, const BarRoom& room, const BarSizes& sizes, HDC measuring) {
  if (!IsOfOneRow(size.cy, sizes)) return {LayOutRows(bar, size.cx, sizes, measuring), std::nullopt};
  BarLayout layout = {LayOutRows(bar, std::numeric_limits<int>::max(), sizes, measuring), std::nullopt};
  if (!room.IsUsable(sizes)) return layout;
  const LONG end = CutOff(bar, std::numeric_limits<LONG>::max(), layout.buttonBounds);
  if (end <= room.width && !room.hasOthers) return layout;
  const LONG left = CutOff(bar, room.width - sizes.button, layout.buttonBounds);
  layout.more = RECT{left, 0, left + sizes.button, sizes.button};
  return layout;
}

void DrawPicture(const Look& look, RECT bounds, const ToolBar::Button& button, bool isEnabled) {
  if (button.caption.empty()) {
    if (!button.image.empty()) look.images.Draw(look.context, bounds, button.image, isEnabled);
    return;
  }
  const BarSizes sizes(look.scale);
  if (!button.image.empty()) {
    const RECT square = {bounds.left, bounds.top, bounds.left + sizes.button, bounds.bottom};
    look.images.Draw(look.context, square, button.image, isEnabled);
    bounds.left += sizes.imageRoom;
  }
  const std::wstring text = ToWide(button.caption);
  SetBkMode(look.context, TRANSPARENT);
  SetTextColor(look.context, GetSysColor(isEnabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
  DrawTextW(look.context, text.c_str(), static_cast<int>(text.size()), &bounds, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

}  // namespace kw::windows
