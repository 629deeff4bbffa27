#include "scene/ColourMap.h"

#include <algorithm>
#include <cmath>

namespace kw {
namespace {

// The x coordinate at which the strip of greys begins.
constexpr double GreysFrom = 0.92;

// The share of a primary colour in a hue; `peak` is the primary's own hue. Hues run from 0 to 6.
double Share(double hue, double peak) {
  const double direct = std::abs(hue - peak);
  const double distance = std::min(direct, 6 - direct);
  return std::clamp(2 - distance, 0.0, 1.0);
}

unsigned ByteOfShare(double share) { return static_cast<unsigned>(std::lround(share * 255)); }

}  // namespace

Colour ColourOfMap(double x, double y) {
  x = std::clamp(x, 0.0, 1.0);
  y = std::clamp(y, 0.0, 1.0);
  if (x >= GreysFrom) return MakeColour(ByteOfShare(1 - y), ByteOfShare(1 - y), ByteOfShare(1 - y));
  const double hue = x / GreysFrom * 6;
  const auto channel = [&](double peak) {
    const double pure = Share(hue, peak);
    return ByteOfShare(y < 0.5 ? 1 - (1 - pure) * y * 2 : pure * (1 - y) * 2);
  };
  return MakeColour(channel(0), channel(2), channel(4));
}

}  // namespace kw
