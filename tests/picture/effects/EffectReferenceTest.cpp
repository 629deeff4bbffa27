// Every effect against the plain reference, bit for bit.

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <ostream>
#include <string>
#include <vector>

#include "picture/effects/Effect.h"
#include "picture/effects/ParallelRows.h"
#include "tests/picture/Scratch.h"
#include "tests/picture/effects/Reference.h"

namespace kw {
namespace {

struct Case {
  std::string command;
  std::vector<double> values;
};

std::ostream& operator<<(std::ostream& out, const Case& test) {
  out << test.command;
  for (const double value : test.values) out << ' ' << value;
  return out;
}

class EffectReference : public testing::TestWithParam<Case> {
protected:
  static void Check(const Bitmap& picture) {
    const Case& test = GetParam();
    Bitmap result = picture;
    ApplyEffect(*FindEffect(test.command), result, test.values);
    const auto expected = reference::Expected(test.command, picture, test.values);
    const auto got = reference::Read(result);
    if (expected == got) return;
    ASSERT_EQ(expected.bitsPerPixel, got.bitsPerPixel);
    ASSERT_EQ(expected.width, got.width);
    ASSERT_EQ(expected.height, got.height);
    for (std::int32_t y = 0; y < got.height; ++y) {
      for (std::int32_t x = 0; x < got.width; ++x) {
        ASSERT_EQ(expected.At(x, y), got.At(x, y)) << picture.Width() << " x " << picture.Height() << " x "
                                                   << picture.BitsPerPixel() << " at " << x << ", " << y;
      }
    }
    FAIL() << "the pictures differ";
  }
};

TEST_P(EffectReference, AllSmallSizes) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    for (std::int32_t width = 1; width <= 17; ++width) {
      for (std::int32_t height = 1; height <= 17; ++height) {
        ASSERT_NO_FATAL_FAILURE(Check(Noise(width, height, depth)));
      }
    }
  }
}

TEST_P(EffectReference, GreyPalettes) {
  for (const int depth : {1, 4, 8}) {
    for (std::int32_t width = 1; width <= 17; ++width) {
      ASSERT_NO_FATAL_FAILURE(Check(Noise(width, 18 - width, depth, false)));
      Bitmap backwards = Noise(width, 5, depth, false);
      const auto palette = backwards.Palette();
      backwards.SetPalette({palette.rbegin(), palette.rend()});
      ASSERT_NO_FATAL_FAILURE(Check(backwards));
    }
  }
}

TEST_P(EffectReference, PalettesWithoutAllEntries) {
  for (const int depth : {1, 4, 8}) {
    Bitmap picture = Noise(13, 7, depth);
    picture.SetPalette({Rgb{200, 100, 50}});
    ASSERT_NO_FATAL_FAILURE(Check(picture));
    picture.SetPalette({});
    ASSERT_NO_FATAL_FAILURE(Check(picture));
  }
}

TEST_P(EffectReference, WidthsAroundThoseOfWideRegisters) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    for (const std::int32_t width : {21, 22, 31, 32, 33, 42, 43, 63, 64, 65, 85, 86, 127, 128, 129, 171, 512, 513}) {
      ASSERT_NO_FATAL_FAILURE(Check(Noise(width, 3, depth)));
    }
    for (const std::int32_t height : {31, 64, 65, 129}) {
      ASSERT_NO_FATAL_FAILURE(Check(Noise(3, height, depth)));
    }
  }
}

TEST_P(EffectReference, SmoothPictures) {
  for (const int depth : {24, 32}) {
    Bitmap picture(67, 9, depth);
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
      const auto row = picture.MutableRow(y);
      for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = static_cast<std::uint8_t>(i + 3 * static_cast<std::size_t>(y));
    }
    ASSERT_NO_FATAL_FAILURE(Check(picture));
  }
}

// Runs of one colour, of any length and at any place, among others.
TEST_P(EffectReference, PartlyFlatPictures) {
  for (const int depth : {8, 24}) {
    Bitmap picture = Noise(131, 23, depth, false);
    const auto size = static_cast<std::size_t>(depth / 8);
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
      const auto row = picture.MutableRow(y);
      const std::size_t begin = static_cast<std::size_t>(y) % 5 * size;
      for (std::size_t x = begin; x < begin + static_cast<std::size_t>(5 * y) * size; ++x) {
        row[x] = static_cast<std::uint8_t>(200 + y % 3);
      }
    }
    ASSERT_NO_FATAL_FAILURE(Check(picture));
  }
}

TEST_P(EffectReference, HiddenPixels) {
  for (const unsigned share : {2U, 5U, 40U}) {
    for (const std::int32_t width : {1, 2, 3, 9, 33, 70}) {
      Bitmap picture = Noise(width, 11, 32);
      unsigned number = share;
      for (std::int32_t y = 0; y < picture.Height(); ++y) {
        const auto row = picture.MutableRow(y);
        for (std::size_t i = 3; i < row.size(); i += 4) {
          number = number * 1103515245U + 12345U;
          if ((number >> 16U) % share == 0) row[i] = 0;
        }
      }
      ASSERT_NO_FATAL_FAILURE(Check(picture));
    }
  }
}

