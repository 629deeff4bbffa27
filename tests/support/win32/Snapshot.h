#pragma once

#include <windows.h>

#include <vector>

namespace kw::test {

// The pixels that a window shows.
class Snapshot {
public:
  explicit Snapshot(HWND window);

  int Width() const { return width; }
  int Height() const { return height; }
  COLORREF At(int x, int y) const;
  bool operator==(const Snapshot&) const = default;

  // The smallest rectangle around all pixels that differ from those of a snapshot of the same size; empty for none.
  RECT ChangesSince(const Snapshot& before) const;

private:
  int width = 0;
  int height = 0;
  std::vector<COLORREF> pixels;
};

}  // namespace kw::test
