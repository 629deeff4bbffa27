#pragma once

#include <optional>

#include "components/Bitmap.h"
#include "components/Units.h"
#include "drawing/FrameBuffer.h"

namespace kw {

struct PictureLook {
  // Pixels of this colour show what lies below.
  std::optional<Colour> transparent;
  // Halfway to white.
  bool isLightened = false;
};

// Draws the whole picture into `place` (surface coordinates), clipped to the buffer. At its own size the pixels are
// copied; at any other each pixel is the average of the area of the picture that it covers, so that the thin strokes of
// a reduced black-and-white page turn grey instead of breaking up. Takes time in the size of the part that is drawn.
void DrawPicture(const FrameBuffer& target, const Bitmap& picture, const PixelRect& place, const PictureLook& look);

}  // namespace kw
