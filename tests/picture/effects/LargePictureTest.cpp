// The other ways for pictures that are too large for the caches, and for several threads.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "picture/effects/Effect.h"
#include "picture/effects/ParallelRows.h"
#include "tests/picture/Scratch.h"
#include "tests/picture/effects/Reference.h"
#include "tests/support/Watched.h"

namespace kw {
namespace {

// Whether the bytes of each pixel are those that the pixel had before the quarter turn.
bool IsTurned(const Bitmap& before, const Bitmap& after, bool clockwise) {
  const auto size = static_cast<std::size_t>(before.BitsPerPixel() / 8);
  for (std::int32_t y = 0; y < after.Height(); ++y) {
    const auto row = after.Row(y);
    for (std::int32_t x = 0; x < after.Width(); ++x) {
      const std::int32_t line = clockwise ? before.Height() - 1 - x : x;
      const std::int32_t column = clockwise ? y : before.Width() - 1 - y;
      const auto from = before.Row(line).subspan(static_cast<std::size_t>(column) * size, size);
      if (!std::ranges::equal(from, row.subspan(static_cast<std::size_t>(x) * size, size))) return false;
    }
  }
  return true;
}

TEST(LargePicture, TurnsPastTheCaches) {
  struct Size {
    int depth;
    std::int32_t width;
    std::int32_t height;
  };
  // Whole tiles and parts of them, in both directions.
  for (const Size& size : {Size{8, 2113, 2049}, Size{24, 1280, 1152}, Size{24, 1345, 1087}, Size{32, 1090, 1031}}) {
    const Bitmap before = Noise(size.width, size.height, size.depth);
    for (const double degrees : {90.0, 270.0}) {
      Bitmap after = before;
      ApplyEffect(*FindEffect("Rotate"), after, std::vector{degrees});
      ASSERT_EQ(size.height, after.Width());
      ASSERT_EQ(size.width, after.Height());
      EXPECT_TRUE(IsTurned(before, after, degrees == 90)) << size.depth << ' ' << size.width << ' ' << degrees;
    }
  }
}

// A slight slant of a line makes two lines of it, each halfway to the paper; places of the longer ones do not fit into
// 32 bits.
TEST(LargePicture, SlantsLinesOfAnyLength) {
  constexpr std::int32_t longest = 1 << 22;
  for (const std::int32_t width : {longest, longest + 2}) {
    Bitmap line(width, 1, 8);
    std::ranges::fill(line.MutableRow(0), std::uint8_t{200});
    ApplyEffect(*FindEffect("Rotate"), line, std::vector{1e-7});
    ASSERT_EQ(width, line.Width());
    ASSERT_EQ(2, line.Height());
    for (std::int32_t y = 0; y < 2; ++y) {
      for (std::int32_t x = width / 2 - 1000; x < width / 2 + 1000; ++x) ASSERT_EQ(228, line.PixelAt(x, y).red) << x;
    }
  }
}

// Few colours make their own palette, in the order in which they came, however the work is shared.
Bitmap FewColours(std::int32_t width, std::int32_t height, unsigned colours) {
  Bitmap picture(width, height, 24);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = picture.MutableRow(y);
    for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x) {
      const auto which = static_cast<unsigned>(x + 7 * static_cast<std::size_t>(y)) % colours;
      row[3 * x] = static_cast<std::uint8_t>(which * 5);
      row[3 * x + 1] = static_cast<std::uint8_t>(255 - which);
      row[3 * x + 2] = static_cast<std::uint8_t>(which * 91);
    }
  }
  return picture;
}

TEST(LargePicture, DepthsAreTheSameOnSeveralThreads) {
  // The whole size if that is quick; under a sanitizer less work is worth a thread.
  constexpr std::int32_t part = test::Amount(1, 10);
  SetLeastWork(test::IsWatched ? 1U << 12U : 0U);
  for (const char* const command : {"DecreaseBpp", "IncreaseBpp"}) {
    for (const Bitmap& picture :
         {Noise(1500 / part, 700, 24), FewColours(1500 / part, 700, 200), FewColours(1500 / part, 700, 257),
          Noise(1500 / part, 900, 32), Noise(2500 / part, 900, 8), Noise(4000 / part, 900, 4),
          Noise(6000 / part, 2900, 1)}) {
      SetMostThreads(1);
      Bitmap alone = picture;
      ApplyEffect(*FindEffect(command), alone);
      SetMostThreads(3);
      Bitmap together = picture;
      ApplyEffect(*FindEffect(command), together);
      SetMostThreads(0);
      EXPECT_EQ(alone.BitsPerPixel(), together.BitsPerPixel());
      EXPECT_TRUE(SamePicture(alone, together)) << command << " of " << picture.BitsPerPixel();
    }
  }
  SetLeastWork(0);
}

