#include "tests/activex/DrawnPixels.h"

#include <ole2.h>
#include <wrl/client.h>

#include <gtest/gtest.h>

#include <cstddef>

namespace kw::test {

std::vector<DWORD> DrawnPixels(IUnknown* control, int width, int height) {
  BITMAPINFO info = {};
  info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void* bits = nullptr;
  const HDC context = CreateCompatibleDC(nullptr);
  const HBITMAP bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  const HGDIOBJ before = SelectObject(context, bitmap);
  const RECTL bounds = {0, 0, width, height};
  Microsoft::WRL::ComPtr<IViewObject> view;
  EXPECT_EQ(control->QueryInterface(IID_PPV_ARGS(&view)), S_OK);
  EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, context, &bounds, nullptr, nullptr, 0), S_OK);
  GdiFlush();
  const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  const auto* const first = static_cast<const DWORD*>(bits);
  std::vector<DWORD> pixels(first, first + count);
  for (DWORD& pixel : pixels) pixel &= 0xFFFFFFU;
  SelectObject(context, before);
  DeleteObject(bitmap);
  DeleteDC(context);
  return pixels;
}

}  // namespace kw::test
