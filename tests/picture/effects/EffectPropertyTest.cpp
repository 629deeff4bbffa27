// Promises of the effects beyond their formulas.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "picture/Depth.h"
#include "picture/effects/Effect.h"
#include "tests/picture/Scratch.h"
#include "tests/picture/effects/Reference.h"

namespace kw {
namespace {

Bitmap With(const Bitmap& picture, std::string_view command, std::span<const double> values) {
  Bitmap result = picture;
  ApplyEffect(*FindEffect(command), result, values);
  return result;
}

Bitmap With(const Bitmap& picture, std::string_view command) {
  Bitmap result = picture;
  ApplyEffect(*FindEffect(command), result);
  return result;
}

Bitmap Flat(int depth, std::uint8_t value) {
  Bitmap picture(37, 23, depth);
  for (std::int32_t y = 0; y < picture.Height(); ++y) std::ranges::fill(picture.MutableRow(y), value);
  return picture;
}

class EachDepth : public testing::TestWithParam<int> {
protected:
  Bitmap picture = Noise(53, 31, GetParam());
};

TEST_P(EachDepth, InvertTwice) { EXPECT_TRUE(SamePicture(picture, With(With(picture, "Invert"), "Invert"))); }

TEST_P(EachDepth, FlipTwice) {
  EXPECT_TRUE(SamePicture(picture, With(With(picture, "HorizontalFlip"), "HorizontalFlip")));
  EXPECT_TRUE(SamePicture(picture, With(With(picture, "VerticalFlip"), "VerticalFlip")));
}

TEST_P(EachDepth, RotateFourTimes) {
  Bitmap turned = picture;
  for (int i = 0; i < 4; ++i) turned = With(turned, "Rotate");
  EXPECT_TRUE(SamePicture(picture, turned));
}

TEST_P(EachDepth, RotateThereAndBack) {
  const std::vector back{-90.0};
  EXPECT_TRUE(SamePicture(picture, With(With(picture, "Rotate"), "Rotate", back)));
}

TEST_P(EachDepth, BothFlipsAreHalfATurn) {
  const std::vector half{180.0};
  EXPECT_TRUE(SamePicture(With(picture, "Rotate", half), With(With(picture, "HorizontalFlip"), "VerticalFlip")));
}

TEST_P(EachDepth, NothingToDo) {
  EXPECT_TRUE(SamePicture(picture, With(picture, "Rotate", std::vector{0.0})));
  EXPECT_EQ(reference::Read(picture).pixels, reference::Read(With(picture, "Lighten", std::vector{0.0})).pixels);
  EXPECT_EQ(reference::Read(picture).pixels, reference::Read(With(picture, "Darken", std::vector{0.0})).pixels);
  EXPECT_EQ(reference::Read(picture).pixels,
            reference::Read(With(picture, "Colorize", std::vector{200.0, 0.0})).pixels);
  EXPECT_EQ(reference::Read(picture).pixels, reference::Read(With(picture, "Contrast", std::vector{0.0})).pixels);
  EXPECT_EQ(reference::Read(picture).pixels, reference::Read(With(picture, "Sharpen", std::vector{0.0})).pixels);
  EXPECT_EQ(reference::Read(picture).pixels, reference::Read(With(picture, "Emboss", std::vector{0.0})).pixels);
}

TEST_P(EachDepth, DilateIsErodeOfTheInverted) {
  const Bitmap other = With(With(With(picture, "Invert"), "Erode"), "Invert");
  EXPECT_EQ(reference::Read(With(picture, "Dilate")).pixels, reference::Read(other).pixels);
}

TEST_P(EachDepth, ColorizeKeepsBrightness) {
  for (const double hue : {0.0, 30.0, 77.0, 240.0, 359.0}) {
    const auto before = reference::Read(picture);
    const auto after = reference::Read(With(picture, "Colorize", std::vector{hue, 100.0}));
    for (std::size_t i = 0; i < before.pixels.size(); ++i) {
      const auto luma = [](const reference::Pixel& p) { return 0.299 * p[2] + 0.587 * p[1] + 0.114 * p[0]; };
      ASSERT_NEAR(luma(before.pixels[i]), luma(after.pixels[i]), 1.001) << hue;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, EachDepth, testing::Values(1, 4, 8, 24, 32));

TEST(EffectProperty, OneBitStaysOneBit) {
  const Bitmap picture = Noise(53, 31, 1);
  for (const char* const command :
       {"Invert", "HorizontalFlip", "VerticalFlip", "Rotate", "Dilate", "Erode", "Dither", "Threshold"}) {
    EXPECT_EQ(1, With(picture, command).BitsPerPixel()) << command;
  }
}

TEST(EffectProperty, FlatPicturesStayFlat) {
  for (const int depth : {8, 24, 32}) {
    for (const int value : {0, 1, 100, 127, 128, 254, 255}) {
      const Bitmap flat = Flat(depth, static_cast<std::uint8_t>(value));
      reference::Pixel pixel = reference::Read(flat).At(0, 0);
      // The colour was multiplied by alpha, which has the same value, and divided by it again.
      if (depth == 32) {
        const int shown = value == 0 ? 0 : std::min(255, ((value * value + 127) / 255 * 255 + value / 2) / value);
        pixel = {shown, shown, shown, value};
      }
      const auto check = [&](const Bitmap& result, const char* what) {
        for (const reference::Pixel& p : reference::Read(result).pixels) ASSERT_EQ(pixel, p) << what << ' ' << value;
      };
      check(With(flat, "Blur"), "Blur");
      check(With(flat, "Resize"), "half");
      check(With(flat, "Resize", std::vector{33.0, 0.0, 0.0, 0.0}), "smaller");
      check(With(flat, "Resize", std::vector{217.0, 0.0, 0.0, 0.0}), "Lanczos");
      check(With(flat, "Resize", std::vector{217.0, 0.0, 0.0, 1.0}), "bicubic");
      if (depth == 32) continue;
      check(With(flat, "Sharpen"), "Sharpen");
      check(With(flat, "Emboss"), "Emboss");
      check(With(flat, "Dilate"), "Dilate");
      check(With(flat, "Erode"), "Erode");
    }
  }
}

// Wide bells have many weights to round.
TEST(EffectProperty, AnyBlurKeepsAFlatPictureWithinOne) {
  for (const double sigma : {0.1, 0.3, 0.8, 5.0, 28.6, 37.0, 50.0}) {
    for (const int value : {0, 1, 100, 128, 254, 255}) {
      const Bitmap blurred = With(Flat(8, static_cast<std::uint8_t>(value)), "Blur", std::vector{sigma});
      for (const reference::Pixel& p : reference::Read(blurred).pixels) ASSERT_NEAR(value, p[0], 1) << sigma;
    }
  }
}

// The fixed-point sums against the Gaussian bell itself.
TEST(EffectProperty, BlurIsGaussian) {
  const Bitmap picture = Noise(60, 40, 8, false);
  const auto before = reference::Read(picture);
  for (const double sigma : {0.3, 0.8, 1.5, 3.0, 4.9}) {
    const auto after = reference::Read(With(picture, "Blur", std::vector{sigma}));
    const auto radius = static_cast<std::int32_t>(std::ceil(3 * sigma));
    std::vector<double> bell;
    double sum = 0;
    for (std::int32_t i = -radius; i <= radius; ++i) sum += bell.emplace_back(std::exp(-0.5 * i * i / (sigma * sigma)));
    for (const std::int32_t y : {0, 7, 20, 39}) {
      std::vector<double> mixed;
      for (std::int32_t x = 0; x < 60; ++x) {
        double total = 0;
        auto weight = bell.begin();
        for (std::int32_t i = -radius; i <= radius; ++i) total += *weight++ / sum * before.Near(x, y + i)[0];
        mixed.push_back(total);
      }
      for (std::int32_t x = 0; x < 60; ++x) {
        double exact = 0;
        auto weight = bell.begin();
        for (std::int32_t i = -radius; i <= radius; ++i) {
          const std::int32_t column = std::clamp(x + i, 0, 59);
          exact += *weight++ / sum * mixed[static_cast<std::size_t>(column)];
        }
        ASSERT_NEAR(exact, after.At(x, y)[0], sigma < 4 ? 0.75 : 1.0) << sigma << " at " << x << ", " << y;
      }
    }
  }
}

// Any picture, along both sides of a border, at every phase of the blocks that wide blurs average.
TEST(EffectProperty, WideBlurIsGaussian) {
  constexpr std::int32_t Width = 211;
  const auto level = [](std::int32_t picture, std::int32_t x) {
    switch (picture) {
      case 0:
        return x < 100 ? 0 : 255;  // an edge
      case 1:
        return x == 83 ? 255 : 0;  // a line
      case 2:
        return x / 7 % 2 * 255;  // stripes
      default:
        return x / 23 % 2 * 200 + x % 2 * 50;  // wide and narrow ones
    }
  };
  for (const double sigma : {5.0, 6.3, 7.9, 9.99, 10.0, 12.0, 16.0, 23.0, 32.0, 50.0}) {
    for (std::int32_t kind = 0; kind < 4; ++kind) {
      for (const bool isTransposed : {false, true}) {
        Bitmap picture(isTransposed ? 3 : Width, isTransposed ? Width : 3, 8);
        for (std::int32_t i = 0; i < 3 * Width; ++i) {
          const std::int32_t x = i % Width;
          const auto value = static_cast<std::uint8_t>(level(kind, x));
          picture.MutableRow(isTransposed ? x : i / Width)[static_cast<std::size_t>(isTransposed ? i / Width : x)] =
              value;
        }
        const auto after = reference::Read(With(picture, "Blur", std::vector{sigma}));
        const auto radius = static_cast<std::int32_t>(std::ceil(6 * sigma));
        for (std::int32_t x = 0; x < Width; ++x) {
          double sum = 0;
          double exact = 0;
          for (std::int32_t i = -radius; i <= radius; ++i) {
            const double height = std::exp(-0.5 * i * i / (sigma * sigma));
            sum += height;
            exact += height * level(kind, std::clamp(x + i, 0, Width - 1));
          }
          const std::int32_t value = (isTransposed ? after.At(1, x) : after.At(x, 1))[0];
          ASSERT_NEAR(exact / sum, value, sigma < 15 ? 2.0 : 1.2) << sigma << ", picture " << kind << " at " << x;
        }
      }
    }
  }
}

// The exact blur of a value of each pixel, far beyond what a bell of bytes shows.
std::vector<double> ExactBlur(const reference::Plain& picture, double sigma) {
  const auto radius = static_cast<std::int32_t>(std::ceil(6 * sigma));
  const auto pass = [&](const auto& at) {
    std::vector<double> blurred;
    for (std::int32_t y = 0; y < picture.height; ++y) {
      for (std::int32_t x = 0; x < picture.width; ++x) {
        double sum = 0;
        double exact = 0;
        for (std::int32_t i = -radius; i <= radius; ++i) {
          const double height = std::exp(-0.5 * i * i / (sigma * sigma));
          sum += height;
          exact += height * at(x, y, i);
        }
        blurred.push_back(exact / sum);
      }
    }
    return blurred;
  };
  const auto down =
      pass([&](std::int32_t x, std::int32_t y, std::int32_t i) -> double { return picture.Near(x, y + i)[0]; });
  return pass([&](std::int32_t x, std::int32_t y, std::int32_t i) {
    return down[picture.Index(std::clamp(x + i, 0, picture.width - 1), y)];
  });
}

// Pictures smaller than a block or a bell, too.
TEST(EffectProperty, WideBlurOfNoiseIsGaussianInAnySize) {
  struct Size {
    std::int32_t width;
    std::int32_t height;
  };
  for (const Size& size : {Size{60, 41}, Size{1, 1}, Size{1, 7}, Size{9, 1}, Size{2, 3}, Size{5, 5}, Size{33, 2}}) {
    const Bitmap picture = Noise(size.width, size.height, 8, false);
    for (const double sigma : {5.0, 9.9, 10.0, 17.0, 50.0}) {
      const auto exact = ExactBlur(reference::Read(picture), sigma);
      const auto after = reference::Read(With(picture, "Blur", std::vector{sigma}));
      double most = 0;
      for (std::size_t i = 0; i < exact.size(); ++i) most = std::max(most, std::fabs(exact[i] - after.pixels[i][0]));
      EXPECT_LE(most, sigma < 15 ? 2.1 : 1.0) << sigma << ", " << size.width << " x " << size.height;
    }
  }
}

// Slightly wider blurs are slightly wider, also if they are computed in another way.
TEST(EffectProperty, ABlurIsNextToASlightlyWiderOne) {
  const Bitmap picture = Noise(97, 61, 24, false);
  for (const double sigma : {5.0, 10.0}) {
    const auto before = reference::Read(With(picture, "Blur", std::vector{std::nextafter(sigma, 0)}));
    const auto after = reference::Read(With(picture, "Blur", std::vector{sigma}));
    for (std::size_t i = 0; i < before.pixels.size(); ++i) {
      for (std::size_t c = 0; c < 3; ++c) ASSERT_NEAR(before.pixels[i][c], after.pixels[i][c], 2) << sigma;
    }
  }
}

// A free turn there and back by many small steps keeps the middle of a smooth picture in place.
TEST(EffectProperty, FreeTurnsKeepTheMiddle) {
  Bitmap picture(101, 101, 24);
  for (std::int32_t y = 0; y < 101; ++y) {
    const auto row = picture.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = static_cast<std::uint8_t>(i / 3 + static_cast<unsigned>(y));
  }
  const Bitmap turned = With(With(picture, "Rotate", std::vector{17.0}), "Rotate", std::vector{-17.0});
  const std::int32_t left = (turned.Width() - 101) / 2;
  const std::int32_t top = (turned.Height() - 101) / 2;
  for (std::int32_t y = 30; y < 70; ++y) {
    for (std::int32_t x = 30; x < 70; ++x) {
      ASSERT_NEAR(picture.PixelAt(x, y).red, turned.PixelAt(x + left, y + top).red, 3);
    }
  }
}

// Clockwise: what was at the top is at the right.
TEST(EffectProperty, TurnsClockwise) {
  Bitmap picture(40, 20, 24);
  picture.MutableRow(0)[60] = 255;
  const Bitmap turned = With(picture, "Rotate");
  EXPECT_EQ(20, turned.Width());
  EXPECT_EQ(255, turned.PixelAt(19, 20).blue);
  Bitmap upper(41, 41, 8);
  for (std::int32_t y = 0; y < 10; ++y) std::ranges::fill(upper.MutableRow(y).subspan(10, 20), std::uint8_t{255});
  const Bitmap slanted = With(upper, "Rotate", std::vector{80.0});
  const std::int32_t middle = slanted.Width() / 2;
  EXPECT_EQ(255, slanted.PixelAt(middle + 15, middle).red);
  EXPECT_EQ(0, slanted.PixelAt(middle - 15, middle).red);
}

TEST(EffectProperty, OtsuPartsTwoHeaps) {
  Bitmap picture(100, 10, 8);
  for (std::int32_t y = 0; y < 10; ++y) {
    for (std::size_t x = 0; x < 100; ++x) {
      picture.MutableRow(y)[x] = static_cast<std::uint8_t>(x < 20 ? 60 + x % 7 : 200 + x % 9);
    }
  }
  const Bitmap result = With(picture, "Threshold");
  for (std::int32_t x = 0; x < 100; ++x) EXPECT_EQ(x < 20 ? 0 : 255, result.PixelAt(x, 3).red);
}

TEST(EffectProperty, DitherKeepsTheMeanBrightness) {
  for (const int level : {0, 10, 64, 127, 128, 200, 250, 255}) {
    Bitmap picture(200, 200, 8);
    for (std::int32_t y = 0; y < 200; ++y) std::ranges::fill(picture.MutableRow(y), static_cast<std::uint8_t>(level));
    double sum = 0;
    for (const reference::Pixel& p : reference::Read(With(picture, "Dither")).pixels) sum += p[0];
    EXPECT_NEAR(level, sum / 40000, 1.5);
  }
}

// A palette of means: a large area of one colour keeps it, whatever else there is.
TEST(EffectProperty, FewerBitsKeepTheColourOfAnArea) {
  Bitmap picture = Noise(400, 300, 24);
  for (std::int32_t y = 20; y < 300; ++y) {
    const auto row = picture.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i)
      row[i] = static_cast<std::uint8_t>(i % 3 == 0 ? 77 : i % 3 == 1 ? 133 : 206);
  }
  for (int i = 0; i < 2; ++i) {
    picture = With(picture, "DecreaseBpp");
    EXPECT_NEAR(77, picture.PixelAt(200, 200).blue, 1);
    EXPECT_NEAR(133, picture.PixelAt(200, 200).green, 1);
    EXPECT_NEAR(206, picture.PixelAt(200, 200).red, 1);
  }
}

// Lighten takes as many steps as Darken.
TEST(EffectProperty, DarkenIsTheWayBackFromLighten) {
  const Bitmap picture = Flat(24, 128);
  for (int halves = 0; halves <= 98; ++halves) {
    const double percent = halves / 2.0;
    const Bitmap lighter = With(picture, "Lighten", std::vector{percent});
    EXPECT_TRUE(SamePicture(picture, With(lighter, "Darken", std::vector{percent}))) << percent;
  }
}

// A raised area: its side toward the light is brighter.
TEST(EffectProperty, EmbossHasItsLightAtTheUpperLeft) {
  Bitmap picture = Flat(8, 100);
  for (std::int32_t y = 8; y < 16; ++y) std::ranges::fill(picture.MutableRow(y).subspan(10, 12), std::uint8_t{120});
  const Bitmap relief = With(picture, "Emboss");
  EXPECT_EQ(140, relief.PixelAt(9, 7).red) << "the upper left corner, whose one neighbour counts twice";
  EXPECT_EQ(160, relief.PixelAt(15, 7).red) << "above";
  EXPECT_EQ(160, relief.PixelAt(9, 12).red) << "to the left";
  EXPECT_EQ(40, relief.PixelAt(15, 16).red) << "below";
  EXPECT_EQ(40, relief.PixelAt(22, 12).red) << "to the right";
  EXPECT_EQ(60, relief.PixelAt(22, 16).red) << "the lower right corner";
}

}  // namespace
}  // namespace kw
