// An effect whose result goes back to the depth of the page gives what its procedure and the conversion give, whichever
// way it takes; and a picture that shares its pixels becomes what one alone becomes, while the other stays.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "picture/Depth.h"
#include "picture/effects/Effect.h"
#include "picture/effects/ParallelRows.h"
#include "tests/picture/Scratch.h"

namespace kw {
namespace {

struct Size {
  std::int32_t width;
  std::int32_t height;
};

// Around the ends of bytes, of vectors and of the rows' alignment; single rows and columns.
std::vector<Size> Sizes() {
  std::vector<Size> sizes{{1, 1}, {2, 2}, {1, 40}, {3, 7}};
  for (const std::int32_t width : {7, 8, 9, 15, 16, 17, 31, 33, 63, 64, 65, 127, 129, 200}) {
    sizes.push_back({width, 1});
    sizes.push_back({width, 11});
  }
  return sizes;
}

// Runs `work` on one thread and on several, however little there is to do.
template <typename Work>
void OnThreads(const Work& work) {
  SetLeastWork(1);
  for (const unsigned threads : {1U, 3U}) {
    SetMostThreads(threads);
    work();
  }
  SetMostThreads(0);
  SetLeastWork(0);
}

// One bit by its own rule, pixel by pixel: two colours stay, in the order in which they occur; more become black and
// white.
Bitmap PlainBits(const Bitmap& picture) {
  std::vector<Rgb> colours;
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    for (std::int32_t x = 0; x < picture.Width(); ++x) {
      const Rgb colour = picture.PixelAt(x, y);
      if (std::ranges::find(colours, colour) == colours.end()) colours.push_back(colour);
    }
  }
  Bitmap bits(picture.Width(), picture.Height(), 1);
  bits.SetResolution(picture.HorizontalResolution(), picture.VerticalResolution());
  if (colours.size() <= 2) bits.SetPalette(colours);
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto row = bits.MutableRow(y);
    for (std::int32_t x = 0; x < picture.Width(); ++x) {
      const Rgb colour = picture.PixelAt(x, y);
      const bool isOne = colours.size() <= 2 ? !(colour == colours[0]) : Luma(colour) > 128;
      const auto column = static_cast<std::size_t>(x);
      if (isOne) row[column / 8] = static_cast<std::uint8_t>(row[column / 8] | 0x80U >> column % 8);
    }
  }
  return bits;
}

// The bits behind the last pixel count, too: they would be written to files.
testing::AssertionResult IsTheSame(const Bitmap& expected, const Bitmap& result) {
  if (!SamePicture(expected, result)) return testing::AssertionFailure() << "another picture";
  if (expected.HorizontalResolution() != result.HorizontalResolution() ||
      expected.VerticalResolution() != result.VerticalResolution()) {
    return testing::AssertionFailure() << "another resolution";
  }
  for (std::int32_t y = 0; y < expected.Height(); ++y) {
    if (!std::ranges::equal(expected.Row(y), result.Row(y))) return testing::AssertionFailure() << "other bits behind";
  }
  return testing::AssertionSuccess();
}

std::vector<std::vector<double>> ValuesFor(const Effect& effect) {
  std::vector<std::vector<double>> values{StandardValues(effect)};
  if (effect.command == "Sharpen" || effect.command == "Emboss") {
    for (const double percent : {0.0, 13.0, 400.0}) values.push_back({percent});
  }
  if (effect.command == "Blur") {
    for (const double sigma : {0.01, 0.4, 1.5, 2.9, 6.0}) values.push_back({sigma});
  }
  return values;
}

