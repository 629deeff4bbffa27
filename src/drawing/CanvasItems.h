#pragma once

#include <vector>

#include "components/PictureBox.h"
#include "components/TransparentPicture.h"
#include "drawing/DisplayItem.h"

namespace kw {

// The whole pixels that a control covers in its container.
PixelRect PixelsOf(const Control& control);

// The whole pixels in which a layer shows itself. A layer in a frame keeps its contents where they were: the frame lies
// around them, so it shows two pixels more than it measures in each direction.
PixelRect PixelsOfLayer(const TransparentPicture& layer);
// Where the contents of a layer lie in that.
PixelRect ContentsOfLayer(const TransparentPicture& layer);

// What a canvas shows, back to front: its picture, and then the visible layers and markers that lie directly on it.
// Other children have windows of their own. Pixels of pictures are shared, not copied.
std::vector<DisplayItem> ItemsOf(const PictureBox& canvas);

// Whether this child of a canvas is one of its items.
bool IsCanvasItem(const Control& child);

}  // namespace kw
