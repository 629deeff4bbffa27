#include "drawing/Scale.h"

#include <gtest/gtest.h>

#include "scene/CanvasItems.h"

namespace kw {
namespace {

constexpr std::int32_t Dpis[] = {96, 110, 120, 144, 168, 192, 288};

TEST(Scale, AtNinetySixPixelsToTheInchNothingChanges) {
  const Scale scale;
  for (const std::int32_t at : {-700, -1, 0, 1, 33, 1023}) {
    EXPECT_EQ(scale.ToDevice(at), at);
    EXPECT_EQ(scale.ModelPixelAt(at), at);
    EXPECT_EQ(scale.ToModel(at), at);
  }
  EXPECT_EQ(scale.ToDevice(PixelRect{1, -2, 30, 44}), (PixelRect{1, -2, 30, 44}));
  EXPECT_EQ(scale.ToDevice(Font{.size = 8.25F}), Font{.size = 8.25F});
}

TEST(Scale, TheNearestEdgeCountsAndOfTwoTheFartherOne) {
  const Scale scale(144);
  EXPECT_EQ(scale.ToDevice(2), 3);
  EXPECT_EQ(scale.ToDevice(1), 2);
  EXPECT_EQ(scale.ToDevice(3), 5);
  EXPECT_EQ(scale.ToDevice(-1), -1);
  EXPECT_EQ(Scale(120).ToDevice(3), 4);
  EXPECT_EQ(Scale(120).ToDevice(5), 6);
}

TEST(Scale, AThirdThatIsStoredTooSmallIsNoReasonToRoundDown) {
  const Scale scale(144);
  EXPECT_EQ(scale.ToDevice(static_cast<double>(1.0F + 2 / 1.5F) - 1e-6), scale.ToDevice(1) + 2);
}

TEST(Scale, WhatMeetsInTheModelsMeetsOnTheDevice) {
  for (const std::int32_t dpi : Dpis) {
    const Scale scale(dpi);
    for (std::int32_t at = -50; at < 300; ++at) {
      const PixelRect left = scale.ToDevice(PixelRect{at - 7, 0, at, 10});
      const PixelRect right = scale.ToDevice(PixelRect{at, 0, at + 3, 10});
      EXPECT_EQ(left.right, right.left);
      EXPECT_GT(right.Width(), 0);
    }
  }
}

TEST(Scale, APixelOfTheDeviceShowsTheModelsPixelWhoseEdgesItLiesBetween) {
  for (const std::int32_t dpi : Dpis) {
    const Scale scale(dpi);
    for (std::int32_t at = -400; at < 900; ++at) {
      const std::int32_t shown = scale.ModelPixelAt(at);
      EXPECT_LE(scale.ToDevice(shown), at) << "at " << at << " of " << dpi;
      EXPECT_GT(scale.ToDevice(shown + 1), at) << "at " << at << " of " << dpi;
    }
  }
}

TEST(Scale, LengthsThatAreToBeSeenDoNotVanish) {
  EXPECT_EQ(Scale(144).LengthOnDevice(1), 2);
  EXPECT_EQ(Scale(192).LengthOnDevice(5), 10);
  EXPECT_EQ(Scale(30).LengthOnDevice(1), 1);
  EXPECT_EQ(Scale(192).LengthOnDevice(0), 0);
}

TEST(Scale, WhatIsNoNumberOfPixelsCountsAsNinetySix) {
  EXPECT_EQ(Scale(0).Dpi(), 96);
  EXPECT_EQ(Scale(-3).Dpi(), 96);
}

TEST(Scale, FarPlacesStayInRange) {
  const Scale scale(288);
  EXPECT_EQ(scale.ToDevice(1e300), 1 << 30);
  EXPECT_EQ(scale.ToDevice(-1e300), -(1 << 30));
}

class ItemsOfACanvas : public testing::Test {
protected:
  ItemsOfACanvas() {
    layer.SetContainer(&canvas);
    layer.Move(11, 21, 101, 31);
  }
  DisplayItem At(std::int32_t dpi) const { return ItemsOf(canvas, Scale(dpi)).back(); }

  PictureBox canvas{"canvas"};
  TransparentPicture layer{"layer"};
};

TEST_F(ItemsOfACanvas, PlacesAndTextsAreLarger) {
  layer.SetCaption("text");
  layer.SetTextFont({.size = 10});
  EXPECT_EQ(At(144).bounds, (PixelRect{17, 32, 168, 78}));
  EXPECT_EQ(At(192).bounds, (PixelRect{22, 42, 224, 104}));
  EXPECT_EQ(At(144).text->font.size, 15);
}

TEST_F(ItemsOfACanvas, FiguresAreDrawnInTheirLargerSizeWithWholeLines) {
  layer.SetFigure({.kind = FigureKind::Rectangle});
  layer.SetLineWidth(3);
  const Shape shape = *At(144).shape;
  EXPECT_EQ(shape.lineWidth, 5);
  EXPECT_EQ(shape.box, (Box{2.5, 2.5, 148.5, 43.5}));
  EXPECT_EQ(At(192).shape->lineWidth, 6);
}

TEST_F(ItemsOfACanvas, ALevelLineStaysLevel) {
  layer.SetFigure({.kind = FigureKind::Line});
  layer.SetLineWidth(3);
  for (const std::int32_t dpi : Dpis) {
    for (std::int32_t top = 0; top < 8; ++top) {
      layer.Move(10, static_cast<float>(top), 100, 3);
      const DisplayItem item = At(dpi);
      EXPECT_EQ(item.shape->box.top, item.shape->box.bottom) << dpi;
      EXPECT_EQ(item.bounds.Height(), item.shape->lineWidth) << dpi;
    }
  }
}

TEST_F(ItemsOfACanvas, AFrameLiesAroundTheContentsAtEveryScale) {
  for (const std::int32_t dpi : Dpis) {
    layer.SetSelectionFrame(0);
    layer.Move(11, 21, 101, 31);
    const PixelRect contents = At(dpi).bounds;
    layer.SetSelectionFrame(1);
    layer.Move(10, 20, 101, 31);  // makes room for the frame
    const DisplayItem framed = At(dpi);
    EXPECT_EQ(framed.rim, framed.frameWidth);
    EXPECT_EQ(Inset(framed.bounds, framed.rim), contents) << dpi;
  }
}

TEST_F(ItemsOfACanvas, HandlesGrow) {
  layer.SetIsToShowResize(true);
  EXPECT_EQ(At(96).handleSize, 5);
  EXPECT_EQ(At(192).handleSize, 10);
  EXPECT_EQ(HandlesOf(At(192).bounds, 10)[0], (PixelRect{22, 42, 32, 52}));
}

}  // namespace
}  // namespace kw
