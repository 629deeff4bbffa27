#include "drawing/DrawPicture.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "tests/drawing/Canvas.h"

namespace kw {
namespace {

using test::Canvas;

constexpr int Depths[] = {1, 4, 8, 24, 32};

// A picture of any pixels, opaque where it has alpha.
Bitmap RandomPicture(std::int32_t width, std::int32_t height, int depth, unsigned seed) {
  std::mt19937 random(seed);
  Bitmap picture(width, height, depth);
  if (depth <= 8) {
    std::vector<Rgb> palette(std::size_t{1} << static_cast<unsigned>(depth));
    for (Rgb& entry : palette) {
      entry = {static_cast<std::uint8_t>(random()), static_cast<std::uint8_t>(random()),
               static_cast<std::uint8_t>(random())};
    }
    picture.SetPalette(palette);
  }
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = picture.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = depth == 32 && i % 4 == 3 ? std::uint8_t{255} : static_cast<std::uint8_t>(random());
    }
  }
  return picture;
}

Colour ColourAt(const Bitmap& picture, std::int32_t x, std::int32_t y) {
  const Rgb pixel = picture.PixelAt(x, y);
  return MakeColour(pixel.red, pixel.green, pixel.blue);
}

unsigned Channel(std::uint32_t pixel, unsigned channel) { return (pixel >> (channel * 8)) & 0xFFU; }

// A 24-bit picture with one row of greys.
Bitmap GreyRow(const std::vector<std::uint8_t>& levels) {
  Bitmap picture(static_cast<std::int32_t>(levels.size()), 1, 24);
  const auto row = picture.MutableRow(0);
  for (std::size_t i = 0; i < row.size(); ++i) row[i] = levels[i / 3];
  return picture;
}

TEST(DrawPictureTest, EveryDepthIsCopiedAtItsOwnSize) {
  for (const int depth : Depths) {
    for (const std::int32_t width : {1, 2, 7, 8, 9, 33, 64}) {
      const Bitmap picture = RandomPicture(width, 5, depth, 1);
      const Canvas canvas({-3, -2, 70, 9});
      const PixelRect place = {2, 1, 2 + width, 6};
      DrawPicture(canvas.Buffer(), picture, place, {});
      for (std::int32_t y = -2; y < 9; ++y) {
        for (std::int32_t x = -3; x < 70; ++x) {
          const bool isInside = x >= place.left && x < place.right && y >= place.top && y < place.bottom;
          const std::uint32_t expected = isInside ? PixelOf(ColourAt(picture, x - 2, y - 1)) : Canvas::Untouched;
          ASSERT_EQ(canvas.At(x, y), expected) << depth << ": " << x << ' ' << y;
        }
      }
    }
  }
}

TEST(DrawPictureTest, WhatHasTheTransparentColourIsLeftOut) {
  for (const int depth : Depths) {
    const Bitmap picture = RandomPicture(40, 6, depth, 2);
    const Colour key = ColourAt(picture, 11, 3);
    const Canvas canvas({0, 0, 40, 6});
    DrawPicture(canvas.Buffer(), picture, {0, 0, 40, 6}, {.transparent = key});
    EXPECT_EQ(canvas.At(11, 3), Canvas::Untouched);
    for (std::int32_t y = 0; y < 6; ++y) {
      for (std::int32_t x = 0; x < 40; ++x) {
        const Colour colour = ColourAt(picture, x, y);
        ASSERT_EQ(canvas.At(x, y), colour == key ? Canvas::Untouched : PixelOf(colour)) << depth;
      }
    }
  }
}

TEST(DrawPictureTest, LighteningGoesHalfwayToWhite) {
  for (const int depth : Depths) {
    const Bitmap picture = RandomPicture(23, 3, depth, 3);
    const Canvas canvas({0, 0, 23, 3});
    const Colour key = ColourAt(picture, 4, 2);
    DrawPicture(canvas.Buffer(), picture, {0, 0, 23, 3}, {.transparent = key, .isLightened = true});
    EXPECT_EQ(canvas.At(4, 2), Canvas::Untouched);
    for (std::int32_t x = 0; x < 23; ++x) {
      if (ColourAt(picture, x, 1) == key) continue;
      for (unsigned channel = 0; channel < 3; ++channel) {
        const double level = Channel(PixelOf(ColourAt(picture, x, 1)), channel);
        ASSERT_NEAR(Channel(canvas.At(x, 1), channel), (level + 255) / 2, 1) << depth;
      }
    }
  }
}