// A large picture whose palette is made of some of its pixels, with a line of a colour of its own in either direction
// and dots of colours that are hardly counted.
TEST(LargePicture, HasAPaletteOfSomeOfItsPixels) {
  Bitmap picture(1033, 1021, 24);
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto row = picture.MutableRow(y);
    for (std::int32_t x = 0; x < picture.Width(); ++x) {
      const auto at = static_cast<std::size_t>(x) * 3;
      const bool isDot = x % 97 == 5 && y % 89 == 7;
      row[at] = static_cast<std::uint8_t>(isDot ? 3 * x + y : 200 + x / 64 + y % 2);
      row[at + 1] = static_cast<std::uint8_t>(isDot ? 5 * x : y == 500 ? 10 : 180 + y / 32);
      row[at + 2] = static_cast<std::uint8_t>(isDot ? 7 * y : x == 700 ? 20 : 230 + (x + y) % 7);
    }
  }
  const auto expected = reference::Expected("DecreaseBpp", picture, {});
  for (const unsigned threads : {1U, 3U}) {
    SetMostThreads(threads);
    Bitmap result = picture;
    ApplyEffect(*FindEffect("DecreaseBpp"), result);
    EXPECT_TRUE(expected == reference::Read(result)) << threads;
    EXPECT_NEAR(10, result.PixelAt(99, 500).green, 1);
    EXPECT_NEAR(20, result.PixelAt(700, 99).red, 1);
  }
  SetMostThreads(0);
}

TEST(Bands, AreAllDoneOnceWhateverTheThreads) {
  for (const unsigned threads : {1U, 2U, 5U}) {
    SetMostThreads(threads);
    std::vector<int> rows(5000);
    std::vector<int> tasks(37);
    ParallelForRows(5000, std::uint64_t{1} << 30U, [&](RowBand band) {
      for (std::int32_t y = band.begin; y < band.end; ++y) ++rows[static_cast<std::size_t>(y)];
    });
    ParallelFor(tasks.size(), [&](std::size_t i) { ++tasks[i]; });
    EXPECT_EQ(5000, std::ranges::count(rows, 1));
    EXPECT_EQ(37, std::ranges::count(tasks, 1));
    EXPECT_EQ(1U, CutIntoRowBands(5000, 1000).size());
  }
  SetMostThreads(0);
}

TEST(Bands, BecomeSmallerAndTheSmallestAreWorthBeginning) {
  constexpr std::uint64_t Much = std::uint64_t{1} << 30U;
  for (const unsigned threads : {2U, 3U, 8U}) {
    SetMostThreads(threads);
    for (const std::int32_t height : {1, 15, 16, 40, 500, 3508, 100000}) {
      for (const std::int32_t leastRows : {1, 16, 61}) {
        const auto bands = CutIntoRowBands(height, Much, leastRows);
        ASSERT_FALSE(bands.empty());
        EXPECT_EQ(0, bands.front().begin);
        EXPECT_EQ(height, bands.back().end);
        for (std::size_t i = 0; i + 1 < bands.size(); ++i) EXPECT_EQ(bands[i].end, bands[i + 1].begin);
        if (bands.size() == 1) continue;
        const auto rows = [&](std::size_t i) { return bands[i].end - bands[i].begin; };
        for (std::size_t i = 0; i < bands.size(); ++i) EXPECT_LE(leastRows, rows(i));
        for (std::size_t i = 1; i + 1 < bands.size(); ++i) EXPECT_LE(rows(i), rows(i - 1) + 1);
        // The first is half of a thread's share, the last a small part.
        EXPECT_LE(rows(0), std::max(leastRows, height / static_cast<std::int32_t>(2 * threads) + 1));
      }
    }
    const auto bands = CutIntoRowBands(3508, Much);
    EXPECT_LT(2U * threads, bands.size());
    EXPECT_LE(bands.back().end - bands.back().begin, 2 * (3508 / static_cast<std::int32_t>(threads) / 16));
  }
  SetMostThreads(1);
  EXPECT_EQ(1U, CutIntoRowBands(5000, Much).size());
  SetMostThreads(0);
}

// So many pixels of one level that 32 bits cannot count them.
TEST(LargePicture, HasMorePixelsOfALevelThan32BitsCount) {
  // A page of a process of 32 bits has fewer pixels.
  constexpr std::int32_t side = sizeof(void*) == 4 ? 1 << 15 : test::Amount(1 << 16, 1 << 8);
  Bitmap picture(side, side + 8, 1);
  picture.SetPalette({{10, 10, 10}, {20, 20, 20}});
  for (std::int32_t y = side; y < side + 8; ++y) std::ranges::fill(picture.MutableRow(y), std::uint8_t{0xFF});
  ApplyEffect(*FindEffect("Threshold"), picture, std::vector{0.0});
  EXPECT_EQ((Rgb{0, 0, 0}), picture.PixelAt(3, side - 1));
  EXPECT_EQ((Rgb{255, 255, 255}), picture.PixelAt(3, side)) << "the lighter of the two";
}

}  // namespace
}  // namespace kw
