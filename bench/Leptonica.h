#pragma once

#ifdef KW_HAS_LEPTONICA

#include <leptonica/allheaders.h>

#include "components/base/Bitmap.h"

namespace kw::leptonica {

// The page in the peer's form, and back in 24 bits. The caller destroys the first.
PIX* ToPix(const Bitmap& page);
Bitmap ToBitmap(PIX* pix);

// What the effects Dither and DecreaseBpp are compared with.
inline PIX* Dithered(PIX* page) { return pixDitherToBinary(page); }
inline PIX* To256Colours(PIX* page) { return pixMedianCutQuantGeneral(page, 0, 8, 256, 5, 1, 1); }

}  // namespace kw::leptonica

#endif
