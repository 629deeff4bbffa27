// Kernels between levels and what stores them give what the plain ones give, and touch nothing else.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "picture/effects/FirstLevels.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/ScalarKernels.h"

namespace kw {
namespace {

using Row = std::vector<std::uint8_t>;

Row Random(std::size_t count, unsigned seed) {
  std::minstd_rand random(seed);
  Row row(count);
  for (auto& byte : row) byte = static_cast<std::uint8_t>(random() >> 7U);
  return row;
}

// A buffer that is exactly as long as the kernel may write, so that the sanitizer sees what goes beyond.
TEST(LevelKernels, UnpackRowsOfAnyLength) {
  const Row entries = Random(256, 1);
  Lut levels{};
  std::ranges::copy(entries, levels.begin());
  for (const int depth : {1, 4, 8}) {
    const std::size_t perByte = 8 / static_cast<std::size_t>(depth);
    for (std::size_t pixels = 1; pixels <= 300; ++pixels) {
      const Row packed = Random((pixels + perByte - 1) / perByte, static_cast<unsigned>(pixels));
      Row plain(pixels);
      for (std::size_t x = 0; x < pixels; ++x) plain[x] = levels[PaletteIndexAt(packed, x, depth)];
      Row scalar(pixels);
      kernels::scalar::UnpackLevels(packed.data(), scalar.data(), pixels, depth, levels);
      ASSERT_EQ(plain, scalar) << pixels << " of " << depth << " bits";
      Row fast((pixels + 7) / 8 * 8);
      kernels::UnpackLevels(packed.data(), fast.data(), pixels, depth, levels);
      fast.resize(pixels);
      ASSERT_EQ(plain, fast) << pixels << " of " << depth << " bits";
    }
  }
}

TEST(LevelKernels, TripleRowsOfAnyLength) {
  for (std::size_t pixels = 0; pixels <= 300; ++pixels) {
    const Row from = Random(pixels, static_cast<unsigned>(pixels + 1));
    Row plain(3 * pixels);
    for (std::size_t i = 0; i < plain.size(); ++i) plain[i] = from[i / 3];
    Row scalar(3 * pixels);
    kernels::scalar::Triple(from.data(), scalar.data(), pixels);
    EXPECT_EQ(plain, scalar) << pixels;
    Row fast(3 * pixels);
    kernels::Triple(from.data(), fast.data(), pixels);
    EXPECT_EQ(plain, fast) << pixels;
  }
}

TEST(LevelKernels, FindTheThirdValueWhereverItIs) {
  for (std::size_t count = 0; count <= 200; ++count) {
    Row row(count);
    for (std::size_t i = 0; i < count; ++i) row[i] = i % 3 == 0 ? 7 : 250;
    EXPECT_EQ(count, kernels::FindThird(row.data(), count, 7, 250));
    EXPECT_EQ(count, kernels::scalar::FindThird(row.data(), count, 250, 7));
    for (std::size_t at = 0; at < count; ++at) {
      Row other = row;
      other[at] = 8;
      // What follows does not matter.
      if (at + 5 < count) other[at + 5] = 9;
      ASSERT_EQ(at, kernels::FindThird(other.data(), count, 7, 250)) << count;
      ASSERT_EQ(at, kernels::scalar::FindThird(other.data(), count, 7, 250)) << count;
    }
  }
}

FirstLevels Levels(const Row& row) { return FirstLevelsOf(row.data(), row.size()); }

TEST(FirstLevels, AreThoseOfARow) {
  EXPECT_EQ((FirstLevels{0, 0, 0}), Levels({}));
  EXPECT_EQ((FirstLevels{9, 9, 1}), Levels(Row(100, 9)));
  EXPECT_EQ((FirstLevels{9, 3, 2}), Levels({9, 9, 3, 9, 3}));
  EXPECT_EQ((FirstLevels{9, 3, FirstLevels::Many}), Levels({9, 9, 3, 9, 4}));
}

TEST(FirstLevels, OfRowsAreThoseOfAllOfThem) {
  for (const unsigned values : {1U, 2U, 3U}) {
    for (unsigned turn = 0; turn < 200; ++turn) {
      std::minstd_rand random(turn);
      Row all;
      FirstLevels added;
      for (int part = 0; part < 4; ++part) {
        Row row(random() % 4);
        for (auto& value : row) value = static_cast<std::uint8_t>((random() >> 8U) % values * 50);
        all.insert(all.end(), row.begin(), row.end());
        added.Add(Levels(row));
      }
      const FirstLevels expected = Levels(all);
      ASSERT_EQ(expected.count, added.count) << turn;
      ASSERT_EQ(expected.first, added.first) << turn;
      ASSERT_EQ(expected.second, added.second) << turn;
    }
  }
}

}  // namespace
}  // namespace kw
