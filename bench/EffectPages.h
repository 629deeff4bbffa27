#pragma once

#include "components/base/Bitmap.h"

namespace kw {

// A page of PageWidth by PageHeight: light paper with dark marks and the noise of a scanner. 32 bits are opaque.
const Bitmap& PageOf(int bitsPerPixel);

}  // namespace kw
