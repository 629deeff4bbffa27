#pragma once

#include <cmath>
#include <cstdint>

namespace kw {

// The fixed ratio of the tool bar layout and the line sample; elsewhere the screen's own figure counts.
inline constexpr float TwipsPerPixel = 15.0F;

// The unit in which a container places what it holds.
enum class Unit : std::uint8_t { Pixels, Twips };

constexpr float ToTwips(float pixels) { return pixels * TwipsPerPixel; }
constexpr float ToPixels(float twips) { return twips / TwipsPerPixel; }

// A colour as the platform passes it: red in the low byte, then green, then blue.
using Colour = std::uint32_t;

constexpr Colour MakeColour(unsigned red, unsigned green, unsigned blue) {
  return (red & 0xFFU) | ((green & 0xFFU) << 8U) | ((blue & 0xFFU) << 16U);
}

}  // namespace kw