TEST_P(EffectReference, BlackAndWhiteExtremes) {
  for (const int depth : {24, 32}) {
    for (const unsigned period : {1U, 2U, 3U, 5U}) {
      Bitmap picture(37, 9, depth);
      for (std::int32_t y = 0; y < picture.Height(); ++y) {
        const auto row = picture.MutableRow(y);
        const auto size = static_cast<std::size_t>(depth / 8);
        for (std::size_t i = 0; i < row.size(); ++i) {
          const bool dark = (i / size / period + static_cast<unsigned>(y) / period) % 2 == 1;
          row[i] = i % size == 3 || !dark ? 255 : 0;
        }
      }
      ASSERT_NO_FATAL_FAILURE(Check(picture));
    }
  }
}

// As on older processors.
TEST_P(EffectReference, EverySimdTarget) {
  const auto use = [](std::int64_t targets) {
    hwy::SetSupportedTargetsForTest(targets);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  };
  std::int64_t targets = hwy::SupportedTargets();
  for (; targets != 0; targets &= targets - 1) {
    use(targets);
    for (const int depth : {1, 4, 8, 24, 32}) {
      for (const std::int32_t width : {1, 7, 16, 31, 33, 65, 131, 259}) {
        ASSERT_NO_FATAL_FAILURE(Check(Noise(width, 5, depth, false))) << hwy::TargetName(targets & -targets);
      }
    }
  }
  use(0);
}

// Work so little is done in several bands, on several threads.
TEST_P(EffectReference, RowBands) {
  SetLeastWork(256);
  SetMostThreads(3);
  for (const int depth : {1, 8, 24}) {
    const std::int32_t width = depth == 1 ? 610 : 173;
    const std::int32_t height = depth == 1 ? 290 : depth == 8 ? 190 : 160;
    const Bitmap picture = Noise(width, height, depth, false);
    const Case& test = GetParam();
    const Effect& effect = *FindEffect(test.command);
    Bitmap together = picture;
    ApplyEffect(effect, together, test.values);
    SetMostThreads(1);
    Bitmap alone = picture;
    ApplyEffect(effect, alone, test.values);
    SetMostThreads(3);
    EXPECT_TRUE(SamePicture(alone, together)) << depth;
  }
  SetMostThreads(0);
  SetLeastWork(0);
}

INSTANTIATE_TEST_SUITE_P(
    All, EffectReference,
    testing::Values(Case{"Blur", {1.5}}, Case{"Blur", {0.3}}, Case{"Blur", {4.9}}, Case{"Blur", {5}},
                    Case{"Blur", {12}}, Case{"Blur", {0}}, Case{"Blur", {0.2}}, Case{"Blur", {1e-200}},
                    Case{"DecreaseBpp", {}}, Case{"IncreaseBpp", {}}, Case{"Colorize", {30, 50}},
                    Case{"Colorize", {0, 100}}, Case{"Colorize", {217.5, 33}}, Case{"Colorize", {360, 0}},
                    Case{"Colorize", {120, 99.7}}, Case{"Contrast", {20}}, Case{"Contrast", {-100}},
                    Case{"Contrast", {300}}, Case{"Darken", {10}}, Case{"Darken", {100}}, Case{"Dilate", {}},
                    Case{"Dither", {}}, Case{"Edge", {}}, Case{"Emboss", {100}}, Case{"Emboss", {400}},
                    Case{"Erode", {}}, Case{"GrayScale", {}}, Case{"HorizontalFlip", {}}, Case{"Invert", {}},
                    Case{"Lighten", {10}}, Case{"Lighten", {33.3}}, Case{"Resize", {50, 0, 0, 0}},
                    Case{"Resize", {30, 0, 0, 0}}, Case{"Resize", {170, 0, 0, 0}}, Case{"Resize", {250, 0, 0, 1}},
                    Case{"Resize", {50, 9, 0, 0}}, Case{"Resize", {50, 0, 7, 1}}, Case{"Resize", {50, 12, 0, 1}},
                    Case{"Resize", {100, 5, 11, 0}}, Case{"Rotate", {90}}, Case{"Rotate", {180}}, Case{"Rotate", {270}},
                    Case{"Rotate", {-90}}, Case{"Rotate", {360}}, Case{"Rotate", {30}}, Case{"Rotate", {-1.25}},
                    Case{"Rotate", {135}}, Case{"Sharpen", {100}}, Case{"Sharpen", {400}}, Case{"Sharpen", {12.5}},
                    Case{"Soften", {}}, Case{"Threshold", {0}}, Case{"Threshold", {1}}, Case{"Threshold", {200}},
                    Case{"VerticalFlip", {}}),
    [](const testing::TestParamInfo<Case>& test) { return test.param.command + std::to_string(test.index); });

}  // namespace
}  // namespace kw
