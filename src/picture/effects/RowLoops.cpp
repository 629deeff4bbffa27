#include <algorithm>
#include <cstring>

#include "picture/effects/Kernels.h"

namespace kw::kernels {
namespace {

unsigned BitsAt(const std::uint8_t* row, std::size_t x, unsigned bits) {
  const std::size_t perByte = 8 / bits;
  return static_cast<unsigned>(row[x / perByte]) >> (8 - bits * (x % perByte + 1)) & ((1U << bits) - 1);
}

void PutBits(std::uint8_t* row, std::size_t x, unsigned bits, unsigned value) {
  const std::size_t perByte = 8 / bits;
  const auto shift = static_cast<unsigned>(8 - bits * (x % perByte + 1));
  const unsigned others = row[x / perByte] & ~(((1U << bits) - 1) << shift);
  row[x / perByte] = static_cast<std::uint8_t>(others | value << shift);
}

}  // namespace

void DiffuseRow(const std::uint8_t* levels, std::int16_t* errors, std::uint8_t* to, std::size_t pixels) {
  std::int32_t right = 0;
  std::int32_t below = 0;
  std::int32_t belowRight = 0;
  for (std::size_t x = 0; x < pixels; ++x) {
    const std::int32_t value = levels[x] + ((errors[x + 1] + right + 8) >> 4);
    const bool white = value >= 128;
    PutBits(to, x, 1, white ? 1 : 0);
    const std::int32_t error = value - (white ? 255 : 0);
    errors[x] = static_cast<std::int16_t>(below + 3 * error);
    below = belowRight + 5 * error;
    belowRight = error;
    right = 7 * error;
  }
  errors[pixels] = static_cast<std::int16_t>(below);
}

void Mirror(std::uint8_t* row, std::size_t pixels, int bitsPerPixel) {
  if (bitsPerPixel < 8) {
    const auto bits = static_cast<unsigned>(bitsPerPixel);
    for (std::size_t left = 0, right = pixels - 1; left < right; ++left, --right) {
      const unsigned value = BitsAt(row, left, bits);
      PutBits(row, left, bits, BitsAt(row, right, bits));
      PutBits(row, right, bits, value);
    }
    return;
  }
  const auto size = static_cast<std::size_t>(bitsPerPixel / 8);
  for (std::size_t left = 0, right = pixels - 1; left < right; ++left, --right) {
    std::swap_ranges(row + left * size, row + (left + 1) * size, row + right * size);
  }
}

void Turn(const Area& from, const TargetArea& to, int bitsPerPixel, bool clockwise, std::int32_t begin,
          std::int32_t end) {
  for (std::int32_t y = begin; y < end; ++y) {
    std::uint8_t* const row = to.base + static_cast<std::size_t>(y) * to.stride;
    const auto column = static_cast<std::size_t>(clockwise ? y : from.width - 1 - y);
    for (std::int32_t x = 0; x < from.height; ++x) {
      const std::int32_t line = clockwise ? from.height - 1 - x : x;
      const std::uint8_t* const source = from.base + static_cast<std::size_t>(line) * from.stride;
      const auto place = static_cast<std::size_t>(x);
      if (bitsPerPixel < 8) {
        const auto bits = static_cast<unsigned>(bitsPerPixel);
        PutBits(row, place, bits, BitsAt(source, column, bits));
      } else {
        const auto size = static_cast<std::size_t>(bitsPerPixel / 8);
        std::memcpy(row + place * size, source + column * size, size);
      }
    }
  }
}

void AddWeighted(const std::uint8_t* from, std::int32_t* sums, std::size_t count, std::int32_t weight) {
  for (std::size_t i = 0; i < count; ++i) sums[i] += weight * from[i];
}

void Narrow(const std::int32_t* sums, std::int16_t* to, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to[i] = static_cast<std::int16_t>((sums[i] + 128) >> 8);
}

}  // namespace kw::kernels
