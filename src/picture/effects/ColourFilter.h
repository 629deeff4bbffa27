#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "components/base/Bitmap.h"

namespace kw {

// Makes a row of 3x3 neighbourhoods, each channel alone, as the functions in Kernels.h do.
using NeighbourhoodRow =
    std::function<void(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size)>;

// Filters the colours of a picture of values in place; alpha stays. A fully transparent pixel keeps its colour, and its
// neighbours are filtered as if it had theirs, so that a colour that nobody sees does not show up in them.
void FilterColours(Bitmap& picture, const NeighbourhoodRow& make);

}  // namespace kw
