#pragma once

#include <cstdint>

#include "components/controls/Control.h"
#include "components/controls/TransparentPicture.h"

namespace kw {

// The one hit test of views and editor: all four edges count as inside. Raises Overflow if an edge does not fit 32
// bits.
bool IsPointInRect(std::int32_t x, std::int32_t y, std::int32_t left, std::int32_t top, std::int32_t width,
                   std::int32_t height);

// Whether a point of the control's container, rounded to whole units, is on the control.
bool IsPointIn(const Control& control, float x, float y);

// The same for a layer, whose frame counts as part of it.
bool IsPointInLayer(const TransparentPicture& layer, float x, float y);

// The same for any child of a canvas: a layer with its frame.
bool IsPointInItem(const Control& item, float x, float y);

}  // namespace kw
