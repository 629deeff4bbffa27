#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "components/base/Units.h"
#include "drawing/PixelRect.h"

namespace kw {

// Pixels to draw into, owned by somebody else: blue, green, red and an unused byte each, rows from the top downward.
// They show `area` of a larger surface; all drawing takes coordinates of that surface and is clipped to the area.
struct FrameBuffer {
  std::uint32_t* pixels = nullptr;
  std::size_t stride = 0;  // pixels from one row to the next
  PixelRect area;

  // Pixels `left` to `right` of row `y`; all three must lie inside the area.
  std::span<std::uint32_t> Row(std::int32_t y, std::int32_t left, std::int32_t right) const {
    return {pixels + static_cast<std::size_t>(y - area.top) * stride + static_cast<std::size_t>(left - area.left),
            static_cast<std::size_t>(right - left)};
  }
};

// A colour as a frame buffer's pixel.
constexpr std::uint32_t PixelOf(Colour colour) {
  return ((colour & 0xFFU) << 16U) | (colour & 0xFF00U) | ((colour >> 16U) & 0xFFU);
}

void FillArea(const FrameBuffer& target, const PixelRect& rectangle, Colour colour);
// A frame of that width, at least 1, inside the rectangle; dotted: every second square of it is left as it is.
void FrameArea(const FrameBuffer& target, const PixelRect& rectangle, Colour colour, bool isDotted = false,
               std::int32_t width = 1);

}  // namespace kw
