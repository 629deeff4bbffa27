#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "components/controls/ToolBar.h"
#include "drawing/Scale.h"
#include "windows/views/Look.h"

namespace kw::windows {

// Sizes of a tool bar's parts in screen pixels.
struct BarSizes {
  explicit BarSizes(const Scale& scale);

  int button;
  int gap;
  int textMargin;  // left and right margin of a caption
  int imageRoom;   // width of the image beside a caption
};

// How much of a tool bar is visible, and whether its menu also has buttons of other bars.
struct BarRoom {
  // A bar that shows not even one button counts as hidden.
  bool IsUsable(const BarSizes& sizes) const { return width >= sizes.button; }

  int width = 0;  // visible pixels from the bar's left edge
  // Buttons of later bars overflow into this bar's menu.
  bool hasOthers = false;

  friend bool operator==(const BarRoom&, const BarRoom&) = default;
};

// The layout of a tool bar's buttons.
struct BarLayout {
  // The bounds of each button; empty if it is hidden or does not fit.
  std::vector<RECT> buttonBounds;
  // The bounds of the button that opens the overflow menu.
  std::optional<RECT> more;
};

// A bar that is high enough wraps its buttons into rows. Another bar has one row; buttons that do not fit go to the
// overflow menu. `measuring` has the font of the captions.
BarLayout LayOut(const ToolBar& bar, SIZE size, const BarRoom& room, const BarSizes& sizes, HDC measuring);
bool IsOfOneRow(int height, const BarSizes& sizes);

// Draws a button's image, if it has one, in its middle or with its caption beside it.
void DrawPicture(const Look& look, RECT bounds, const ToolBar::Button& button, bool isEnabled);

}  // namespace kw::windows
