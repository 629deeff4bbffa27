#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "components/base/Bitmap.h"

namespace kw {

// How often each level occurs. 32 bits are too few for the pixels of the largest page of 1 bit.
using LevelHistogram = std::array<std::uint64_t, 256>;

// Counts levels, a pair of neighbours in one step: the steps take the time, so there is nothing else in them.
class LevelCounter {
public:
  // `most` pixels at least are counted between two times that the counters of pairs are added up; a counter holds them.
  explicit LevelCounter(std::uint32_t most = std::numeric_limits<std::uint32_t>::max())
      : pairs(Levels * Levels), mostUncollected(most) {}

  void Add(const std::uint8_t* row, std::size_t count);
  // Ends the counting.
  void AddTo(LevelHistogram& whole);

private:
  static constexpr std::size_t Levels = 256;

  // Adds the counters of pairs to the sum.
  void Collect();

  std::vector<std::uint32_t> pairs;
  std::uint32_t mostUncollected;
  std::uint64_t uncollected = 0;
  LevelHistogram sum{};
};

// Of the luma of all pixels, on a white background.
LevelHistogram LumaHistogramOf(const Bitmap& picture);

}  // namespace kw
