#include "picture/effects/Preview.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "components/base/RunTimeError.h"
#include "picture/Depth.h"
#include "tests/picture/Scratch.h"

namespace kw {
namespace {

constexpr PictureSize Room{100, 80};

// Light below, dark above, and a white margin at the left, so that a level found on the part in the middle is another
// one than that of the whole.
Bitmap Page(std::int32_t width, std::int32_t height, int depth) {
  Bitmap page = Noise(width, height, 24);
  const std::size_t margin = 3 * (static_cast<std::size_t>(width) / 10);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = page.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = static_cast<std::uint8_t>(i < margin ? 255 : row[i] / 4 + 100 * y / height);
    }
  }
  return ToDepth(page, depth);
}

Bitmap Made(const Effect& effect, const Bitmap& page, const std::vector<double>& values) {
  Bitmap result = page;
  ApplyEffect(effect, result, values);
  return ToDepth(result, page.BitsPerPixel());
}

Bitmap ReducedTo(const Bitmap& picture, double width, double height) {
  Bitmap result = picture;
  ApplyEffect(*FindEffect("Resize"), result, std::vector{100.0, width, height, 0.0});
  return result;
}

TEST(EffectPreview, OfAPictureThatFitsIsTheEffectInThePagesDepth) {
  for (const int depth : {1, 8, 24}) {
    const Bitmap page = Page(60, 40, depth);
    for (const char* const command : {"Colorize", "Rotate", "Threshold", "Resize", "Blur"}) {
      const Effect& effect = *FindEffect(command);
      const auto values = StandardValues(effect);
      const Bitmap shown = EffectPreview(effect, page, Room).Of(values);
      EXPECT_TRUE(SamePicture(Made(effect, page, values), shown)) << command << ' ' << depth;
    }
  }
}

// The preview shows the middle of the page as the command leaves it, only reduced.
TEST(EffectPreview, OfALargePageIsAPartOfWhatBecomesOfIt) {
  constexpr std::int32_t side = 1024;
  for (const int depth : {1, 8, 24}) {
    const Bitmap page = Page(1401, 1300, depth);
    const auto expect = [&](const char* command, const std::vector<double>& values) {
      const Effect& effect = *FindEffect(command);
      const Bitmap shown = EffectPreview(effect, page, Room).Of(values);
      EXPECT_TRUE(SamePicture(ReducedTo(MiddleOf(Made(effect, page, values), side), 80, 80), shown))
          << command << ' ' << depth;
    };
    expect("Colorize", {30, 50});
    expect("Threshold", {0});
    expect("Threshold", {90});
    expect("Invert", {});
  }
}

TEST(EffectPreview, OfWhatMovesPixelsIsAllOfThePage) {
  for (const int depth : {1, 8, 24}) {
    const Bitmap page = Page(1500, 1200, depth);
    const auto expect = [&](const char* command, const std::vector<double>& values, double width, double height) {
      const Effect& effect = *FindEffect(command);
      const Bitmap shown = EffectPreview(effect, page, Room).Of(values);
      EXPECT_TRUE(SamePicture(ReducedTo(Made(effect, page, values), width, height), shown)) << command << ' ' << depth;
    };
    expect("Rotate", {90}, 64, 80);
    expect("Resize", {50, 0, 0, 0}, 50, 40);
    expect("HorizontalFlip", {}, 100, 80);
  }
}

TEST(EffectPreview, OfABlackAndWhitePageShowsNoColourThatThePageCannotHave) {
  const Bitmap page = Page(1401, 1300, 1);
  const Bitmap shown = EffectPreview(*FindEffect("Colorize"), page, Room).Of(std::vector{120.0, 100.0});
  for (std::int32_t y = 0; y < shown.Height(); ++y) {
    for (std::int32_t x = 0; x < shown.Width(); ++x) {
      const Rgb colour = shown.PixelAt(x, y);
      ASSERT_TRUE(colour.red == colour.green && colour.green == colour.blue) << x << ", " << y;
    }
  }
}

TEST(EffectPreview, FitsIntoItsRoomAtAnyDepthAndForEveryEffect) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    const Bitmap picture = Noise(1640, 200, depth);
    for (const Effect& effect : Effects()) {
      const Bitmap shown = EffectPreview(effect, picture, Room).Of(StandardValues(effect));
      EXPECT_LE(shown.Width(), Room.width) << effect.command << depth;
      EXPECT_LE(shown.Height(), Room.height) << effect.command << depth;
      EXPECT_GT(shown.Width(), 0);
    }
  }
}

TEST(EffectPreview, OfAnotherSizeShowsItsShapeAndShare) {
  const Effect& resize = *FindEffect("Resize");
  const EffectPreview preview(resize, Noise(1000, 500, 24), Room);  // the page takes 100 by 50
  const auto size = [&](std::vector<double> values) {
    const Bitmap shown = preview.Of(values);
    return std::pair(shown.Width(), shown.Height());
  };
  EXPECT_EQ(size({50, 0, 0, 0}), std::pair(50, 25));
  EXPECT_EQ(size({100, 0, 0, 0}), std::pair(100, 50));
  EXPECT_EQ(size({300, 0, 0, 0}), std::pair(100, 50)) << "what is larger than the room fills it";
  EXPECT_EQ(size({100, 200, 0, 0}), std::pair(20, 10));
  EXPECT_EQ(size({100, 200, 500, 0}), std::pair(20, 50));
  EXPECT_EQ(size({100, 2000, 2000, 0}), std::pair(80, 80));
  EXPECT_EQ(size({100, 1, 1, 0}), std::pair(1, 1));
}

TEST(EffectPreview, OfWhatThePageCannotBecomeIsNone) {
  const EffectPreview preview(*FindEffect("Resize"), Noise(1000, 500, 24), Room);
  EXPECT_EQ(NumberOf(ErrorNumber::OutOfMemory), ErrorOf([&] {
              preview.Of(std::vector{100.0, 100000.0, 100000.0, 0.0});
            }));
}

TEST(EffectPreview, WithoutAPictureIsEmptyAndBadValuesAreRefused) {
  const Effect& rotate = *FindEffect("Rotate");
  const EffectPreview preview(rotate, {}, Room);
  EXPECT_TRUE(preview.Of(std::vector{90.0}).IsEmpty());
  EXPECT_THROW(preview.Of(std::vector{400.0}), RunTimeError);
}

TEST(MiddleOfAPicture, BeginsWithAByteAndKeepsPixelsPaletteAndResolution) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    Bitmap picture = Noise(67, 41, depth);
    picture.SetResolution(200, 100);
    const Bitmap part = MiddleOf(picture, 20);
    ASSERT_EQ(part.Width(), 20);
    ASSERT_EQ(part.Height(), 20);
    EXPECT_EQ(part.BitsPerPixel(), depth);
    EXPECT_EQ(part.HorizontalResolution(), 200);
    for (std::int32_t y = 0; y < 20; ++y) {
      for (std::int32_t x = 0; x < 20; ++x) ASSERT_EQ(part.PixelAt(x, y), picture.PixelAt(16 + x, 10 + y)) << depth;
    }
    EXPECT_TRUE(SamePicture(MiddleOf(picture, 67), picture));
    EXPECT_EQ(MiddleOf(picture, 50).Height(), 41);
  }
}

}  // namespace
}  // namespace kw
