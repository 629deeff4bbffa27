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

// A flag that is set while this lives, and not set afterwards.
class RaisedFlag {
public:
  explicit RaisedFlag(bool& raised) : flag(raised) { flag = true; }
  RaisedFlag(const RaisedFlag&) = delete;
  RaisedFlag& operator=(const RaisedFlag&) = delete;
  ~RaisedFlag() { flag = false; }

private:
  bool& flag;
};

}  // namespace kw::windows
