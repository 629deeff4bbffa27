#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace kw {

// Checks the LZW codes of a GIF frame without decoding it: each must be in the dictionary when it occurs. The codec
// library accepts any code and invents pixels for undefined ones.
class GifCodes {
public:
  // `size` is the frame's smallest code size in bits, `pixelCount` the number of its pixels; codes behind these pixels
  // do not matter.
  GifCodes(int size, std::uint64_t pixelCount);

  // Takes the next coded bytes. False from the first undefined code on.
  bool Take(std::span<const std::uint8_t> bytes);

private:
  void Clear();
  bool TakeCode(unsigned code);

  static constexpr unsigned MostCodes = 4096;

  unsigned clearCode;
  unsigned firstWidth;
  std::uint64_t pixelsLeft;
  bool good = true;
  // Bits that are not yet a whole code.
  std::uint32_t bits = 0;
  unsigned bitCount = 0;
  unsigned width = 0;
  // The code that will be defined next, and the number of pixels of each code.
  unsigned next = 0;
  bool fresh = true;
  std::array<std::uint32_t, MostCodes> lengths{};
  std::uint32_t lastLength = 0;
};

}  // namespace kw
