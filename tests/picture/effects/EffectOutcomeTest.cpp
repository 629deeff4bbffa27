// Effects on pages as users have them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "picture/Depth.h"
#include "picture/PictureDocument.h"
#include "picture/effects/Effect.h"
#include "tests/data/TestData.h"
#include "tests/picture/Scratch.h"
#include "tests/picture/effects/Reference.h"

namespace kw {
namespace {

// A form: rules of one pixel, some of them crossing.
Bitmap FormPage(bool blackIsOne) {
  Bitmap page(200, 120, 1);
  if (blackIsOne) page.SetPalette({{255, 255, 255}, {0, 0, 0}});
  for (std::int32_t y = 0; y < page.Height(); ++y) {
    const auto row = page.MutableRow(y);
    for (std::size_t x = 0; x < 200; ++x) {
      const bool isRule = y == 20 || y == 51 || y == 90 || (x == 30 && y >= 20) || x == 77 || x == 160;
      if (isRule == blackIsOne) row[x / 8] = static_cast<std::uint8_t>(row[x / 8] | (0x80U >> (x % 8)));
    }
  }
  return page;
}

// The command as the editor runs it, which brings a page back to its depth.
Bitmap OnPage(const Bitmap& page, const char* command, const std::vector<double>& values = {}) {
  PictureDocument engine;
  engine.Replace(page);
  const Effect& effect = *FindEffect(command);
  std::int16_t bits = engine.BitsPerPixel();
  engine.Apply(effect, values.empty() ? StandardValues(effect) : values);
  engine.ConvertToBitsPerPixel(bits);
  return engine.Current();
}

TEST(BlackAndWhitePage, KeepsItsThinRulesWhenItIsSoftenedOrBlurred) {
  for (const bool blackIsOne : {false, true}) {
    const auto before = reference::Read(FormPage(blackIsOne));
    EXPECT_EQ(before.pixels, reference::Read(OnPage(FormPage(blackIsOne), "Soften")).pixels);
    EXPECT_EQ(before.pixels, reference::Read(OnPage(FormPage(blackIsOne), "Blur")).pixels);
  }
}

TEST(BlackAndWhitePage, KeepsItsThinRulesWhenItIsHalved) {
  const Bitmap half = OnPage(FormPage(true), "Resize");
  ASSERT_EQ(100, half.Width());
  EXPECT_EQ(1, half.BitsPerPixel());
  for (std::int32_t y = 0; y < 60; ++y) {
    for (std::int32_t x = 0; x < 100; ++x) {
      const bool isRule = y == 10 || y == 25 || y == 45 || (x == 15 && y >= 10) || x == 38 || x == 80;
      ASSERT_EQ(half.PixelAt(x, y).red, isRule ? 0 : 255) << x << ", " << y;
    }
  }
}

TEST(BlackAndWhitePage, IsBlurredAsMuchAsTheUserSays) {
  const Bitmap page = FormPage(true);
  const auto blank = reference::Read(OnPage(page, "Blur", {1.5}));
  EXPECT_EQ(255, blank.At(100, 20)[0]) << "this is wider than a rule of one pixel";
  EXPECT_EQ(reference::Read(OnPage(page, "Blur", {0.8})), reference::Read(OnPage(page, "Blur")));
  const Bitmap grey = Noise(40, 30, 8, false);
  EXPECT_TRUE(SamePicture(OnPage(grey, "Blur", {1.5}), OnPage(grey, "Blur"))) << "other pages";
}

TEST(HiddenColours, DoNotShowUpInWhatIsFiltered) {
  const auto picture = [](std::uint8_t hidden) {
    Bitmap made = Noise(40, 30, 32);
    for (std::int32_t y = 0; y < made.Height(); ++y) {
      const auto row = made.MutableRow(y);
      for (std::size_t x = 0; x < 40; ++x) {
        const bool isHidden = (x / 5 + static_cast<std::size_t>(y) / 3) % 2 == 1 || x == 17;
        row[4 * x + 3] = isHidden ? 0 : static_cast<std::uint8_t>(row[4 * x + 3] | 1U);
        if (isHidden) std::ranges::fill(row.subspan(4 * x, 3), hidden);
      }
    }
    return made;
  };
  for (const char* const command :
       {"Blur", "Soften", "Sharpen", "Edge", "Emboss", "Dilate", "Erode", "Resize", "Rotate"}) {
    Bitmap results[] = {picture(0), picture(255)};
    const std::vector values =
        command == std::string("Rotate") ? std::vector{30.0} : StandardValues(*FindEffect(command));
    for (Bitmap& result : results) ApplyEffect(*FindEffect(command), result, values);
    const auto one = reference::Read(results[0]);
    const auto other = reference::Read(results[1]);
    for (std::size_t i = 0; i < one.pixels.size(); ++i) {
      ASSERT_TRUE(one.pixels[i] == other.pixels[i] || (one.pixels[i][3] == 0 && other.pixels[i][3] == 0)) << command;
    }
  }
}

TEST(Resizing, WithOneSideGivenKeepsTheProportions) {
  struct Case {
    double percent, width, height;
    std::int32_t newWidth, newHeight;
  };
  for (const Case& test : {Case{50, 80, 0, 80, 120}, Case{50, 0, 30, 20, 30}, Case{300, 1, 0, 1, 2},
                           Case{50, 0, 1, 1, 1}, Case{50, 0, 0, 100, 150}, Case{50, 70, 11, 70, 11}}) {
    Bitmap picture = Noise(200, 300, 8);
    ApplyEffect(*FindEffect("Resize"), picture, std::vector{test.percent, test.width, test.height, 0.0});
    EXPECT_EQ(test.newWidth, picture.Width()) << test.width << ", " << test.height;
    EXPECT_EQ(test.newHeight, picture.Height()) << test.width << ", " << test.height;
  }
}

TEST(Resizing, OfAStripToALargeWidthIsTooLarge) {
  Bitmap strip(1, 30000, 1);
  const Bitmap before = strip;
  EXPECT_EQ(NumberOf(ErrorNumber::OutOfMemory), ErrorOf([&] {
              ApplyEffect(*FindEffect("Resize"), strip, std::vector{50.0, 100000.0, 0.0, 0.0});
            }));
  EXPECT_TRUE(SamePicture(before, strip));
}

// One lighter column shows the kernel itself.
TEST(Resizing, EnlargesWithTheKernelThatWasChosen) {
  Bitmap picture(31, 3, 8);
  for (std::int32_t y = 0; y < 3; ++y) {
    std::ranges::fill(picture.MutableRow(y), std::uint8_t{100});
    picture.MutableRow(y)[15] = 200;
  }
  const auto sinc = [](double x) { return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x); };
  const auto lanczos = [&](double x) { return std::fabs(x) < 3 ? sinc(x) * sinc(x / 3) : 0; };
  const auto cubic = [](double x) {
    const double t = std::fabs(x);
    if (t >= 2) return 0.0;
    return t < 1 ? 1 - 2.5 * t * t + 1.5 * t * t * t : 2 - 4 * t + 2.5 * t * t - 0.5 * t * t * t;
  };
  constexpr std::int32_t factor = 8;
  for (const double kernel : {0.0, 1.0}) {
    Bitmap large = picture;
    ApplyEffect(*FindEffect("Resize"), large, std::vector{100.0, 31.0 * factor, 3.0, kernel});
    for (std::int32_t x = 0; x < large.Width(); ++x) {
      const double place = (x + 0.5) / factor - 0.5;
      double sum = 0;
      for (int i = -4; i <= 4; ++i) {
        const double away = place - std::floor(place) - i;
        sum += kernel == 0 ? lanczos(away) : cubic(away);
      }
      const double share = (kernel == 0 ? lanczos(place - 15) : cubic(place - 15)) / sum;
      ASSERT_NEAR(100 + 100 * share, large.PixelAt(x, 1).red, 0.75) << kernel << " at " << x;
    }
  }
}

TEST(Resizing, ReducesToTheMeanOfEachArea) {
  const Bitmap picture = Noise(60, 40, 8, false);
  Bitmap small = picture;
  ApplyEffect(*FindEffect("Resize"), small, std::vector{50.0, 7.0, 9.0, 0.0});
  const auto covered = [](std::int32_t i, std::int32_t j, std::int32_t from, std::int32_t to) {
    const double step = 1.0 * from / to;
    return std::max(0.0, std::min((i + 1) * step, j + 1.0) - std::max(i * step, 1.0 * j));
  };
  for (std::int32_t y = 0; y < 9; ++y) {
    for (std::int32_t x = 0; x < 7; ++x) {
      double sum = 0;
      double area = 0;
      for (std::int32_t line = 0; line < 40; ++line) {
        for (std::int32_t column = 0; column < 60; ++column) {
          const double part = covered(y, line, 40, 9) * covered(x, column, 60, 7);
          area += part;
          sum += part * picture.PixelAt(column, line).red;
        }
      }
      ASSERT_NEAR(sum / area, small.PixelAt(x, y).red, 0.75) << x << ", " << y;
    }
  }
}

// The mean square of the differences in a channel.
double ErrorBetween(const Bitmap& a, const Bitmap& b) {
  const auto one = reference::Read(a);
  const auto other = reference::Read(b);
  double sum = 0;
  for (std::size_t i = 0; i < one.pixels.size(); ++i) {
    for (std::size_t c = 0; c < 3; ++c) sum += std::pow(one.pixels[i][c] - other.pixels[i][c], 2);
  }
  return sum / static_cast<double>(3 * one.pixels.size());
}

// A palette made for the picture is much nearer to it than one that takes no look at it: six steps of each channel in
// 8 bits, and in 4 bits the sixteen colours of old screens.
TEST(MadePalette, IsNearerToAPhotographThanAFixedOne) {
  PictureDocument engine;
  ASSERT_TRUE(engine.Load(FromFilesystemPath(TestData("colour.jpg"))));
  const Bitmap photograph = engine.Current();
  Bitmap steps = photograph;
  Bitmap screen = photograph;
  for (std::int32_t y = 0; y < photograph.Height(); ++y) {
    for (std::uint8_t& value : steps.MutableRow(y)) value = static_cast<std::uint8_t>((value + 25) / 51 * 51);
    for (std::uint8_t& value : screen.MutableRow(y)) value = value < 128 ? 0 : 255;
  }
  EXPECT_LT(ErrorBetween(photograph, ToDepth(photograph, 8)), ErrorBetween(photograph, steps) / 8);
  EXPECT_LT(ErrorBetween(photograph, ToDepth(photograph, 4)), ErrorBetween(photograph, screen) / 8);
}

// Seen from afar, which is what error diffusion is for: means of eight by eight pixels.
TEST(Dithering, IsNearerToAPhotographThanAThreshold) {
  PictureDocument engine;
  ASSERT_TRUE(engine.Load(FromFilesystemPath(TestData("colour.jpg"))));
  const auto fromAfar = [](Bitmap picture) {
    if (picture.BitsPerPixel() == 24) ApplyEffect(*FindEffect("GrayScale"), picture);
    ApplyEffect(*FindEffect("Resize"), picture, std::vector{12.5, 0.0, 0.0, 0.0});
    return picture;
  };
  Bitmap dithered = engine.Current();
  Bitmap cut = engine.Current();
  ApplyEffect(*FindEffect("Dither"), dithered);
  ApplyEffect(*FindEffect("Threshold"), cut);
  const Bitmap expected = fromAfar(engine.Current());
  EXPECT_LT(ErrorBetween(expected, fromAfar(dithered)), 15);
  EXPECT_LT(ErrorBetween(expected, fromAfar(dithered)), ErrorBetween(expected, fromAfar(cut)) / 50);
}

}  // namespace
}  // namespace kw
