#pragma once

#include <windows.h>

#include <memory>

namespace kw::windows {

// Handles that are given back when their owner goes.
struct GdiDelete {
  using pointer = HGDIOBJ;
  void operator()(HGDIOBJ object) const { DeleteObject(object); }
};
using OwnedGdiObject = std::unique_ptr<void, GdiDelete>;

struct MenuDelete {
  using pointer = HMENU;
  void operator()(HMENU menu) const { DestroyMenu(menu); }
};
using OwnedMenu = std::unique_ptr<HMENU, MenuDelete>;

}  // namespace kw::windows
