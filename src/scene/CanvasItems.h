#pragma once

#include <vector>

#include "components/controls/LightWeightMarker.h"
#include "components/controls/PictureBox.h"
#include "components/controls/TransparentPicture.h"
#include "drawing/DisplayItem.h"
#include "drawing/Scale.h"

namespace kw {

// A control's bounds in its container, in pixels.
Box BoundsOf(const Control& control);
// Units of the container's coordinates in a pixel.
float UnitsPerPixel(const Control& container);
// The whole pixels that a control covers in its container.
PixelRect PixelsOf(const Control& control);

// The whole pixels that a layer covers. A frame lies around the contents, so a framed layer covers two pixels more than
// its width and its height.
PixelRect PixelsOfLayer(const TransparentPicture& layer);
// The part of these pixels that the layer's contents cover.
PixelRect ContentsOfLayer(const TransparentPicture& layer);

// What a layer shows of itself: its picture, figure and text, the text also while it is typed, but no frame, no marks
// and no handles.
DisplayItem ContentsItemOf(const TransparentPicture& layer, const Scale& scale = Scale());

// The pixels of the device that a layer's display item, frame included, or a marker covers.
PixelRect BoundsOnDevice(const TransparentPicture& layer, const Scale& scale);
PixelRect BoundsOnDevice(const LightWeightMarker& marker, const Scale& scale);

// A canvas's display list, back to front: its picture, then the visible layers and markers that are its direct
// children. Other children have windows of their own. Pixels of pictures are shared, not copied. On a scaled device
// figures, frames and texts are drawn at that size, with lines a whole number of device pixels wide; pictures get
// larger bounds.
std::vector<DisplayItem> ItemsOf(const PictureBox& canvas, const Scale& scale = Scale());
// As above, but reuses the memory of `items`, because a long stroke has thousands of markers.
void CollectItems(const PictureBox& canvas, const Scale& scale, std::vector<DisplayItem>& items);

// Whether this child of a canvas is drawn by the canvas: a layer or a marker.
bool IsCanvasItem(const Control& child);

}  // namespace kw
