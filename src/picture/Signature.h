#pragma once

#include "components/Bitmap.h"

namespace kw {

// A scanned signature with its paper made white: the level of the paper is the commonest brightness of the lighter
// half, and all brightness is stretched so that the paper and what is lighter become white. Depths up to 8 keep their
// depth (their palette changes), 24 and 32 become 24.
Bitmap WithWhitePaper(const Bitmap& picture);

}  // namespace kw
