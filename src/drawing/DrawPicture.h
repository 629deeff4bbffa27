#pragma once

#include "components/base/Bitmap.h"
#include "drawing/DrawOptions.h"
#include "drawing/FrameBuffer.h"

namespace kw {

// Draws the whole picture, of any depth, into `place`, clipped to the buffer; no copy of it is made. At its own size
// the pixels are copied. Where it is reduced, each pixel is the average of the area of the picture that it covers, so
// that thin strokes of a black-and-white page turn grey instead of breaking up; where it is enlarged, pixels are
// interpolated linearly. A pixel does not depend on which part is drawn. An empty picture or place draws nothing. Takes
// time in the size of the part that is drawn and of the part of the picture that falls on it.
void DrawPicture(const FrameBuffer& target, const Bitmap& picture, const PixelRect& bounds, const DrawOptions& options);

}  // namespace kw
