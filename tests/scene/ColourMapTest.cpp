#include "scene/ColourMap.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace kw {
namespace {

// The hues share the first 92 hundredths of the width.
constexpr double Hues = 0.92;

TEST(ColourMap, HasTheSixPureHuesInItsMiddle) {
  const Colour pure[] = {MakeColour(255, 0, 0),   MakeColour(255, 255, 0), MakeColour(0, 255, 0),
                         MakeColour(0, 255, 255), MakeColour(0, 0, 255),   MakeColour(255, 0, 255)};
  for (int i = 0; i < 6; ++i) EXPECT_EQ(ColourOfMap(Hues * i / 6, 0.5), pure[i]) << i;
  EXPECT_EQ(ColourOfMap(Hues / 12, 0.5), MakeColour(255, 128, 0)) << "half way to the next";
}

TEST(ColourMap, GoesFromWhiteThroughTheHueToBlackDownward) {
  for (const double x : {0.0, 0.2, 0.55, 0.9, 0.95}) {
    EXPECT_EQ(ColourOfMap(x, 0), MakeColour(255, 255, 255)) << x;
    EXPECT_EQ(ColourOfMap(x, 1), MakeColour(0, 0, 0)) << x;
  }
  EXPECT_EQ(ColourOfMap(0, 0.25), MakeColour(255, 128, 128));
  EXPECT_EQ(ColourOfMap(0, 0.75), MakeColour(128, 0, 0));
}

TEST(ColourMap, HasAStripOfGreysAtItsRight) {
  for (const double x : {0.92, 0.96, 1.0}) {
    EXPECT_EQ(ColourOfMap(x, 0.2), MakeColour(204, 204, 204)) << x;
    EXPECT_EQ(ColourOfMap(x, 0.5), MakeColour(128, 128, 128)) << x;
  }
}

TEST(ColourMap, IsSmoothWithinTheHues) {
  constexpr int Steps = 1000;
  const auto at = [](int x, int y) { return ColourOfMap(Hues * x / Steps, static_cast<double>(y) / Steps); };
  const auto channel = [](Colour colour, unsigned shift) { return static_cast<int>(colour >> shift & 0xFF); };
  for (int y = 0; y + 1 < Steps; y += 7) {
    for (int x = 0; x + 1 < Steps; x += 7) {
      for (const unsigned shift : {0U, 8U, 16U}) {
        EXPECT_LE(std::abs(channel(at(x, y), shift) - channel(at(x + 1, y), shift)), 2);
        EXPECT_LE(std::abs(channel(at(x, y), shift) - channel(at(x, y + 1), shift)), 2);
      }
    }
  }
}

TEST(ColourMap, OutsideItselfIsAsAtItsEdge) {
  EXPECT_EQ(ColourOfMap(-3, 0.5), MakeColour(255, 0, 0));
  EXPECT_EQ(ColourOfMap(7, 0.5), MakeColour(128, 128, 128));
  EXPECT_EQ(ColourOfMap(0, -1), MakeColour(255, 255, 255));
  EXPECT_EQ(ColourOfMap(0, 2), MakeColour(0, 0, 0));
}

}  // namespace
}  // namespace kw
