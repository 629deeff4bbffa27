#include "scene/CanvasItems.h"

#include <gtest/gtest.h>

namespace kw::test {
namespace {

TEST(PreviewItem, LiesInTheMiddlePixelForPixelAtEveryScale) {
  PictureBox box("box");
  box.Move(12, 12, 240, 240);
  box.SetIsPreview(true);
  EXPECT_TRUE(ItemsOf(box).empty());
  box.SetPicture(Bitmap(41, 30, 24));
  for (const int dpi : {96, 120, 192}) {
    const std::vector<DisplayItem> items = ItemsOf(box, Scale(dpi));
    ASSERT_EQ(items.size(), 1U);
    const int room = 240 * dpi / 96;
    EXPECT_EQ(items[0].bounds.Width(), 41);
    EXPECT_EQ(items[0].bounds.Height(), 30);
    EXPECT_EQ(items[0].bounds.left, (room - 41) / 2);
    EXPECT_EQ(items[0].bounds.top, (room - 30) / 2);
    EXPECT_EQ(items[0].background, MakeColour(255, 255, 255)) << "below transparent pixels";
  }
}

TEST(PreviewItem, OfAnotherBoxIsItsPictureInItsCorner) {
  PictureBox box("box");
  box.SetPicture(Bitmap(41, 30, 24));
  const std::vector<DisplayItem> items = ItemsOf(box, Scale(192));
  EXPECT_EQ(items[0].bounds, (PixelRect{0, 0, 82, 60}));
  EXPECT_FALSE(items[0].background.has_value());
}

}  // namespace
}  // namespace kw::test
