// Keyboard use of a tool bar, which not every version of Windows has: arrows, Home and End move between buttons, the
// space bar and Enter click, Escape returns to the form.

#include <cstdlib>

#include "windows/base/Gdi.h"
#include "windows/toolbar/ToolBarView.h"
#include "windows/views/ViewTree.h"

namespace kw::windows {

bool ToolBarView::TakesKeys(std::size_t index) const {
  if (index >= shownStates.size() || (shownStates[index] & TBSTATE_HIDDEN) != 0) return false;
  if (index == bar.Buttons().size()) return true;
  return (shownStates[index] & TBSTATE_ENABLED) != 0 && bar.Buttons()[index].style != ButtonStyle::Separator;
}

RECT ToolBarView::ButtonBounds(std::size_t index) const {
  RECT bounds = {};
  SendMessageW(Handle(), TB_GETITEMRECT, index, reinterpret_cast<LPARAM>(&bounds));
  return bounds;
}

int ToolBarView::HotButton() const { return static_cast<int>(SendMessageW(Handle(), TB_GETHOTITEM, 0, 0)); }

void ToolBarView::SetHotButton(std::optional<std::size_t> index) {
  if (index) lastKeyed = *index;
  constexpr auto None = static_cast<WPARAM>(-1);
  SendMessageW(Handle(), TB_SETHOTITEM, index.value_or(None), 0);
}

// The nearest clickable button after `from`, or before it.
std::optional<std::size_t> ToolBarView::Next(int from, int step) const {
  for (int i = from + step; i >= 0 && i < static_cast<int>(shownStates.size()); i += step) {
    if (TakesKeys(static_cast<std::size_t>(i))) return static_cast<std::size_t>(i);
  }
  return std::nullopt;
}

// The nearest clickable button in the next row, or in the row before.
std::optional<std::size_t> ToolBarView::Beside(std::size_t from, bool isBelow) const {
  const RECT here = ButtonBounds(from);
  const LONG row = isBelow ? here.top + HeightOf(here) : here.top - HeightOf(here);
  std::optional<std::size_t> nearest;
  for (std::size_t i = 0; i < shownStates.size(); ++i) {
    if (!TakesKeys(i) || ButtonBounds(i).top != row) continue;
    const auto distance = [&](std::size_t one) { return std::labs(ButtonBounds(one).left - here.left); };
    if (!nearest || distance(i) < distance(*nearest)) nearest = i;
  }
  return nearest;
}

// The buttons of a hidden bar are in another bar's menu.
bool ToolBarView::IsTabStop() const {
  const bool isSeen = !IsOfOneRow(HeightOf(Bounds()), Sizes()) || room.IsUsable(Sizes());
  return isSeen && Next(-1, 1).has_value();
}

bool ToolBarView::WantsKey(WPARAM key) const {
  const bool isMove = key >= VK_END && key <= VK_DOWN;  // End, Home and the arrows
  return isMove || key == VK_SPACE || key == VK_RETURN || key == VK_ESCAPE;
}

bool ToolBarView::OnKey(WPARAM key) {
  if (!WantsKey(key)) return false;
  const int count = static_cast<int>(shownStates.size());
  const int hot = HotButton();
  const int here = hot >= 0 ? hot : static_cast<int>(lastKeyed);
  const auto button = static_cast<std::size_t>(here);
  std::optional<std::size_t> next;
  switch (key) {
    case VK_LEFT:
      next = Next(here, -1);
      break;
    case VK_RIGHT:
      next = Next(here, 1);
      break;
    case VK_UP:
    case VK_DOWN:
      next = Beside(button, key == VK_DOWN);
      break;
    case VK_HOME:
      next = Next(-1, 1);
      break;
    case VK_END:
      next = Next(count, -1);
      break;
    case VK_ESCAPE:
      SetFocus(Shared().Window());
      return true;
    default:
      return true;  // the click comes with WM_CHAR
  }
  if (next) SetHotButton(next);
  return true;
}

// Clicks on WM_CHAR, not on the key itself: else a menu that the click opens would get the character and take it for a
// choice.
bool ToolBarView::OnCharacter(WPARAM character, LPARAM details) {
  if (character != L' ' && character != L'\r') return false;
  constexpr LPARAM IsHeldDown = LPARAM{1} << 30;
  const int hot = HotButton();
  const bool isClick = (details & IsHeldDown) == 0 && hot >= 0 && TakesKeys(static_cast<std::size_t>(hot));
  if (isClick) clicked = static_cast<WORD>(hot + 1);
  return true;
}

}  // namespace kw::windows
