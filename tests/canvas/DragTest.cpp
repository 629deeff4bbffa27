// A drag on the canvas from its press to its release, and whatever else ends it.

#include <algorithm>
#include <functional>
#include <tuple>

#include "tests/support/FormLook.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

using Drags = LayersTest;

TEST_F(Drags, AClickOrADragOfFivePixelsMakesNothing) {
  Choose("Rectangle");
  Canvas().ReceiveFocus();
  Press(50, 50);
  Release(50, 50);
  // A click lasts longer than the timer's interval.
  Press(50, 50);
  ASSERT_TRUE(desktop.FireTimer(Form().tmrMoveLayer));
  EXPECT_TRUE(Form().fr.Visible());
  Release(50, 50);
  EXPECT_FALSE(Form().fr.Visible());
  DragOut(50, 50, 55, 100);
  DragOut(50, 50, 100, 45);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  DragOut(50, 50, 56, 56);
  EXPECT_EQ(Form().TransLayers.UBound(), 2);
}

// 5 pixels are 2.5 units of the canvas if a pixel has half as many twips, and 10 if it has twice as many.
TEST_F(Drags, TheLeastDragIsFivePixelsOfTheScreenByItsHorizontalTwips) {
  Choose("Rectangle");
  desktop.twipsPerPixelX = 7.5F;
  desktop.twipsPerPixelY = 30;
  DragOut(50, 50, 52.5F, 90);
  DragOut(50, 50, 90, 47.5F);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  DragOut(50, 50, 53, 53);
  EXPECT_EQ(Form().TransLayers.UBound(), 2);
  desktop.twipsPerPixelX = 30;
  desktop.twipsPerPixelY = 7.5F;
  DragOut(150, 150, 160, 190);
  DragOut(150, 150, 190, 160);
  EXPECT_EQ(Form().TransLayers.UBound(), 2);
  DragOut(150, 150, 161, 161);
  EXPECT_EQ(Form().TransLayers.UBound(), 3);
}

TEST_F(Drags, TheTimerRunsFromThePressToTheReleaseAndShowsTheBand) {
  Canvas().ReceiveFocus();
  for (const char* tool : {"NoTools", "Text", "Circle", "Line", "Rectangle"}) {
    Choose(tool);
    Press(300, 200);
    EXPECT_TRUE(Form().tmrMoveLayer.Enabled()) << tool;
    EXPECT_EQ(desktop.runningTimers[&Form().tmrMoveLayer], 10) << tool;
    Drag(320, 230);
    Form().fr.SetVisible(false);
    Form().fr.Move(0, 0, 1, 1);
    ASSERT_TRUE(desktop.FireTimer(Form().tmrMoveLayer)) << tool;
    EXPECT_TRUE(Form().fr.Visible()) << tool;
    EXPECT_EQ(Form().fr.Left() + Form().fr.Width(), 320) << tool;
    Release(320, 230);
    EXPECT_FALSE(Form().tmrMoveLayer.Enabled()) << tool;
    EXPECT_FALSE(desktop.FireTimer(Form().tmrMoveLayer)) << tool;
    Room().UnloadLayerItems();
  }
  for (const char* tool : {"Pen", "Rubber"}) {
    Choose(tool);
    Press(300, 200);
    EXPECT_FALSE(Form().tmrMoveLayer.Enabled()) << tool;
    Release(300, 200);
  }
}

TEST_F(Drags, OnlyMovesWithTheLeftButtonDownDraw) {
  Canvas().ReceiveFocus();
  for (const char* tool : {"Rectangle", "Pen"}) {
    Choose(tool);
    Press(50, 50);
    Canvas().MouseMove.Raise(0, 0, 90, 90);
    Canvas().MouseMove.Raise(Mouse::RightButton, 0, 90, 90);
    EXPECT_FALSE(Form().fr.Visible()) << tool;
    EXPECT_EQ(Form().point1.UBound(), 0) << tool;
    EXPECT_EQ(Room().Drag().m_CurrentX, 50) << tool;
    Release(50, 50);
    Room().UnloadLayerItems();
  }
}

