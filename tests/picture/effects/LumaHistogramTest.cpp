// Levels are counted as one by one, whatever the rows are like.

#include "picture/effects/LumaHistogram.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "picture/Depth.h"

namespace kw::test {
namespace {

using Levels = std::vector<std::uint8_t>;

LevelHistogram Counted(const Levels& levels, int times = 1) {
  LevelCounter counter;
  for (int i = 0; i < times; ++i) counter.Add(levels.data(), levels.size());
  LevelHistogram counts{};
  counter.AddTo(counts);
  return counts;
}

LevelHistogram CountedOneByOne(const Levels& levels, std::uint64_t times = 1) {
  LevelHistogram counts{};
  for (const std::uint8_t level : levels) counts[level] += times;
  return counts;
}

TEST(LevelCounter, CountsRowsOfAnyLength) {
  std::minstd_rand random(3);
  for (std::size_t length = 0; length < 150; ++length) {
    Levels levels(length);
    for (auto& level : levels) level = static_cast<std::uint8_t>(random());
    EXPECT_EQ(Counted(levels), CountedOneByOne(levels)) << length;
  }
}

TEST(LevelCounter, CountsPaperAndInk) {
  Levels levels(500, 255);
  EXPECT_EQ(Counted(levels), CountedOneByOne(levels));
  for (const std::size_t ink : {7U, 16U, 31U, 64U, 130U, 499U}) {
    levels[ink] = 0;
    EXPECT_EQ(Counted(levels), CountedOneByOne(levels)) << ink;
  }
}

TEST(LevelCounter, CountsMoreThanItsCountersHold) {
  // No 16 neighbours are equal, so that pairs are counted.
  Levels levels;
  for (int i = 0; i < 100; ++i) levels.insert(levels.end(), {0, 255});
  levels.push_back(9);
  for (const std::uint32_t most : {1U, 200U, 201U, 402U, 1000U, 2000U}) {
    LevelCounter counter(most);
    for (int i = 0; i < 9; ++i) counter.Add(levels.data(), levels.size());
    LevelHistogram counts{};
    counter.AddTo(counts);
    EXPECT_EQ(counts, CountedOneByOne(levels, 9)) << most;
  }
}

TEST(LevelCounter, AddsToWhatIsThere) {
  LevelHistogram counts{};
  counts[4] = 7;
  LevelCounter counter;
  const Levels levels{4, 4, 5};
  counter.Add(levels.data(), levels.size());
  counter.AddTo(counts);
  EXPECT_EQ(counts[4], 9U);
  EXPECT_EQ(counts[5], 1U);
}

TEST(LumaHistogram, IsThatOfEachPixelsLuma) {
  std::minstd_rand random(5);
  for (const int depth : {1, 4, 8, 24}) {
    for (const std::int32_t width : {1, 31, 333}) {
      // Enough rows for two threads.
      Bitmap picture(width, 700, depth);
      LevelHistogram expected{};
      for (std::int32_t y = 0; y < picture.Height(); ++y) {
        for (auto& byte : picture.MutableRow(y)) byte = static_cast<std::uint8_t>(random());
        for (std::int32_t x = 0; x < width; ++x) ++expected[Luma(picture.PixelAt(x, y))];
      }
      EXPECT_EQ(LumaHistogramOf(picture), expected) << depth << " bits, " << width << " pixels";
    }
  }
}

}  // namespace
}  // namespace kw::test
