#include <algorithm>
#include <functional>

#include "support/LayersFixture.h"

namespace kw::test {
namespace {

using Drawing = LayersTest;

TEST_F(Drawing, ADragMakesALayerWithTheToolsFigureAndColours) {
  Choose("Rectangle");
  Form().tbrFillPattern.SetButtonPressed("NoFillInside", true);
  Form().sldLineHeight.SetValue(3);
  ForgetTrace();
  DragOut(100, 80, 40, 20);
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  const TransparentPicture& layer = Form().TransLayers(2);
  EXPECT_EQ(layer.Left(), 40);
  EXPECT_EQ(layer.Top(), 20);
  EXPECT_EQ(layer.Width(), 60);
  EXPECT_EQ(layer.Height(), 60);
  EXPECT_TRUE(layer.Visible());
  EXPECT_EQ(layer.DrawnFigure().kind, FigureKind::Rectangle);
  EXPECT_EQ(layer.LineWidth(), 3);
  EXPECT_EQ(layer.TransparentColor(), layer.BackColor());
  EXPECT_FALSE(Form().fr.Visible());
  for (const std::string& name : Trace()) EXPECT_EQ(name, "TransLayers_Change");  // the handlers themselves are silent
}

TEST_F(Drawing, AClickOrADragOfFivePixelsMakesNothing) {
  Choose("Rectangle");
  Canvas().ReceiveFocus();
  Press(50, 50);
  Release(50, 50);
  DragOut(50, 50, 55, 100);
  DragOut(50, 50, 100, 45);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  DragOut(50, 50, 56, 56);
  EXPECT_EQ(Form().TransLayers.UBound(), 2);
}

TEST_F(Drawing, AFilledInsideIsOpaqueExceptForTheBackColour20) {
  Choose("Circle");
  Form().tbrFillPattern.SetButtonPressed("FillInside", true);
  Form().SampleBackGroundColor.SetBackColor(MakeColour(255, 255, 255));
  DragOut(10, 10, 60, 60);
  EXPECT_NE(Form().TransLayers(2).TransparentColor(), Form().TransLayers(2).BackColor());
  Form().SampleBackGroundColor.SetBackColor(20);
  DragOut(100, 100, 160, 160);
  EXPECT_EQ(Form().TransLayers(3).TransparentColor(), 20U);
}

TEST_F(Drawing, ReleasedWhileAnotherControlIsActiveMakesNothing) {
  Choose("Rectangle");
  Canvas().ReceiveFocus();
  Press(10, 10);
  Drag(90, 90);
  Form().cmbZoomFactor.ReceiveFocus();
  Release(90, 90);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  EXPECT_FALSE(Form().fr.Visible());
}

TEST_F(Drawing, APressOnALayersEdgeIsTheLayersAndDrawsNoBand) {
  Add(100, 100, 50, 50);
  Choose("NoTools");
  Press(150, 150);
  EXPECT_FALSE(Room().Drag().m_IsMouseDown);
  EXPECT_EQ(Room().CurrentLayerIndex(), 2);
  Release(150, 150);
  Choose("Rectangle");
  Press(150, 150);
  Drag(170, 170);
  EXPECT_FALSE(Room().Drag().m_IsMouseDown);
  EXPECT_FALSE(Form().fr.Visible());
  Release(170, 170);
  EXPECT_EQ(Form().TransLayers.UBound(), 2);
}

TEST_F(Drawing, AHiddenLayerTakesNoPressAndTheTopmostTakesIt) {
  Add(100, 100, 50, 50).SetVisible(false);
  Add(110, 110, 50, 50);
  Add(110, 110, 50, 50);
  Choose("NoTools");
  Press(101, 101);
  EXPECT_TRUE(Room().Drag().m_IsMouseDown);
  Release(101, 101);
  Press(120, 120);
  EXPECT_EQ(Room().CurrentLayerIndex(), 4);
}

TEST_F(Drawing, TheBandStaysWithinTheCanvas) {
  Choose("Line");
  Canvas().ReceiveFocus();
  Press(10, 10);
  Drag(99999, -500);
  EXPECT_EQ(Form().fr.Left() + Form().fr.Width(), Canvas().Width());
  EXPECT_EQ(Form().fr.Top(), 0);
}

TEST_F(Drawing, ALineKeepsItsDirection) {
  Choose("Line");
  DragOut(10, 10, 60, 60);
  DragOut(10, 160, 60, 110);
  EXPECT_FALSE(Form().TransLayers(2).DrawnFigure().isRising);
  EXPECT_TRUE(Form().TransLayers(3).DrawnFigure().isRising);
}

TEST_F(Drawing, ASelectionIsRaisedAboveWhatItOverlaps) {
  Add(200, 200);
  Choose("NoTools");
  DragOut(10, 10, 190, 190);
  EXPECT_EQ(Room().CurrentLayerIndex(), 3);
  EXPECT_EQ(Room().ZOrder().Order().back(), 3);
}

TEST_F(Drawing, APenStrokeBecomesALayerWithItsPicture) {
  Choose("Pen");
  Form().sldLineHeight.SetValue(4);
  Canvas().ReceiveFocus();
  Press(50, 60);
  EXPECT_TRUE(Form().point1(0).Visible());
  Drag(52, 61);
  Drag(52, 61);
  Drag(90, 100);
  EXPECT_EQ(Form().point1.Count(), 3);
  Release(90, 100);
  EXPECT_EQ(Form().point1.Count(), 1);
  EXPECT_FALSE(Form().point1(0).Visible());
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  const TransparentPicture& layer = Form().TransLayers(2);
  EXPECT_TRUE(layer.Visible());
  EXPECT_EQ(layer.Picture().Width(), static_cast<std::int32_t>(layer.Width()));
  EXPECT_LE(layer.Left(), 48);
  EXPECT_GE(layer.Left() + layer.Width(), 92);
  // On the stroke it is opaque, in a corner away from it transparent.
  const auto alphaAt = [&](float x, float y) {
    const auto row = layer.Picture().Row(static_cast<std::int32_t>(y - layer.Top()));
    return row[static_cast<std::size_t>(x - layer.Left()) * 4 + 3];
  };
  EXPECT_EQ(alphaAt(71, 80), 255);
  EXPECT_EQ(alphaAt(88, 62), 0);
}

TEST_F(Drawing, OtherButtonsDoNothing) {
  Choose("Rectangle");
  Press(10, 10, 4);
  EXPECT_FALSE(Room().Drag().m_IsMouseDown);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Drawing, WhateverEndsADragLeavesNeitherBandNorMarkersNorALayer) {
  const std::function<void()> endings[] = {
      [this] { Press(30, 30, 2); },
      [this] { Press(30, 30, 4); },
      [this] { Canvas().KeyPress.Raise(27); },
      [this] { Canvas().MouseLost.Raise(); },
      [this] { control->OpenFile(folder.File("page.bmp")); },
      [this] { Room().UnloadLayerItems(); },
  };
  for (const char* tool : {"Rectangle", "Pen", "Rubber", "NoTools", "Image", "Signature"}) {
    for (const auto& end : endings) {
      Choose(tool);
      Canvas().ReceiveFocus();
      Press(20, 20);
      Drag(60, 60);
      const bool isShown = Form().fr.Visible() || Form().point1(0).Visible();
      EXPECT_TRUE(isShown) << tool;
      end();
      const auto expectRest = [&] {
        EXPECT_FALSE(Form().fr.Visible()) << tool;
        EXPECT_FALSE(Form().point1(0).Visible()) << tool;
        EXPECT_EQ(Form().point1.UBound(), 0) << tool;
        EXPECT_FALSE(Form().tmrMoveLayer.Enabled()) << tool;
        EXPECT_FALSE(Room().Drag().m_IsMouseDown) << tool;
        EXPECT_EQ(Form().TransLayers.UBound(), 1) << tool;
      };
      expectRest();
      Drag(90, 90);
      Release(90, 90);
      expectRest();
    }
  }
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Drawing, TheControlMayGoInADrag) {
  for (const char* tool : {"Rectangle", "Pen", "NoTools"}) {
    Choose(tool);
    Press(20, 20);
    Drag(60, 60);
    control->UserControl_Terminate();
    control = std::make_unique<KwEditorLayers>(desktop, events);
    control->UserControl_Initialize();
    control->OpenFile(folder.File("page.bmp"));
  }
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Drawing, CoordinatesFarOutsideTheCanvasDrawOnItOrNothing) {
  for (const float far : {-1e9F, 1e9F, -3e38F, 3e38F}) {
    Choose("Rectangle");
    DragOut(100, 100, far, far);
    Choose("Pen");
    DragOut(200, 100, far, far);
    Choose("Rectangle");
    DragOut(far, far, far, far);
  }
  for (const auto& [index, layer] : Form().TransLayers) {
    if (index < 2) continue;
    EXPECT_GE(layer->Left(), -2) << index;
    EXPECT_LE(layer->Left() + layer->Width(), Canvas().Width() + 2) << index;
    EXPECT_GE(layer->Top(), -2) << index;
    EXPECT_LE(layer->Top() + layer->Height(), Canvas().Height() + 2) << index;
  }
  EXPECT_FALSE(Form().fr.Visible());
  EXPECT_EQ(Form().point1.UBound(), 0);
}

// Moves that come while the editor yields, as they do when the mouse is faster than the editor.
TEST_F(Drawing, MovesThatComeInAYieldDoNotNestAndKeepTheirOrder) {
  Choose("Pen");
  Canvas().ReceiveFocus();
  int depth = 0;
  int deepest = 0;
  int coming = 0;
  desktop.onDoEvents = [&] {
    deepest = std::max(deepest, ++depth);
    while (coming < 1000) {
      ++coming;
      const int down = coming / 10;
      Drag(static_cast<float>(20 + coming % 300), static_cast<float>(20 + down));
    }
    --depth;
  };
  Press(10, 10);
  Drag(20, 20);
  Release(30, 120);
  desktop.onDoEvents = {};
  EXPECT_EQ(deepest, 1);
  ASSERT_EQ(Form().TransLayers.UBound(), 2);

  // The trail runs through the points in the order in which they came.
  Press(10, 200);
  desktop.onDoEvents = [&, isFirst = true]() mutable {
    if (!isFirst) return;
    isFirst = false;
    Drag(30, 200);
    Drag(40, 200);
  };
  Drag(20, 200);
  desktop.onDoEvents = {};
  ASSERT_EQ(Form().point1.Count(), 4);
  const float half = Form().point1(0).Width() / 2;
  for (std::int16_t i = 1; i < 4; ++i) EXPECT_EQ(Form().point1(i).Left() + half, static_cast<float>(10 + 10 * i));
  Release(40, 200);
}

TEST_F(Drawing, AReleaseInAYieldTakesTheMovesBeforeIt) {
  Choose("Rectangle");
  Canvas().ReceiveFocus();
  Press(10, 10);
  desktop.onDoEvents = [&] {
    desktop.onDoEvents = {};
    Drag(50, 60);
    Release(50, 60);
  };
  Drag(30, 30);
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  EXPECT_EQ(Form().TransLayers(2).Width(), 40);
  EXPECT_EQ(Form().TransLayers(2).Height(), 50);
  EXPECT_FALSE(Form().fr.Visible());
}

TEST_F(Drawing, APressThatComesWhileAStrokeEndsLosesNeitherStroke) {
  Choose("Pen");
  Canvas().ReceiveFocus();
  Press(10, 10);
  Drag(60, 10);
  desktop.onDoEvents = [&] {
    desktop.onDoEvents = {};
    Press(10, 100);
    Drag(60, 100);
  };
  Release(60, 10);
  EXPECT_EQ(Form().TransLayers.UBound(), 2);
  EXPECT_EQ(Form().point1.Count(), 2) << "the second stroke goes on";
  Drag(90, 100);
  Release(90, 100);
  ASSERT_EQ(Form().TransLayers.UBound(), 3);
  EXPECT_LT(Form().TransLayers(2).Top(), 20);
  EXPECT_GT(Form().TransLayers(2).Width(), 50);
  EXPECT_GT(Form().TransLayers(3).Top(), 80);
  EXPECT_GT(Form().TransLayers(3).Width(), 80);
  EXPECT_EQ(Form().point1.UBound(), 0);
}

TEST_F(Drawing, ALayerBeyondTheRangeOfWholeNumbersIsAnOverflowForThePressOnIt) {
  Add(2e9F, 10, 2e9F, 10);
  Choose("NoTools");
  Press(10, 10);
  EXPECT_EQ(events.errors, std::vector<int>{6});
}

}  // namespace
}  // namespace kw::test
