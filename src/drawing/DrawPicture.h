#pragma once

#include "components/base/Bitmap.h"
#include "drawing/DrawOptions.h"
#include "drawing/FrameBuffer.h"

namespace kw {

// Draws the whole picture, of any depth, into `bounds`, clipped to the buffer, without a copy of it. If the sizes
// agree, it copies pixels. If the picture is reduced, each pixel is the average of the area that it covers (box
// filter), so that thin strokes of a black-and-white page turn grey instead of breaking up. If it is enlarged, pixels
// are interpolated linearly. A pixel does not depend on the part that is drawn. An empty picture or empty bounds draw
// nothing. Time: linear in the drawn part and in the part of the picture below it.
void DrawPicture(const FrameBuffer& target, const Bitmap& picture, const PixelRect& bounds, const DrawOptions& options);

}  // namespace kw
