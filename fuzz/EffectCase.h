#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "picture/effects/Effect.h"

namespace kw {

// An effect, its values and a picture, as they lie in a file of a few bytes:
//   0     the effect's place in the table, modulo their number
//   1     the depth (1, 4, 8, 24, 32), modulo 5; from 128 on the palette is half as long as it may be
//   2, 3  width and height - 1, modulo 64
//   4...  a number of 8 bytes for each parameter: IEEE 754, little endian
//   ...   bytes of the palette and the rows, over and over
struct EffectCase {
  const Effect* effect = nullptr;
  std::vector<double> values;
  Bitmap picture;
};

std::optional<EffectCase> ReadEffectCase(std::span<const std::uint8_t> bytes);

// A file with the effect's defaults.
std::vector<std::uint8_t> WriteEffectCase(std::size_t effect, std::size_t depth, std::uint8_t width,
                                          std::uint8_t height);

}  // namespace kw
