#pragma once

#include <cstdint>
#include <span>

namespace kw {

// Pixels of three bytes (blue, green, red) as frame-buffer pixels, with `alpha` set in the highest byte of each; what
// then equals `hidden` becomes 0. `from` holds three bytes for each pixel of `to`.
void UnpackThreeBytes(std::span<const std::uint8_t> from, std::span<std::uint32_t> to, std::uint32_t alpha,
                      std::uint32_t hidden);

}  // namespace kw
