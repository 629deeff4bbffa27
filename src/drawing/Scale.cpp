#include "drawing/Scale.h"

#include <algorithm>
#include <cmath>

namespace kw {

std::int32_t Scale::ToDevice(double position) const {
  constexpr double Farthest = 0x1p30;
  // Rounds up from slightly below one half, because thirds and the like are stored a little too small. The margin is
  // less than 1/96, the smallest difference between scaled whole numbers.
  constexpr double Half = 0.5 + 0x1p-7;
  return static_cast<std::int32_t>(std::clamp(std::floor(position * Factor() + Half), -Farthest, Farthest));
}

PixelRect Scale::ToDevice(const PixelRect& bounds) const {
  return ToDevice(Box{static_cast<double>(bounds.left), static_cast<double>(bounds.top),
                      static_cast<double>(bounds.right), static_cast<double>(bounds.bottom)});
}

PixelRect Scale::ToDevice(const Box& bounds) const {
  return {ToDevice(bounds.left), ToDevice(bounds.top), ToDevice(bounds.right), ToDevice(bounds.bottom)};
}

std::int32_t Scale::LengthOnDevice(std::int32_t length) const { return length > 0 ? std::max(ToDevice(length), 1) : 0; }

Font Scale::ToDevice(Font font) const {
  font.size = font.size * static_cast<float>(Factor());
  return font;
}

std::int32_t Scale::ModelPixelAt(std::int32_t pixel) const {
  // Find the last model pixel whose left edge, (2 x dpi + 96) / 192 rounded down, is not right of the pixel.
  const std::int64_t dividend = std::int64_t{ModelDpi} * (2 * std::int64_t{pixel} + 1) - 1;
  const std::int64_t divisor = 2 * std::int64_t{dpi};
  const std::int64_t quotient = dividend / divisor;
  return static_cast<std::int32_t>(dividend % divisor < 0 ? quotient - 1 : quotient);
}

}  // namespace kw
