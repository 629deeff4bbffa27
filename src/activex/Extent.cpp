#include "activex/Extent.h"

#include "drawing/Scale.h"

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

SIZEL ScreenToHimetric(SIZE pixels) {
  const SIZE perInch = PixelsPerInch();
  return {MulDiv(pixels.cx, HimetricPerInch, perInch.cx), MulDiv(pixels.cy, HimetricPerInch, perInch.cy)};
}

SIZEL FormToHimetric(SIZE pixels) {
  return {MulDiv(pixels.cx, HimetricPerInch, Scale::ModelDpi), MulDiv(pixels.cy, HimetricPerInch, Scale::ModelDpi)};
}

SIZE HimetricToForm(SIZEL himetric) {
  return {MulDiv(himetric.cx, Scale::ModelDpi, HimetricPerInch), MulDiv(himetric.cy, Scale::ModelDpi, HimetricPerInch)};
}

}  // namespace kw::activex
