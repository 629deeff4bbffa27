#pragma once

#include <windows.h>

namespace kw::activex {

// Sizes at the COM surface are in hundredths of a millimetre, those of windows in pixels of the screen.
SIZEL ToHimetric(SIZE pixels);
SIZE ToScreenPixels(SIZEL himetric);

}  // namespace kw::activex
