#pragma once

#include <cstdint>

namespace kw {

// Pixels as a frame buffer holds them: blue, green and red from the lowest byte up, nothing in the highest.
inline constexpr std::uint32_t ColourBits = 0x00FFFFFFU;
// In the highest byte of a pixel on its way into a buffer: alpha (straight).
inline constexpr std::uint32_t Opaque = 0xFF000000U;

// `above` over `below` with alpha 0 to 255; each channel rounded to the nearest. Alpha in the pixels is ignored.
constexpr std::uint32_t Mix(std::uint32_t below, std::uint32_t above, std::uint32_t alpha) {
  // Two channels at a time, each with 16 bits to itself; t + t / 256 + 1 / 2 divides by 255 exactly.
  constexpr std::uint32_t Pair = 0x00FF00FFU;
  constexpr std::uint32_t Half = 0x00800080U;
  const std::uint32_t rest = 255U - alpha;
  std::uint32_t redBlue = (above & Pair) * alpha + (below & Pair) * rest + Half;
  redBlue = ((redBlue + ((redBlue >> 8U) & Pair)) >> 8U) & Pair;
  std::uint32_t green = ((above >> 8U) & 0xFFU) * alpha + ((below >> 8U) & 0xFFU) * rest + 0x80U;
  green = (green + (green >> 8U)) & 0xFF00U;
  return redBlue | green;
}

// Halfway to white.
constexpr std::uint32_t Lightened(std::uint32_t pixel) {
  return (pixel & Opaque) | (((pixel >> 1U) & 0x7F7F7FU) + 0x808080U);
}

}  // namespace kw
