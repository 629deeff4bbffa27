#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "components/base/Units.h"
#include "drawing/PixelRect.h"

namespace kw {

// A view of pixels to draw into, owned by somebody else: 4 bytes each (blue, green, red, unused), top row first. They
// show `area` of a larger surface; all drawing takes the surface's coordinates and is clipped to the area.
struct FrameBuffer {
  std::uint32_t* pixels = nullptr;
  std::size_t stride = 0;  // pixels from row to row
  PixelRect area;

  // Pixels `left` to `right` of row `y`; all three must lie inside the area.
  std::span<std::uint32_t> Row(std::int32_t y, std::int32_t left, std::int32_t right) const {
    return {pixels + static_cast<std::size_t>(y - area.top) * stride + static_cast<std::size_t>(left - area.left),
            static_cast<std::size_t>(right - left)};
  }
};

// The frame buffer's pixel of a colour.
constexpr std::uint32_t PixelOf(Colour colour) {
  return ((colour & 0xFFU) << 16U) | (colour & 0xFF00U) | ((colour >> 16U) & 0xFFU);
}

void FillArea(const FrameBuffer& target, const PixelRect& rectangle, Colour colour);
// Draws a frame of that width (at least 1) inside the rectangle. A dotted frame skips every second square.
void FrameArea(const FrameBuffer& target, const PixelRect& rectangle, Colour colour, bool isDotted = false,
               std::int32_t width = 1);

}  // namespace kw
