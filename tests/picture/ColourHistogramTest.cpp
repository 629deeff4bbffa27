// The bins of a colour histogram are the same whichever way a pixel is counted.

#include "picture/ColourHistogram.h"

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

bool SameBins(const ColourHistogram& a, const ColourHistogram& b) {
  for (std::size_t i = 0; i < ColourHistogram::Count; ++i) {
    if (a[i].count != b[i].count || a[i].red != b[i].red || a[i].green != b[i].green || a[i].blue != b[i].blue) {
      return false;
    }
  }
  return true;
}

TEST(ColourHistogram, EachColourHasItsOwnBin) {
  std::set<std::size_t> bins;
  for (std::size_t rgb555 = 0; rgb555 < ColourHistogram::Count; ++rgb555) {
    bins.insert(ColourHistogram::BinOf(static_cast<std::uint16_t>(rgb555)));
  }
  EXPECT_EQ(bins.size(), ColourHistogram::Count);
  EXPECT_EQ(*bins.rbegin(), ColourHistogram::Count - 1);
}

TEST(ColourHistogram, ColoursThatDifferInTheirThreeLowerBitsOnlyShareABin) {
  EXPECT_EQ(ColourHistogram::BinOf(Rgb{0x48, 0x90, 0xF8}), ColourHistogram::BinOf(Rgb{0x4F, 0x97, 0xFF}));
  EXPECT_NE(ColourHistogram::BinOf(Rgb{0x48, 0x90, 0xF8}), ColourHistogram::BinOf(Rgb{0x50, 0x90, 0xF8}));
  EXPECT_NE(ColourHistogram::BinOf(Rgb{0x48, 0x90, 0xF8}), ColourHistogram::BinOf(Rgb{0x48, 0x98, 0xF8}));
  EXPECT_NE(ColourHistogram::BinOf(Rgb{0x48, 0x90, 0xF8}), ColourHistogram::BinOf(Rgb{0x48, 0x90, 0xF0}));
}

TEST(ColourHistogram, ARowHasTheBinsOfItsPixels) {
  for (std::size_t pixels = 1; pixels <= 200; ++pixels) {
    const PixelRow pixelRow(pixels, static_cast<unsigned>(pixels));
    ColourHistogram::BinnedRow row((pixels + Bitmap::RowAlignment) / Bitmap::RowAlignment * Bitmap::RowAlignment);
    row.Split(pixelRow.Data(), pixels);
    std::vector<std::uint16_t> bins(pixels);
    ColourHistogram::FindBins(pixelRow.Data(), bins.data(), pixels);
    for (std::size_t x = 0; x < pixels; ++x) {
      const Rgb colour = ColourAt(pixelRow.Bytes(), x);
      ASSERT_EQ(row.Bins()[x], ColourHistogram::BinOf(colour)) << x << " of " << pixels;
      ASSERT_EQ(bins[x], row.Bins()[x]) << x << " of " << pixels;
      ASSERT_EQ(row.LowBits()[x], (colour.red & 7U) << 6U | (colour.green & 7U) << 3U | (colour.blue & 7U));
    }
  }
}

// So many pixels of one colour that its packed sums are flushed on the way.
TEST(ColourHistogram, CountsOfOneColourDoNotOverflow) {
  constexpr std::size_t Pixels = 100000;
  ColourHistogram histogram;
  ColourHistogram::Counter counter(histogram);
  for (std::size_t i = 0; i < Pixels; ++i) counter.Add(Rgb{0xFF, 0x07, 0x16});
  counter.Finish();
  const ColourHistogram::Bin& bin = histogram[ColourHistogram::BinOf(Rgb{0xFF, 0x07, 0x16})];
  EXPECT_EQ(bin.count, Pixels);
  EXPECT_EQ(bin.red, Pixels * 7);
  EXPECT_EQ(bin.green, Pixels * 7);
  EXPECT_EQ(bin.blue, Pixels * 6);
}

TEST(ColourHistogram, CountersOfSeveralThreadsGiveTheSumOfOne) {
  constexpr std::size_t Pixels = 300;
  constexpr int Repeats = 100;
  std::vector<PixelRow> pixelRows;
  for (unsigned seed = 1; seed <= 4; ++seed) pixelRows.emplace_back(Pixels, seed);
  ColourHistogram single;
  ColourHistogram::Counter counter(single);
  ColourHistogram together;
  std::vector<std::thread> threads;
  for (const PixelRow& pixelRow : pixelRows) {
    for (int i = 0; i < Repeats; ++i) {
      for (std::size_t x = 0; x < Pixels; ++x) counter.Add(ColourAt(pixelRow.Bytes(), x));
    }
    threads.emplace_back([&] {
      ColourHistogram::BinnedRow row(Pixels + Bitmap::RowAlignment);
      ColourHistogram::Counter own(together);
      row.Split(pixelRow.Data(), Pixels);
      for (int i = 0; i < Repeats; ++i) own.Add(row, Pixels);
      own.Finish();
    });
  }
  counter.Finish();
  for (std::thread& thread : threads) thread.join();
  EXPECT_TRUE(SameBins(single, together));
}

}  // namespace
}  // namespace kw
