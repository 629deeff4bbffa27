#pragma once

#include <windows.h>

#include <string>

#include "windows/views/AccessibleSource.h"

namespace kw::windows {

// Gives an accessible name to a window of the system that no model has of its own, as the edit field in a combo box.
class NamedWindow final : private AccessibleSource {
public:
  // A null window is left alone.
  NamedWindow(HWND named, std::wstring newName);
  ~NamedWindow() override;

private:
  static LRESULT CALLBACK Subclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                   DWORD_PTR self);
  AccessibleAnswer Whole() const override;
  void Unhook();

  HWND window;
  std::wstring name;
  AccessibleWindow accessible;
};

}  // namespace kw::windows