TEST_F(Drags, WhileTheKeyboardIsElsewhereTheBandStaysWhereThePointerPutIt) {
  Choose("Rectangle");
  Canvas().ReceiveFocus();
  Press(10, 10);
  Drag(60, 50);
  Form().cmbZoomFactor.ReceiveFocus();
  const auto expectBand = [this](float right, float bottom) {
    desktop.FireTimer(Form().tmrMoveLayer);
    desktop.FireTimer(Form().tmrMoveLayer);
    EXPECT_EQ(Form().fr.Left(), 10);
    EXPECT_EQ(Form().fr.Top(), 10);
    EXPECT_EQ(Form().fr.Left() + Form().fr.Width(), right);
    EXPECT_EQ(Form().fr.Top() + Form().fr.Height(), bottom);
  };
  expectBand(60, 50);
  Drag(80, 90);
  expectBand(80, 90);
  EXPECT_EQ(Room().Drag().m_StartX, 10);
}

TEST_F(Drags, ReleasedWhileAnotherControlIsActiveMakesNothing) {
  Choose("Rectangle");
  Canvas().ReceiveFocus();
  Press(10, 10);
  Drag(90, 90);
  Form().cmbZoomFactor.ReceiveFocus();
  Release(90, 90);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  EXPECT_FALSE(Form().fr.Visible());
}

TEST_F(Drags, TheBandStaysWithinTheCanvas) {
  Choose("Line");
  Canvas().ReceiveFocus();
  Press(10, 10);
  Drag(99999, -500);
  EXPECT_EQ(Form().fr.Left() + Form().fr.Width(), Canvas().Width());
  EXPECT_EQ(Form().fr.Top(), 0);
}

TEST_F(Drags, BeginAndEndOnTheCanvas) {
  Choose("Rectangle");
  for (const auto& [x0, y0, x1, y1] :
       {std::tuple{-5.0F, -6.0F, 60.0F, 70.0F}, {60.0F, 70.0F, -5.0F, -6.0F}, {0.0F, 0.0F, 60.0F, 70.0F}}) {
    DragOut(x0, y0, x1, y1);
    EXPECT_EQ(PlaceOf(Form().TransLayers(2)), "0 0 60 70");
    Room().UnloadLayerItems();
  }
  DragOut(500, 400, 352, 252);
  EXPECT_EQ(PlaceOf(Form().TransLayers(2)), "352 252 50 50");
}

TEST_F(Drags, TheBandLiesInFrontOfEverythingOnTheCanvas) {
  Add(10, 10);
  Choose("Rectangle");
  Press(200, 200);
  Drag(250, 250);
  EXPECT_EQ(Canvas().Children().back(), &Form().fr);
  Release(250, 250);
  Choose("NoTools");
  Press(30, 30);
  Drag(60, 60);
  EXPECT_EQ(Canvas().Children().back(), &Form().fr);
  Release(60, 60);
}

TEST_F(Drags, WithoutAnActiveControlMakeNothing) {
  ASSERT_EQ(Form().editor.ActiveControl(), nullptr);
  Choose("Rectangle");
  Press(10, 10);
  Drag(90, 90);
  Release(90, 90);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
  EXPECT_FALSE(Form().fr.Visible());
}

TEST_F(Drags, APressOnALayerBringsItToTheFront) {
  Add(10, 10);
  Add(200, 200);
  Choose("Line");
  Press(20, 20);
  Release(20, 20);
  EXPECT_EQ(Room().ZOrder().Order(), (std::vector<std::int16_t>{1, 3, 2}));
  Press(210, 210, 2);
  EXPECT_EQ(Room().ZOrder().Order(), (std::vector<std::int16_t>{1, 2, 3}));
}

TEST_F(Drags, OtherButtonsDoNothing) {
  Choose("Rectangle");
  Press(10, 10, 4);
  EXPECT_FALSE(Room().Drag().m_IsMouseDown);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Drags, WhateverEndsADragLeavesNeitherBandNorMarkersNorALayer) {
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

TEST_F(Drags, TheControlMayGoInADrag) {
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

TEST_F(Drags, CoordinatesFarOutsideTheCanvasDrawOnItOrNothing) {
  desktop.Expect("Critical Error: Error Number : 6");
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
TEST_F(Drags, MovesThatComeInAYieldDoNotNestAndKeepTheirOrder) {
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

TEST_F(Drags, AReleaseInAYieldTakesTheMovesBeforeIt) {
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

TEST_F(Drags, APressThatComesWhileAStrokeEndsLosesNeitherStroke) {
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

}  // namespace
}  // namespace kw::test
