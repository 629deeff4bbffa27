// Cells of colours are the same whichever way a pixel comes to them.

#include "picture/ColourCells.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <thread>
#include <vector>

namespace kw {
namespace {

Rgb ColourAt(const std::vector<std::uint8_t>& row, std::size_t x) {
  return {row[x * 3 + 2], row[x * 3 + 1], row[x * 3]};
}

// As rows of bitmaps are: aligned, and with room up to the alignment.
class PixelRow {
public:
  PixelRow(std::size_t pixels, unsigned seed) : bitmap(static_cast<std::int32_t>(pixels), 1, 24), bytes(pixels * 3) {
    std::minstd_rand random(seed);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random() >> 8U);
    std::copy(bytes.begin(), bytes.end(), bitmap.MutableRow(0).begin());
  }
  const std::uint8_t* Data() const { return bitmap.Row(0).data(); }
  const std::vector<std::uint8_t>& Bytes() const { return bytes; }

private:
  Bitmap bitmap;
  std::vector<std::uint8_t> bytes;
};

bool SameCells(const ColourCells& a, const ColourCells& b) {
  for (std::size_t i = 0; i < ColourCells::Count; ++i) {
    if (a[i].count != b[i].count || a[i].red != b[i].red || a[i].green != b[i].green || a[i].blue != b[i].blue) {
      return false;
    }
  }
  return true;
}

TEST(ColourCells, EachPlaceHasItsOwnNumber) {
  std::set<std::size_t> numbers;
  for (std::size_t place = 0; place < ColourCells::Count; ++place) {
    numbers.insert(ColourCells::NumberOf(static_cast<std::uint16_t>(place)));
  }
  EXPECT_EQ(numbers.size(), ColourCells::Count);
  EXPECT_EQ(*numbers.rbegin(), ColourCells::Count - 1);
}

TEST(ColourCells, ColoursThatDifferInTheirThreeLowerBitsOnlyShareACell) {
  EXPECT_EQ(ColourCells::NumberOf(Rgb{0x48, 0x90, 0xF8}), ColourCells::NumberOf(Rgb{0x4F, 0x97, 0xFF}));
  EXPECT_NE(ColourCells::NumberOf(Rgb{0x48, 0x90, 0xF8}), ColourCells::NumberOf(Rgb{0x50, 0x90, 0xF8}));
  EXPECT_NE(ColourCells::NumberOf(Rgb{0x48, 0x90, 0xF8}), ColourCells::NumberOf(Rgb{0x48, 0x98, 0xF8}));
  EXPECT_NE(ColourCells::NumberOf(Rgb{0x48, 0x90, 0xF8}), ColourCells::NumberOf(Rgb{0x48, 0x90, 0xF0}));
}

TEST(ColourCells, ARowIsSplitAsItsPixelsAre) {
  for (std::size_t pixels = 1; pixels <= 200; ++pixels) {
    const PixelRow pixelRow(pixels, static_cast<unsigned>(pixels));
    ColourCells::Row row((pixels + Bitmap::RowAlignment) / Bitmap::RowAlignment * Bitmap::RowAlignment);
    row.Split(pixelRow.Data(), pixels);
    for (std::size_t x = 0; x < pixels; ++x) {
      const Rgb colour = ColourAt(pixelRow.Bytes(), x);
      ASSERT_EQ(row.Numbers()[x], ColourCells::NumberOf(colour)) << x << " of " << pixels;
      ASSERT_EQ(row.Rests()[x], (colour.red & 7U) << 6U | (colour.green & 7U) << 3U | (colour.blue & 7U));
    }
  }
}

// So many pixels of one colour that its sums have to be put away on the way.
TEST(ColourCells, CountsOfOneColourDoNotOverflow) {
  constexpr std::size_t Pixels = 100000;
  ColourCells cells;
  ColourCells::Counter counter(cells);
  for (std::size_t i = 0; i < Pixels; ++i) counter.Add(Rgb{0xFF, 0x07, 0x16});
  counter.Finish();
  const ColourCells::Cell& cell = cells[ColourCells::NumberOf(Rgb{0xFF, 0x07, 0x16})];
  EXPECT_EQ(cell.count, Pixels);
  EXPECT_EQ(cell.red, Pixels * 7);
  EXPECT_EQ(cell.green, Pixels * 7);
  EXPECT_EQ(cell.blue, Pixels * 6);
}

TEST(ColourCells, CountersOfSeveralThreadsGiveTheSumOfOne) {
  constexpr std::size_t Pixels = 300;
  constexpr int Repeats = 100;
  std::vector<PixelRow> pixelRows;
  for (unsigned seed = 1; seed <= 4; ++seed) pixelRows.emplace_back(Pixels, seed);
  ColourCells single;
  ColourCells::Counter counter(single);
  ColourCells together;
  std::vector<std::thread> threads;
  for (const PixelRow& pixelRow : pixelRows) {
    for (int i = 0; i < Repeats; ++i) {
      for (std::size_t x = 0; x < Pixels; ++x) counter.Add(ColourAt(pixelRow.Bytes(), x));
    }
    threads.emplace_back([&] {
      ColourCells::Row row(Pixels + Bitmap::RowAlignment);
      ColourCells::Counter own(together);
      row.Split(pixelRow.Data(), Pixels);
      for (int i = 0; i < Repeats; ++i) own.Add(row, Pixels);
      own.Finish();
    });
  }
  counter.Finish();
  for (std::thread& thread : threads) thread.join();
  EXPECT_TRUE(SameCells(single, together));
}

}  // namespace
}  // namespace kw
