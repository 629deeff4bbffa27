#include "windows/Keys.h"

#include <string_view>

namespace kw::windows {

bool IsEditorKey(WPARAM key) {
  constexpr std::string_view Shortcuts = "ABCFMVXYZ";
  switch (key) {
    case VK_LEFT:
    case VK_RIGHT:
    case VK_UP:
    case VK_DOWN:
    case VK_HOME:
    case VK_END:
    case VK_PRIOR:
    case VK_NEXT:
    case VK_DELETE:
    case VK_RETURN:
    case VK_ESCAPE:
      return true;
    default:
      return key >= 'A' && key <= 'Z' && ShiftState() == Mouse::ControlKey &&
             Shortcuts.find(static_cast<char>(key)) != std::string_view::npos;
  }
}

}  // namespace kw::windows
