#pragma once

#include "components/base/Units.h"

namespace kw {

// The colour map of the palette at (x, y), both from 0 (left, top) to 1: the hues of the rainbow and a strip of greys
// from left to right, from white through the pure colour to black downward.
Colour ColourOfMap(double x, double y);

}  // namespace kw
