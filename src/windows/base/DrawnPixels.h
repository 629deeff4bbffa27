#pragma once

#include <cstdint>
#include <vector>

namespace kw::windows {

// The square pixels of a drawing; top row first, straight alpha in the highest byte, then red, green, blue.
using DrawnPixels = std::vector<std::uint32_t>;

// So many drawings of a side of `side` pixels, from the module's compressed resource. None if it is missing or damaged.
// Throws std::bad_alloc.
std::vector<DrawnPixels> ReadDrawings(int resource, std::size_t count, int side);

}  // namespace kw::windows
