#pragma once

#include "picture/DamageReport.h"
#include "picture/formats/TiffLayout.h"

namespace kw {

// Decodes a page whose layout IsIndexed() or IsColour(). What cannot be decoded is noted in `damage`. Raises
// InvalidPicture.
Bitmap ReadTiffSamples(const TiffPage& source, DamageReport& damage);

}  // namespace kw
