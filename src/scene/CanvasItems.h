#pragma once

#include <vector>

#include "components/controls/PictureBox.h"
#include "components/controls/TransparentPicture.h"
#include "drawing/DisplayItem.h"
#include "drawing/Scale.h"

namespace kw {

// A control's place in its container, in pixels.
Box BoundsOf(const Control& control);
// Units of the container's coordinates in a pixel.
float UnitsPerPixel(const Control& container);
// The whole pixels that it covers there.
PixelRect PixelsOf(const Control& control);

// The whole pixels in which a layer shows itself. A layer in a frame keeps its contents where they were: the frame lies
// around them, so it shows two pixels more than it measures in each direction.
PixelRect PixelsOfLayer(const TransparentPicture& layer);
// Where the contents of a layer lie in that.
PixelRect ContentsOfLayer(const TransparentPicture& layer);

// What a canvas shows, back to front: its picture, and then the visible layers and markers that lie directly on it.
// Other children have windows of their own. Pixels of pictures are shared, not copied. On a device with another scale
// figures, frames and texts are those of that size, lines a whole number of its pixels wide; pictures come to lie in
// larger places.
std::vector<DisplayItem> ItemsOf(const PictureBox& canvas, const Scale& scale = Scale());
// The same into a list that may have held others before: a long stroke has thousands of markers, and the memory for so
// many is not taken anew each time.
void CollectItems(const PictureBox& canvas, const Scale& scale, std::vector<DisplayItem>& items);

// Whether this child of a canvas is one of its items.
bool IsCanvasItem(const Control& child);

}  // namespace kw
