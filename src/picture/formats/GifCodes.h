#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace kw {

// Walks through the codes of a GIF frame without decoding it, and tells whether each is one that has been made by then.
// The codec library takes any code and makes up pixels for those that mean nothing.
class GifCodes {
public:
  // `size` is the frame's own smallest code size in bits, `pixelCount` what it has to hold; what comes behind these
  // pixels does not matter.
  GifCodes(int size, std::uint64_t pixelCount);

  // The next coded bytes. False from the first code on that is out of range.
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
  // The code that the next one makes, and how many pixels each stands for.
  unsigned next = 0;
  bool fresh = true;
  std::array<std::uint32_t, MostCodes> lengths{};
  std::uint32_t lastLength = 0;
};

}  // namespace kw
