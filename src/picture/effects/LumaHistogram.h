#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "components/base/Bitmap.h"

namespace kw {

// How often each level occurs. 32 bits are too few for the pixels of the largest page of 1 bit.
using LevelHistogram = std::array<std::uint64_t, 256>;

// Counts levels, a pair of neighbours in one step: a step ends with a write to memory, and these take the time.
class LevelCounter {
public:
  LevelCounter() : pairs(Levels * Levels) {}

  void Add(const std::uint8_t* row, std::size_t count);
  // Ends the counting.
  void AddTo(LevelHistogram& whole);

private:
  static constexpr std::size_t Levels = 256;

  // One more of a pair that occurred 2^16 times is a rare step of its own, so the counters are short and lie closer
  // together.
  void CountFull(std::size_t pair);

  std::vector<std::uint16_t> pairs;
  LevelHistogram sum{};
};

// Of the luma of all pixels, on a white background.
LevelHistogram LumaHistogramOf(const Bitmap& picture);

}  // namespace kw
