#pragma once

#include <windows.h>

namespace kw::activex {

// COM gives sizes in HIMETRIC (hundredths of a millimetre), windows have theirs in screen pixels, and the form in
// pixels of 96 to the inch.
SIZEL ScreenToHimetric(SIZE pixels);
SIZEL FormToHimetric(SIZE pixels);
SIZE HimetricToForm(SIZEL himetric);

}  // namespace kw::activex
