#pragma once

#include "components/base/Bitmap.h"

namespace kw::bench {

// A4 at 300 dpi.
const Bitmap& PageOfDepth(int bitsPerPixel);

// The sections of the table.
void Creation();
void Properties();
void Documents();
void Pages(int bitsPerPixel);
void Drawing();
void Pictures();

}  // namespace kw::bench