TEST(DrawPictureTest, TransparentWhiteStaysTransparentWhenLightened) {
  std::vector<std::uint8_t> levels(21, 255);
  levels[3] = levels[17] = 0;
  const Canvas canvas({0, 0, 21, 1});
  DrawPicture(canvas.Buffer(), GreyRow(levels), {0, 0, 21, 1},
              {.transparent = MakeColour(255, 255, 255), .isLightened = true});
  for (std::int32_t x = 0; x < 21; ++x) {
    EXPECT_EQ(canvas.At(x, 0), x == 3 || x == 17 ? 0x808080U : Canvas::Untouched) << x;
  }
}

TEST(DrawPictureTest, AlphaIsBlended) {
  Bitmap picture(256, 1, 32);
  const auto row = picture.MutableRow(0);
  for (std::size_t i = 0; i < 256; ++i) {
    row[i * 4] = 10;
    row[i * 4 + 1] = 200;
    row[i * 4 + 2] = 255;
    row[i * 4 + 3] = static_cast<std::uint8_t>(i);
  }
  for (const std::int32_t width : {256, 255}) {  // scaled as well
    const Canvas canvas({0, 0, 256, 1}, 0x406080);
    DrawPicture(canvas.Buffer(), picture, {0, 0, width, 1}, {});
    for (std::int32_t x = 0; x < width; ++x) {
      const double alpha = x / 255.0;
      const double tolerance = width == 256 ? 0.5001 : 1.5;
      ASSERT_NEAR(Channel(canvas.At(x, 0), 0), 10 * alpha + 0x80 * (1 - alpha), tolerance) << x;
      ASSERT_NEAR(Channel(canvas.At(x, 0), 1), 200 * alpha + 0x60 * (1 - alpha), tolerance) << x;
      ASSERT_NEAR(Channel(canvas.At(x, 0), 2), 255 * alpha + 0x40 * (1 - alpha), tolerance) << x;
    }
  }
}

TEST(DrawPictureTest, AReducedPictureIsTheAverageOfTheAreaItCovers) {
  for (const int depth : Depths) {
    const Bitmap picture = RandomPicture(35, 21, depth, 4);
    const Canvas canvas({0, 0, 10, 4});
    DrawPicture(canvas.Buffer(), picture, {0, 0, 10, 4}, {});
    for (std::int32_t y = 0; y < 4; ++y) {
      for (std::int32_t x = 0; x < 10; ++x) {
        double sums[3] = {};
        for (std::int32_t v = 0; v < 21; ++v) {
          for (std::int32_t u = 0; u < 35; ++u) {
            const double across = std::max(0.0, std::min(u + 1.0, (x + 1) * 3.5) - std::max<double>(u, x * 3.5));
            const double down = std::max(0.0, std::min(v + 1.0, (y + 1) * 5.25) - std::max<double>(v, y * 5.25));
            for (unsigned channel = 0; channel < 3; ++channel) {
              sums[channel] += across * down * Channel(PixelOf(ColourAt(picture, u, v)), channel);
            }
          }
        }
        for (unsigned channel = 0; channel < 3; ++channel) {
          ASSERT_NEAR(Channel(canvas.At(x, y), channel), sums[channel] / (3.5 * 5.25), 0.51) << depth;
        }
      }
    }
  }
}

TEST(DrawPictureTest, AnEnlargedPictureIsInterpolated) {
  const Canvas canvas({0, 0, 8, 1});
  DrawPicture(canvas.Buffer(), GreyRow({0, 160}), {0, 0, 8, 1}, {});
  const unsigned expected[] = {0, 0, 20, 60, 100, 140, 160, 160};
  for (std::int32_t x = 0; x < 8; ++x) {
    for (unsigned channel = 0; channel < 3; ++channel) EXPECT_EQ(Channel(canvas.At(x, 0), channel), expected[x]) << x;
  }
}

