#include "tests/activex/EditorWindows.h"

namespace kw::test {
namespace {

BOOL CALLBACK CollectVisible(HWND window, LPARAM list) {
  if (IsWindowVisible(window) != FALSE) reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

}  // namespace

std::vector<HWND> VisibleWindows(HWND editor) {
  std::vector<HWND> all;
  EnumChildWindows(editor, &CollectVisible, reinterpret_cast<LPARAM>(&all));
  return all;
}

HWND CanvasOf(HWND editor) {
  HWND largest = nullptr;
  int most = 0;
  for (const HWND window : VisibleWindows(editor)) {
    RECT client = {};
    GetClientRect(window, &client);
    if (GetParent(window) == editor || client.right * client.bottom <= most) continue;
    most = client.right * client.bottom;
    largest = window;
  }
  return largest;
}

}  // namespace kw::test
