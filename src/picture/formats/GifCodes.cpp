#include "picture/formats/GifCodes.h"

#include <algorithm>

namespace kw {
namespace {

constexpr unsigned MostBits = 12;

}  // namespace

GifCodes::GifCodes(int size, std::uint64_t pixelCount)
    : clearCode(1U << static_cast<unsigned>(std::clamp(size, 1, 8))),
      firstWidth(static_cast<unsigned>(std::clamp(size, 1, 8)) + 1),
      pixelsLeft(pixelCount) {
  std::fill_n(lengths.begin(), clearCode, 1U);
  Clear();
}

void GifCodes::Clear() {
  width = firstWidth;
  next = clearCode + 2;
  fresh = true;
}

bool GifCodes::Take(std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes) {
    if (!good || pixelsLeft == 0) break;
    bits |= static_cast<std::uint32_t>(byte) << bitCount;
    bitCount += 8;
    while (bitCount >= width && good && pixelsLeft != 0) {
      const unsigned code = bits & ((1U << width) - 1);
      bits >>= width;
      bitCount -= width;
      good = TakeCode(code);
    }
  }
  return good;
}

bool GifCodes::TakeCode(unsigned code) {
  if (code == clearCode) {
    Clear();
    return true;
  }
  if (code == clearCode + 1) {
    pixelsLeft = 0;
    return true;
  }
  // The code that is just being defined repeats the last one and its first pixel.
  const bool beingMade = !fresh && code == next && next < MostCodes;
  if (code >= next && !beingMade) return false;
  if (fresh && code > clearCode) return false;
  const std::uint32_t length = beingMade ? lastLength + 1 : lengths[code];
  if (!fresh && next < MostCodes) {
    lengths[next] = lastLength + 1;
    ++next;
    if (next == 1U << width && width < MostBits) ++width;
  }
  fresh = false;
  lastLength = length;
  pixelsLeft -= std::min<std::uint64_t>(pixelsLeft, length);
  return true;
}

}  // namespace kw
