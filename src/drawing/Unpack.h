#pragma once

#include <cstdint>
#include <span>

namespace kw {

// Converts pixels of three bytes (blue, green, red) to frame-buffer pixels with `alpha` in the highest byte; a pixel
// that then equals `hidden` becomes 0. `from` holds three bytes for each pixel of `to`.
void UnpackThreeBytes(std::span<const std::uint8_t> from, std::span<std::uint32_t> to, std::uint32_t alpha,
                      std::uint32_t hidden);

}  // namespace kw
