#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "components/base/Bitmap.h"

namespace kw {

// Filters a row by the 3x3 neighbourhood of each pixel, each channel alone. Kernels.h has such functions.
using NeighbourhoodRow =
    std::function<void(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size)>;

// Filters the colours of a picture of values in place; alpha stays. A fully transparent pixel keeps its colour. Its
// neighbours are filtered as if it had their colour, so that no hidden colour becomes visible.
void FilterColours(Bitmap& picture, const NeighbourhoodRow& make);

}  // namespace kw
