#pragma once

#include <cstdint>

namespace kw {

// Masks the colour of a frame buffer's pixel: blue, green and red from the lowest byte up; the highest byte is unused.
inline constexpr std::uint32_t ColourBits = 0x00FFFFFFU;
// The alpha byte (straight alpha) of an opaque pixel that is about to be blended.
inline constexpr std::uint32_t Opaque = 0xFF000000U;

// Blends `above` over `below` with alpha 0 to 255; each channel is rounded to nearest. The pixels' own alpha is
// ignored.
constexpr std::uint32_t Mix(std::uint32_t below, std::uint32_t above, std::uint32_t alpha) {
  // Blends two channels at once, each in 16 bits. With t = x + 128, (t + t / 256) / 256 is x / 255 rounded to nearest.
  constexpr std::uint32_t Pair = 0x00FF00FFU;
  constexpr std::uint32_t Half = 0x00800080U;
  const std::uint32_t rest = 255U - alpha;
  std::uint32_t redBlue = (above & Pair) * alpha + (below & Pair) * rest + Half;
  redBlue = ((redBlue + ((redBlue >> 8U) & Pair)) >> 8U) & Pair;
  std::uint32_t green = ((above >> 8U) & 0xFFU) * alpha + ((below >> 8U) & 0xFFU) * rest + 0x80U;
  green = (green + (green >> 8U)) & 0xFF00U;
  return redBlue | green;
}

// The colour halfway to white.
constexpr std::uint32_t Lightened(std::uint32_t pixel) {
  return (pixel & Opaque) | (((pixel >> 1U) & 0x7F7F7FU) + 0x808080U);
}

}  // namespace kw
