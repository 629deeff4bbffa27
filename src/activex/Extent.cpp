#include "activex/Extent.h"

namespace kw::activex {
namespace {

constexpr int HimetricPerInch = 2540;

SIZE PixelsPerInch() {
  const HDC screen = GetDC(nullptr);
  const SIZE perInch = {GetDeviceCaps(screen, LOGPIXELSX), GetDeviceCaps(screen, LOGPIXELSY)};
  ReleaseDC(nullptr, screen);
  return perInch;
}

}  // namespace

SIZEL ToHimetric(SIZE pixels) {
  const SIZE perInch = PixelsPerInch();
  return {MulDiv(pixels.cx, HimetricPerInch, perInch.cx), MulDiv(pixels.cy, HimetricPerInch, perInch.cy)};
}

SIZE ToScreenPixels(SIZEL himetric) {
  const SIZE perInch = PixelsPerInch();
  return {MulDiv(himetric.cx, perInch.cx, HimetricPerInch), MulDiv(himetric.cy, perInch.cy, HimetricPerInch)};
}

}  // namespace kw::activex
