#include "picture/effects/Preview.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "../Scratch.h"
#include "components/RunTimeError.h"

namespace kw {
namespace {

constexpr PictureSize Room{100, 80};

TEST(EffectPreview, OfAPictureThatFitsIsTheEffectItself) {
  const Bitmap picture = Noise(60, 40, 24);
  for (const char* const command : {"Colorize", "Rotate", "Threshold", "Resize", "Blur"}) {
    const Effect& effect = *FindEffect(command);
    Bitmap expected = picture;
    ApplyEffect(effect, expected);
    EXPECT_TRUE(SamePicture(expected, EffectPreview(effect, picture, Room).Of(StandardValues(effect)))) << command;
  }
}

TEST(EffectPreview, FitsIntoItsRoomAtAnyDepthAndForEveryEffect) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    const Bitmap picture = Noise(640, 200, depth);
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
  const EffectPreview preview(resize, Noise(1000, 500, 24), Room);  // the copy is 100 by 50
  const auto size = [&](std::vector<double> values) {
    const Bitmap shown = preview.Of(values);
    return std::pair(shown.Width(), shown.Height());
  };
  EXPECT_EQ(size({50, 0, 0, 0}), std::pair(50, 25));
  EXPECT_EQ(size({100, 0, 0, 0}), std::pair(100, 50));
  EXPECT_EQ(size({1000, 0, 0, 0}), std::pair(100, 50)) << "what is larger than the room fills it";
  EXPECT_EQ(size({100, 200, 0, 0}), std::pair(20, 50));
  EXPECT_EQ(size({100, 100000, 100000, 0}), std::pair(80, 80));
  EXPECT_EQ(size({100, 1, 1, 0}), std::pair(1, 1));
}

TEST(EffectPreview, WithoutAPictureIsEmptyAndBadValuesAreRefused) {
  const Effect& rotate = *FindEffect("Rotate");
  const EffectPreview preview(rotate, {}, Room);
  EXPECT_TRUE(preview.Of(std::vector{90.0}).IsEmpty());
  EXPECT_THROW(preview.Of(std::vector{400.0}), RunTimeError);
}

}  // namespace
}  // namespace kw