TEST(DrawPictureTest, TheTransparentColourLeavesNoFringeWhenScaled) {
  // Black beside the transparent white: half of each gives half of black over what lies below, and no white.
  const Canvas canvas({0, 0, 1, 1}, 0x00FF00);
  DrawPicture(canvas.Buffer(), GreyRow({0, 255}), {0, 0, 1, 1}, {.transparent = MakeColour(255, 255, 255)});
  EXPECT_EQ(canvas.At(0, 0), 0x008000U);
}

TEST(DrawPictureTest, APartIsTheSameAsThatPartOfTheWhole) {
  std::mt19937 random(5);
  for (const int depth : Depths) {
    const Bitmap picture = RandomPicture(31, 27, depth, 6);
    for (const PixelRect& place :
         {PixelRect{3, 4, 34, 31}, PixelRect{1, 2, 18, 15}, PixelRect{-9, -20, 90, 70}, PixelRect{0, 0, 12, 60}}) {
      for (const DrawOptions& options : {DrawOptions{}, DrawOptions{.transparent = ColourAt(picture, 0, 0)}}) {
        const Canvas whole({0, 0, 60, 60});
        DrawPicture(whole.Buffer(), picture, place, options);
        for (int round = 0; round < 20; ++round) {
          const auto left = static_cast<std::int32_t>(random() % 50);
          const auto top = static_cast<std::int32_t>(random() % 50);
          const PixelRect area = {left, top, left + 1 + static_cast<std::int32_t>(random() % 10),
                                  top + 1 + static_cast<std::int32_t>(random() % 10)};
          const Canvas part(area);
          DrawPicture(part.Buffer(), picture, place, options);
          for (std::int32_t y = area.top; y < area.bottom; ++y) {
            for (std::int32_t x = area.left; x < area.right; ++x) ASSERT_EQ(part.At(x, y), whole.At(x, y)) << depth;
          }
        }
      }
    }
  }
}

TEST(DrawPictureTest, EnormousPlacesAreSafe) {
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  for (const int depth : Depths) {
    Bitmap picture(3, 3, depth);
    for (std::int32_t y = 0; y < 3; ++y) {
      for (std::uint8_t& byte : picture.MutableRow(y)) byte = 255;
    }
    const Canvas canvas({0, 0, 1, 1});
    DrawPicture(canvas.Buffer(), picture, {least, least, most, most}, {});
    EXPECT_EQ(canvas.At(0, 0), 0xFFFFFFU);
    const Canvas untouched({0, 0, 1, 1});
    DrawPicture(untouched.Buffer(), picture, {most, most, least, least}, {});
    DrawPicture(untouched.Buffer(), picture, {most - 3, 0, most, 3}, {});
    DrawPicture(untouched.Buffer(), picture, {least, 0, least + 3, 3}, {});
    DrawPicture(untouched.Buffer(), picture, {0, 0, 0, 1}, {});
    EXPECT_EQ(untouched.At(0, 0), Canvas::Untouched);
  }
}

TEST(DrawPictureTest, NoPictureDrawsNothing) {
  const Canvas canvas({0, 0, 2, 2});
  DrawPicture(canvas.Buffer(), Bitmap(), {0, 0, 2, 2}, {});
  EXPECT_EQ(canvas.At(0, 0), Canvas::Untouched);
}

TEST(DrawPictureTest, AnIndexPastThePaletteIsBlack) {
  Bitmap picture(2, 1, 8);
  picture.SetPalette({{255, 255, 255}});
  picture.MutableRow(0)[1] = 200;
  const Canvas canvas({0, 0, 2, 1});
  DrawPicture(canvas.Buffer(), picture, {0, 0, 2, 1}, {});
  EXPECT_EQ(canvas.At(0, 0), 0xFFFFFFU);
  EXPECT_EQ(canvas.At(1, 0), 0U);
}

}  // namespace
}  // namespace kw
