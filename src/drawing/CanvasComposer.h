#pragma once

#include <functional>

#include "components/PictureBox.h"
#include "components/TransparentPicture.h"
#include "drawing/FrameBuffer.h"

namespace kw {

// The whole pixels that a control covers in its container.
PixelRect PixelsOf(const Control& control);

// Draws a layer's caption into the buffer: where text comes from is a matter of the platform.
using CaptionPainter =
    std::function<void(const FrameBuffer& target, const TransparentPicture& layer, const PixelRect& place)>;

// Composes what a canvas shows in the buffer's area: its ground, its picture, and then from back to front the visible
// layers and markers that lie directly on it. Other children have windows of their own.
void Compose(const FrameBuffer& target, const PictureBox& canvas, const CaptionPainter& paintCaption);

// Whether this child of a canvas is a part of that composition.
bool IsComposed(const Control& child);

}  // namespace kw
