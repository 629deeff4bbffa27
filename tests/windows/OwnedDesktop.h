#pragma once

#include "windows/WindowsDesktop.h"

namespace kw::test {

// A desktop whose dialogs belong to a window.
class OwnedDesktop : public windows::WindowsDesktop {
public:
  explicit OwnedDesktop(HWND window) : owner(window) {}

protected:
  HWND DialogOwner() const override { return owner; }

private:
  HWND owner;
};

}  // namespace kw::test
