#include "picture/Signature.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "picture/Depth.h"

namespace kw {
namespace {

// A stroke of blue ink with soft edges on hazy paper.
Bitmap SignedPaper(int depth) {
  Bitmap scan(60, 30, 24);
  for (std::int32_t y = 0; y < 30; ++y) {
    const auto row = scan.MutableRow(y);
    for (std::size_t x = 0; x < 60; ++x) {
      const bool isStroke = x >= 20 && x < 40;
      Rgb colour = {254, 250, 253};
      if (isStroke && y == 12) colour = {40, 60, 200};
      if (isStroke && (y == 11 || y == 13)) colour = {147, 157, 227};
      row[x * 3] = colour.blue;
      row[x * 3 + 1] = colour.green;
      row[x * 3 + 2] = colour.red;
    }
  }
  return ToDepth(scan, depth);
}

std::array<int, 4> StraightPixel(const Bitmap& ink, std::int32_t x, std::int32_t y) {
  const auto pixel = ink.Row(y).subspan(static_cast<std::size_t>(x) * 4, 4);
  return {pixel[2], pixel[1], pixel[0], pixel[3]};
}

TEST(SignatureInk, LosesItsMarginsAndItsPaper) {
  Bitmap paper = SignedPaper(24);
  std::fill_n(paper.MutableRow(12).begin() + std::ptrdiff_t{30} * 3, 3,
              std::uint8_t{250});  // paper shows within the stroke
  const Bitmap ink = SignatureInk(paper);
  ASSERT_EQ(32, ink.BitsPerPixel());
  EXPECT_EQ(20, ink.Width());
  EXPECT_EQ(3, ink.Height());
  EXPECT_EQ((std::array{255, 255, 255, 0}), StraightPixel(ink, 10, 1));
}

TEST(SignatureInk, LooksAsScannedOnWhiteWithSoftEdges) {
  for (const int depth : {24, 32}) {
    const Bitmap ink = SignatureInk(SignedPaper(depth));
    const auto core = StraightPixel(ink, 3, 1);
    const auto edge = StraightPixel(ink, 3, 0);
    EXPECT_EQ(215, core[3]);
    EXPECT_EQ(108, edge[3]);
    const auto onWhite = [](const std::array<int, 4>& pixel, std::size_t channel) {
      return (pixel[channel] * pixel[3] + 255 * (255 - pixel[3])) / 255.0;
    };
    const std::array<int, 3> scannedCore = {40, 60, 200};
    const std::array<int, 3> scannedEdge = {147, 157, 227};
    for (std::size_t channel = 0; channel < 3; ++channel) {
      EXPECT_NEAR(scannedCore[channel], onWhite(core, channel), 1) << depth;
      EXPECT_NEAR(scannedEdge[channel], onWhite(edge, channel), 1) << depth;
    }
  }
}

// Each amount of ink with each value that another channel may have.
TEST(SignatureInk, IsDividedExactly) {
  Bitmap scan(256, 256, 24);
  for (std::int32_t darkest = 0; darkest < 256; ++darkest) {
    const auto row = scan.MutableRow(darkest);
    for (std::size_t x = 0; x < 256; ++x) {
      row[x * 3] = static_cast<std::uint8_t>(darkest);
      row[x * 3 + 1] = static_cast<std::uint8_t>(std::max<std::size_t>(x, static_cast<std::size_t>(darkest)));
      row[x * 3 + 2] = 255;
    }
  }
  const Bitmap ink = SignatureInk(scan);
  ASSERT_EQ(256, ink.Width());
  for (std::int32_t y = 0; y < ink.Height(); ++y) {
    const auto share = static_cast<unsigned>(255 - y);
    for (std::int32_t x = 0; x < 256; ++x) {
      const auto value = static_cast<unsigned>(std::max(x, y));
      const unsigned expected = 255U - ((255U - value) * 255U + share / 2) / share;
      ASSERT_EQ((std::array<int, 4>{255, static_cast<int>(expected), 0, static_cast<int>(share)}),
                StraightPixel(ink, x, y));
    }
  }
}

TEST(SignatureInk, OfABlackAndWhiteScanIsBlackOrNothing) {
  Bitmap scan(16, 4, 1);
  for (std::int32_t y = 0; y < 4; ++y) std::fill_n(scan.MutableRow(y).begin(), 2, std::uint8_t{0xFF});
  scan.MutableRow(2)[0] = 0xE7;
  const Bitmap ink = SignatureInk(scan);
  EXPECT_EQ(2, ink.Width());
  EXPECT_EQ(1, ink.Height());
  EXPECT_EQ((std::array{0, 0, 0, 255}), StraightPixel(ink, 0, 0));
}

TEST(SignatureInk, OfBlankPaperKeepsItsSizeAndShowsNothing) {
  Bitmap blank(5, 4, 24);
  for (std::int32_t y = 0; y < 4; ++y) std::fill_n(blank.MutableRow(y).begin(), 15, std::uint8_t{252});
  const Bitmap nothing = SignatureInk(blank);
  EXPECT_EQ(5, nothing.Width());
  EXPECT_EQ(4, nothing.Height());
  for (std::int32_t y = 0; y < 4; ++y) EXPECT_EQ(0, StraightPixel(nothing, 2, y)[3]);
  EXPECT_TRUE(SignatureInk(Bitmap()).IsEmpty());
}

}  // namespace
}  // namespace kw
