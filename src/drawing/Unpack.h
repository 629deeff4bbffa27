#pragma once

#include <cstdint>
#include <span>

namespace kw {

// Pixels of three bytes (blue, green, red) as frame-buffer pixels, with `alpha` set in the highest byte of each.
// `from` holds three bytes for each pixel of `to`.
void UnpackThreeBytes(std::span<const std::uint8_t> from, std::span<std::uint32_t> to, std::uint32_t alpha);

}  // namespace kw