void ExpectKept(const Bitmap& picture, const std::string& what) {
  for (const Effect& effect : Effects()) {
    if (effect.keepingDepth == nullptr) continue;
    for (const auto& values : ValuesFor(effect)) {
      Bitmap expected = picture;
      ApplyEffect(effect, expected, values);
      const bool isPlain = picture.BitsPerPixel() == 1 && expected.BitsPerPixel() == 8;
      expected = isPlain ? PlainBits(expected) : ToDepth(expected, picture.BitsPerPixel());
      const std::string name = std::string(effect.command) + " by " + (values.empty() ? "" : std::to_string(values[0]));
      OnThreads([&] {
        Bitmap result = picture;
        ApplyEffectKeepingDepth(effect, result, values);
        if (result.BitsPerPixel() != picture.BitsPerPixel()) result = ToDepth(result, picture.BitsPerPixel());
        EXPECT_TRUE(IsTheSame(expected, result)) << name << " of " << what;
        Bitmap alone = picture;
        alone.MutableRow(0);
        ApplyEffectKeepingDepth(effect, alone, values);
        if (alone.BitsPerPixel() != picture.BitsPerPixel()) alone = ToDepth(alone, picture.BitsPerPixel());
        EXPECT_TRUE(IsTheSame(expected, alone)) << name << " of " << what << ", alone";
      });
    }
  }
}

const std::vector<std::vector<Rgb>>& Palettes() {
  static const std::vector<std::vector<Rgb>> palettes{{{0, 0, 0}, {255, 255, 255}},
                                                      {{255, 255, 255}, {0, 0, 0}},
                                                      {{40, 40, 40}, {0, 0, 0}},
                                                      {{200, 200, 200}, {255, 255, 255}},
                                                      {{128, 128, 128}, {129, 129, 129}},
                                                      {{129, 129, 129}, {128, 128, 128}},
                                                      {{77, 77, 77}, {77, 77, 77}},
                                                      {{255, 255, 255}},
                                                      {},
                                                      {{0, 0, 255}, {255, 255, 255}}};
  return palettes;
}

std::string Named(std::size_t palette, const Size& size) {
  return "palette " + std::to_string(palette) + ", " + std::to_string(size.width) + " x " + std::to_string(size.height);
}

TEST(KeptDepth, OfBitsIsThatOfBothSteps) {
  for (std::size_t i = 0; i < Palettes().size(); ++i) {
    for (const Size& size : Sizes()) {
      // All sizes for the usual palette.
      if (i > 0 && size.width % 32 != 1) continue;
      Bitmap picture = Noise(size.width, size.height, 1);
      picture.SetPalette(Palettes()[i]);
      picture.SetResolution(300, 200);
      ExpectKept(picture, Named(i, size));
    }
  }
}

// Paper, ink, and a page on which ink comes late: its first pixels alone do not say what its colours are.
TEST(KeptDepth, OfBlankBitsIsThatOfBothSteps) {
  for (std::size_t i = 0; i < Palettes().size(); ++i) {
    const Size size{75, 40};
    Bitmap picture(size.width, size.height, 1);
    picture.SetPalette(Palettes()[i]);
    ExpectKept(picture, Named(i, size) + ", zeros");
    picture.MutableRow(35)[4] = 0x10;
    ExpectKept(picture, Named(i, size) + ", a dot");
    for (std::int32_t y = 0; y < size.height; ++y) std::ranges::fill(picture.MutableRow(y), std::uint8_t{0xFF});
    ExpectKept(picture, Named(i, size) + ", ones");
    picture.MutableRow(0)[9] = 0xDF;
    ExpectKept(picture, Named(i, size) + ", a hole in the corner");
  }
}

TEST(KeptDepth, OfOtherDepthsIsThatOfBothSteps) {
  for (const int depth : {4, 8, 32}) ExpectKept(Noise(33, 11, depth), std::to_string(depth) + " bits");
  for (const Size& size : Sizes()) {
    if (size.height != 11 || size.width == 33) ExpectKept(Noise(size.width, size.height, 24), Named(0, size));
  }
}

