#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "components/controls/ToolBar.h"
#include "drawing/Scale.h"
#include "windows/views/Look.h"

namespace kw::windows {

// Sizes of a tool bar's parts on the screen.
struct BarSizes {
  explicit BarSizes(const Scale& scale);

  int button;
  int gap;
  int textMargin;  // left and right of a caption
  int imageRoom;   // of the picture beside a caption
};

// How much of a tool bar is to be seen, and what it has to show besides its own buttons.
struct BarRoom {
  // A bar of which not even one button is to be seen is as good as out of sight.
  bool IsUsable(const BarSizes& sizes) const { return width >= sizes.button; }

  int width = 0;  // pixels from the bar's left edge on
  // Other bars have buttons that are out of sight and belong into this bar's menu.
  bool hasOthers = false;

  friend bool operator==(const BarRoom&, const BarRoom&) = default;
};

// Where the buttons of a tool bar lie.
struct BarLayout {
  // For each button; empty for a hidden one and for one that does not fit.
  std::vector<RECT> buttonBounds;
  // Of the button that opens the menu of what does not fit.
  std::optional<RECT> more;
};

// In a bar that is high enough, what is too wide for a row goes on in the next one. Another bar keeps to its one row,
// and what is not to be seen there goes to a menu. `measuring` has the font of the captions.
BarLayout LayOut(const ToolBar& bar, SIZE size, const BarRoom& room, const BarSizes& sizes, HDC measuring);
bool IsOfOneRow(int height, const BarSizes& sizes);

// A picture and a caption beside each other.
void DrawCaptioned(const Look& look, RECT bounds, const ToolBar::Button& button, bool isEnabled);

}  // namespace kw::windows
