#pragma once

#include <windows.h>

namespace kw::activex {

// Sizes at the COM surface are in hundredths of a millimetre, those of windows in pixels of the screen, those of the
// form in pixels of which there are 96 to the inch.
SIZEL ScreenToHimetric(SIZE pixels);
SIZEL FormToHimetric(SIZE pixels);
SIZE HimetricToForm(SIZEL himetric);

}  // namespace kw::activex
