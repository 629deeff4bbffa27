// The mouse on a picked layer: moving, sizing, typing.

#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

class PickedLayer : public LayersTest {
protected:
  PickedLayer() {
    Canvas().ReceiveFocus();
    Choose("NoTools");
  }
  TransparentPicture& AddPicked(float left, float top, float width, float height) {
    TransparentPicture& layer = Add(left, top, width, height);
    Press(left + width / 2, top + height / 2);
    Release(left + width / 2, top + height / 2);
    return layer;
  }
  static void ExpectAt(const Control& control, float left, float top, float width, float height) {
    EXPECT_EQ(control.Left(), left);
    EXPECT_EQ(control.Top(), top);
    EXPECT_EQ(control.Width(), width);
    EXPECT_EQ(control.Height(), height);
  }
};

TEST_F(PickedLayer, ADragMovesItAndTheFrameShowsTheWay) {
  TransparentPicture& layer = Add(100, 100, 50, 40);
  Press(120, 110);
  EXPECT_FALSE(Form().fr.Visible()) << "a press alone moves nothing";
  Drag(150, 90);
  EXPECT_TRUE(Form().fr.Visible());
  ExpectAt(Form().fr, 129, 79, 52, 42);  // with the picked layer's frame around it
  ExpectAt(layer, 99, 99, 50, 40);       // until the release it stays
  Release(150, 90);
  EXPECT_FALSE(Form().fr.Visible());
  ExpectAt(layer, 129, 79, 50, 40);
  EXPECT_EQ(Form().TransLayers.UBound(), 2) << "no new layer";
  Room().PassPress(0);
  ExpectAt(layer, 130, 80, 50, 40);
}

TEST_F(PickedLayer, AClickOrATremorMovesNothing) {
  TransparentPicture& layer = AddPicked(100, 100, 50, 40);
  Press(120, 110);
  Drag(122, 109);
  Release(122, 109);
  ExpectAt(layer, 99, 99, 50, 40);
}

TEST_F(PickedLayer, EveryHandleSizesItsEdges) {
  struct Case {
    float x, y, left, top, width, height;
  };
  // Pressed at the handle and moved by (10, 6); the layer without its frame afterwards.
  const Case cases[] = {
      {100, 100, 110, 106, 50, 34}, {130, 100, 100, 106, 60, 34}, {160, 100, 100, 106, 70, 34},
      {160, 120, 100, 100, 70, 40}, {160, 140, 100, 100, 70, 46}, {130, 140, 100, 100, 60, 46},
      {100, 140, 110, 100, 50, 46}, {100, 120, 110, 100, 50, 40},
  };
  for (const Case& one : cases) {
    TransparentPicture& layer = AddPicked(100, 100, 60, 40);
    Press(one.x, one.y);
    Drag(one.x + 10, one.y + 6);
    Release(one.x + 10, one.y + 6);
    Room().PassPress(0);
    ExpectAt(layer, one.left, one.top, one.width, one.height);
    Room().UnloadLayerItems();
  }
}

TEST_F(PickedLayer, SizingStopsBeforeTheEdgesMeet) {
  TransparentPicture& layer = AddPicked(100, 100, 60, 40);
  Press(160, 140);
  Drag(20, 20);
  Release(20, 20);
  EXPECT_EQ(layer.Left(), 99);
  EXPECT_EQ(layer.Top(), 99);
  EXPECT_GT(layer.Width(), 0);
  EXPECT_LT(layer.Width(), 10);
  EXPECT_GT(layer.Height(), 0);
}

TEST_F(PickedLayer, ShiftKeepsTheProportionsAtACorner) {
  TransparentPicture& layer = AddPicked(100, 100, 58, 38);  // 60 x 40 with its frame
  Press(158, 138);
  Canvas().MouseMove.Raise(1, Mouse::ShiftKey, 188, 140);
  Release(188, 140);
  EXPECT_EQ(layer.Width(), 88);
  EXPECT_EQ(layer.Height(), 58);
}

TEST_F(PickedLayer, ItCannotBeDraggedOffTheCanvas) {
  TransparentPicture& layer = AddPicked(100, 100, 50, 40);
  Press(120, 110);
  Drag(-5000, 1e9F);
  Release(-5000, 1e9F);
  EXPECT_GT(layer.Left() + layer.Width(), 0);
  EXPECT_LT(layer.Top(), Canvas().Height());
}

TEST_F(PickedLayer, AnotherToolPicksAndMovesNothing) {
  TransparentPicture& layer = Add(100, 100, 50, 40);
  Choose("Line");
  Press(120, 110);
  Drag(150, 140);
  Release(150, 140);
  ExpectAt(layer, 100, 100, 50, 40);
  EXPECT_EQ(layer.SelectionFrame(), 0);
  EXPECT_EQ(Form().TransLayers.UBound(), 2);
}

