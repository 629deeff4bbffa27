#pragma once

#include <windows.h>

#include <map>
#include <string>

namespace kw::test {

// A button of a real tool bar.
struct ToolBarButton {
  HWND bar = nullptr;
  int index = 0;
  int id = 0;

  // As the mouse does it, on whatever of the button shows.
  void Click() const;
  // As a program does it that knows the button's command: by a message to the bar's parent.
  void Post() const;
  // Its middle on the screen.
  POINT Middle() const;
  bool IsFound() const { return bar != nullptr; }
  bool IsShown() const;
  bool IsEnabled() const;
  bool IsPressed() const;
};

// The buttons of all tool bars below a window, by the tool tip that each gives to the user.
std::map<std::string, ToolBarButton> ToolBarButtons(HWND window);

// The pointer that a window shows: "0" for the arrow, "2" for the cross, "99 " and the key of the tool's own cursor,
// else "?".
std::string PointerOver(HWND window);

}  // namespace kw::test