TEST(KeptDepth, IsThatOfThePicture) {
  for (const char* const command : {"Blur", "Edge", "Emboss", "Sharpen", "Soften"}) {
    Bitmap picture = FaxPage(100, 60);
    ApplyEffectKeepingDepth(*FindEffect(command), picture, StandardValues(*FindEffect(command)));
    EXPECT_EQ(1, picture.BitsPerPixel()) << command;
  }
  Bitmap colours = Noise(20, 10, 24);
  ApplyEffectKeepingDepth(*FindEffect("GrayScale"), colours, {});
  EXPECT_EQ(24, colours.BitsPerPixel());
}

TEST(KeptDepth, ChecksWhatApplyEffectChecks) {
  const Effect& sharpen = *FindEffect("Sharpen");
  Bitmap picture = FaxPage(100, 60);
  EXPECT_EQ(5, ErrorOf([&] { ApplyEffectKeepingDepth(sharpen, picture, std::vector{401.0}); }));
  Bitmap none;
  EXPECT_EQ(91, ErrorOf([&] { ApplyEffectKeepingDepth(sharpen, none, std::vector{100.0}); }));
  ReadLimits limits;
  limits.pageMemory = 6000;  // less than the page has in 8 bits
  EXPECT_EQ(7, ErrorOf([&] { ApplyEffectKeepingDepth(sharpen, picture, std::vector{100.0}, limits); }));
  EXPECT_TRUE(SamePicture(FaxPage(100, 60), picture));
}

void ExpectTheSameOfShared(const Bitmap& picture, const Effect& effect, std::span<const double> values) {
  Bitmap alone = picture;
  alone.MutableRow(0);
  ApplyEffect(effect, alone, values);
  Bitmap shared = picture;
  shared.MutableRow(0);
  const Bitmap holder = shared;
  ApplyEffect(effect, shared, values);
  EXPECT_TRUE(SamePicture(alone, shared)) << effect.command << " of " << picture.BitsPerPixel() << " bits";
  EXPECT_TRUE(SamePicture(picture, holder)) << effect.command << " of " << picture.BitsPerPixel() << " bits";
}

// What has pixels of its own is changed in place; what shares them is not.
TEST(SharedPixels, StayAndTheResultIsTheSame) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    for (const Size& size : {Size{1, 1}, Size{1, 40}, Size{65, 1}, Size{33, 12}, Size{130, 7}}) {
      for (const bool isColoured : {false, true}) {
        const Bitmap picture = Noise(size.width, size.height, depth, isColoured);
        OnThreads([&] {
          for (const Effect& effect : Effects()) {
            // Its result has other pixels in any case.
            if (effect.procedure == nullptr || effect.command == "Resize") continue;
            ExpectTheSameOfShared(picture, effect, StandardValues(effect));
          }
          ExpectTheSameOfShared(picture, *FindEffect("Blur"), std::vector{10.0});
          ExpectTheSameOfShared(picture, *FindEffect("Rotate"), std::vector{180.0});
        });
      }
    }
  }
}

TEST(TwoColours, BecomeBitsInTheOrderInWhichTheyOccur) {
  std::minstd_rand random(7);
  for (const Size& size : Sizes()) {
    for (int turn = 0; turn < 12; ++turn) {
      // Entries of one colour, and indices without an entry.
      Bitmap picture(size.width, size.height, 8);
      if (turn % 3 == 1) picture.SetPalette({{9, 9, 9}, {200, 0, 0}, {9, 9, 9}});
      if (turn % 3 == 2) picture.SetPalette({{0, 0, 0}, {200, 0, 0}});
      const unsigned colours = 1U + static_cast<unsigned>(turn) % 4;
      const unsigned step = turn % 3 == 0 ? 60 : 1;
      for (std::int32_t y = 0; y < size.height; ++y) {
        for (auto& index : picture.MutableRow(y)) {
          index = static_cast<std::uint8_t>(((random() >> 8U) % colours) * step);
        }
      }
      OnThreads(
          [&] { EXPECT_TRUE(IsTheSame(PlainBits(picture), ToDepth(picture, 1))) << turn << ", " << Named(0, size); });
    }
  }
}

}  // namespace
}  // namespace kw