TEST_F(PickedLayer, WhateverEndsTheDragLeavesNothingBehind) {
  const auto expectRest = [this] {
    EXPECT_FALSE(Form().fr.Visible());
    EXPECT_FALSE(Room().PickedDrag().IsUnderWay());
    EXPECT_FALSE(Room().Drag().m_IsMouseDown);
  };
  TransparentPicture& layer = AddPicked(100, 100, 50, 40);
  const auto begin = [&] {
    Press(120, 110);
    Drag(150, 140);
    EXPECT_TRUE(Form().fr.Visible());
  };
  begin();
  Canvas().MouseLost.Raise();
  expectRest();
  begin();
  Canvas().KeyPress.Raise(27);
  expectRest();
  begin();
  Press(10, 10, 2);
  expectRest();
  Release(10, 10);
  ExpectAt(layer, 99, 99, 50, 40);
  begin();
  Room().UnloadLayerItems();
  expectRest();
  Drag(200, 200);
  Release(200, 200);
  expectRest();
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(PickedLayer, ThePointerTellsWhatAPressWouldDo) {
  TransparentPicture& layer = AddPicked(100, 100, 60, 40);
  Canvas().MouseMove.Raise(0, 0, 130, 120);
  EXPECT_EQ(layer.Pointer(), MousePointer::SizeAll);
  Canvas().MouseMove.Raise(0, 0, 100, 100);
  EXPECT_EQ(layer.Pointer(), MousePointer::SizeNWSE);
  Canvas().MouseMove.Raise(0, 0, 158, 120);
  EXPECT_EQ(layer.Pointer(), MousePointer::SizeWE);
  Room().PassPress(0);
  Canvas().MouseMove.Raise(0, 0, 130, 120);
  EXPECT_EQ(layer.Pointer(), MousePointer::Default);
}

TEST_F(PickedLayer, UnderAnotherToolThePointerIsThatOfTheTool) {
  desktop.Expect("NoTools", 3);
  TransparentPicture& layer = AddPicked(100, 100, 60, 40);
  const auto hover = [&] {
    Form().tbrEditingTools.UserClick("NoTools");
    Canvas().MouseMove.Raise(0, 0, 130, 120);
    ASSERT_EQ(layer.Pointer(), MousePointer::SizeAll);
  };
  hover();
  Form().tbrEditingTools.UserClick("Line");
  EXPECT_EQ(Canvas().Pointer(), MousePointer::Cross);
  EXPECT_EQ(layer.Pointer(), MousePointer::Default) << "before the mouse moves";
  hover();
  Choose("Line");
  Canvas().MouseMove.Raise(0, 0, 131, 121);
  EXPECT_EQ(layer.Pointer(), MousePointer::Default) << "a tool that was pressed without a command";
  hover();
  Canvas().MouseMove.Raise(0, 0, 10, 10);
  EXPECT_EQ(layer.Pointer(), MousePointer::Default) << "the mouse has left it";
}

TEST_F(PickedLayer, TheSecondClickOnATextBeginsTyping) {
  TransparentPicture& layer = Add(100, 100, 80, 20);
  layer.SetTextEntry(true);
  Press(120, 110);
  Release(120, 110);
  EXPECT_FALSE(layer.IsTyping());
  Press(120, 110);
  Drag(160, 150);
  Release(160, 150);
  EXPECT_FALSE(layer.IsTyping()) << "it was moved";
  Press(160, 150);
  Release(160, 150);
  EXPECT_TRUE(layer.IsTyping());
}

TEST_F(PickedLayer, AClickThatOnlyPicksATextBeginsNoTyping) {
  TransparentPicture& layer = Add(100, 100, 80, 20);
  layer.SetTextEntry(true);
  Choose("Rectangle");  // a press with it makes the layer the active one and picks nothing
  Press(120, 110);
  Release(120, 110);
  Choose("NoTools");
  Press(120, 110);
  Release(120, 110);
  EXPECT_EQ(layer.SelectionFrame(), 1);
  EXPECT_FALSE(layer.IsTyping());
  Press(120, 110);
  Release(120, 110);
  EXPECT_TRUE(layer.IsTyping());
}

TEST_F(PickedLayer, ATextGrowsWithItsLinesAndDoesNotShrink) {
  TransparentPicture& layer = Add(100, 100, 80, 20);
  layer.SetTextEntry(true);
  layer.Type("one");
  EXPECT_EQ(layer.Height(), 20);
  layer.Type("one\r\ntwo\r\nthree");
  const TextExtent lines = desktop.MeasureText(layer.Caption(), layer.TextFont(), 80);
  EXPECT_GT(lines.height, 20);
  EXPECT_EQ(layer.Height(), static_cast<float>(lines.height));
  layer.Type("one");
  EXPECT_EQ(layer.Height(), static_cast<float>(lines.height));
}

TEST_F(PickedLayer, HoveringMarksTheTopmostLayerAndRaisesIt) {
  Add(100, 100, 50, 50);
  Add(120, 120, 50, 50);
  Canvas().MouseMove.Raise(0, 0, 105, 105);
  EXPECT_TRUE(Form().TransLayers(2).IsToShowBorderMarks());
  EXPECT_FALSE(Form().TransLayers(3).IsToShowBorderMarks());
  EXPECT_EQ(Room().ZOrder().Order(), (std::vector<std::int16_t>{1, 3, 2}));
  Canvas().MouseMove.Raise(0, 0, 10, 10);
  EXPECT_FALSE(Form().TransLayers(2).IsToShowBorderMarks());
  Canvas().MouseMove.Raise(0, 0, 105, 105);
  Choose("Line");
  Canvas().MouseMove.Raise(0, 0, 106, 106);
  EXPECT_FALSE(Form().TransLayers(2).IsToShowBorderMarks()) << "another tool was chosen";
}

}  // namespace
}  // namespace kw::test
