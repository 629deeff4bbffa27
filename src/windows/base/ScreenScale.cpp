#include "windows/base/ScreenScale.h"

namespace kw::windows {

Scale ScaleOf(HWND window) {
  // Before Windows 10 all windows have the same DPI.
  using DpiOfWindow = UINT(WINAPI*)(HWND);
  static const auto dpiOfWindow = reinterpret_cast<DpiOfWindow>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow")));
  const UINT dpi = window == nullptr || dpiOfWindow == nullptr ? 0 : dpiOfWindow(window);
  if (dpi != 0) return Scale(static_cast<std::int32_t>(dpi));
  const HDC screen = GetDC(nullptr);
  const Scale scale(GetDeviceCaps(screen, LOGPIXELSX));
  ReleaseDC(nullptr, screen);
  return scale;
}

}  // namespace kw::windows
