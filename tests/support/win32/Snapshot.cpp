#include "tests/support/win32/Snapshot.h"

#include <algorithm>
#include <cstddef>

namespace kw::test {

Snapshot::Snapshot(HWND window) {
  UpdateWindow(window);
  RECT client = {};
  GetClientRect(window, &client);
  width = client.right;
  height = client.bottom;
  pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  const HDC shown = GetDC(window);
  const HDC memory = CreateCompatibleDC(shown);
  const HBITMAP bitmap = CreateCompatibleBitmap(shown, std::max(width, 1), std::max(height, 1));
  const HGDIOBJ before = SelectObject(memory, bitmap);
  BitBlt(memory, 0, 0, width, height, shown, 0, 0, SRCCOPY);
  SelectObject(memory, before);
  BITMAPINFO info = {};
  info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  GetDIBits(memory, bitmap, 0, static_cast<UINT>(height), pixels.data(), &info, DIB_RGB_COLORS);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(window, shown);
  for (COLORREF& pixel : pixels) pixel = RGB(GetBValue(pixel), GetGValue(pixel), GetRValue(pixel));
}

COLORREF Snapshot::At(int x, int y) const {
  if (x < 0 || y < 0 || x >= width || y >= height) return CLR_INVALID;
  return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
}

RECT Snapshot::ChangesSince(const Snapshot& before) const {
  RECT changed = {width, height, 0, 0};
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (At(x, y) == before.At(x, y)) continue;
      changed = {std::min<LONG>(changed.left, x), std::min<LONG>(changed.top, y), std::max<LONG>(changed.right, x + 1),
                 std::max<LONG>(changed.bottom, y + 1)};
    }
  }
  if (changed.right == 0) return {};
  return changed;
}

}  // namespace kw::test
