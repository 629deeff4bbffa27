#include <cmath>
#include <limits>
#include <random>

#include "layers/PointInRect.h"
#include "support/Errors.h"
#include "support/LayersFixture.h"

namespace kw::test {
namespace {

using Order = std::vector<std::int16_t>;

TEST(IsPointInRectTest, IncludesAllFourEdges) {
  EXPECT_TRUE(IsPointInRect(10, 20, 10, 20, 5, 5));
  EXPECT_TRUE(IsPointInRect(15, 25, 10, 20, 5, 5));
  EXPECT_FALSE(IsPointInRect(16, 25, 10, 20, 5, 5));
  EXPECT_FALSE(IsPointInRect(9, 20, 10, 20, 5, 5));
}

TEST(IsPointInRectTest, RaisesOverflowWhereAnEdgeDoesNotFit) {
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(ErrorOf([] { IsPointInRect(0, 0, most, 0, 1, 1); }), 6);
  EXPECT_EQ(ErrorOf([] { IsPointInRect(0, 0, 0, most - 1, 1, 2); }), 6);
}

TEST_F(LayersTest, ANewLayerIsLoadedOnTopWithTheLineSize) {
  Form().sldLineHeight.SetValue(7);
  const TransparentPicture& layer = Room().NewLayer();
  EXPECT_EQ(layer.Index().value_or(0), 2);
  EXPECT_EQ(layer.LineWidth(), 7);
  EXPECT_FALSE(layer.Visible());
  EXPECT_EQ(Room().ZOrder().Order(), (Order{1, 2}));
  Room().NewLayer();
  EXPECT_EQ(Room().ZOrder().Order(), (Order{1, 2, 3}));
}

TEST_F(LayersTest, PickingNeedsThePointerToolAndNeverTakesThePage) {
  Add(10, 10);
  Choose("Text");
  Form().TransLayers(2).TakePress();
  EXPECT_EQ(Room().CurrentLayerIndex(), 1);
  Choose("NoTools");
  Form().TransLayers(2).TakePress();
  EXPECT_EQ(Room().CurrentLayerIndex(), 2);
  Form().TransLayers(1).TakePress();
  EXPECT_EQ(Room().CurrentLayerIndex(), 2);
}

TEST_F(LayersTest, APickedLayerIsFramedAndShiftedOnceAndReleasedExactly) {
  TransparentPicture& layer = Add(10, 20);
  Choose("NoTools");
  layer.TakePress();
  layer.TakePress();
  EXPECT_EQ(layer.SelectionFrame(), 1);
  EXPECT_EQ(layer.Left(), 9);
  EXPECT_EQ(layer.Top(), 19);
  EXPECT_TRUE(layer.IsToShowResize());
  EXPECT_FALSE(layer.IsToShowBorderMarks());
  Choose("Text");  // releasing does not look at the tool
  layer.GiveUpActivation();
  layer.GiveUpActivation();
  EXPECT_EQ(layer.SelectionFrame(), 0);
  EXPECT_EQ(layer.Left(), 10);
  EXPECT_EQ(layer.Top(), 20);
  EXPECT_FALSE(layer.IsToShowResize());
}

TEST_F(LayersTest, MouseEventsOfALayerReachTheCanvasWithItsPositionAdded) {
  const TransparentPicture& layer = Add(100, 50);
  std::vector<std::pair<float, float>> seen;
  Room().CanvasMouseDown.Connect([&](std::int16_t, std::int16_t, float x, float y) { seen.emplace_back(x, y); });
  ForgetTrace();
  layer.MouseDown.Raise(1, 0, 5, 7);
  Form().TransBackImage.MouseDown.Raise(1, 0, 1, 2);
  EXPECT_EQ(seen, (std::vector<std::pair<float, float>>{{105, 57}, {1, 2}}));
  EXPECT_EQ(Trace(), (Names{"TransLayers_MouseDown", "TransBackImage_MouseDown"}));
}

TEST_F(LayersTest, BringForwardPassesTheNextOverlappingLayerOnly) {
  Add(0, 0);
  Add(200, 200);
  Add(20, 20);
  Add(30, 30);
  Room().SetCurrentLayer(2);
  EXPECT_TRUE(Room().BringForward());
  EXPECT_EQ(Room().ZOrder().Order(), (Order{1, 3, 4, 2, 5}));
  EXPECT_TRUE(Room().BringForward());
  EXPECT_EQ(Room().ZOrder().Order(), (Order{1, 3, 4, 5, 2}));
  EXPECT_FALSE(Room().BringForward());
  const auto& children = Canvas().Children();
  EXPECT_EQ(children.back(), &Form().TransLayers(2));
}

TEST_F(LayersTest, SendBackwardStopsAboveThePage) {
  Add(0, 0);
  Add(20, 20);
  Room().SetCurrentLayer(3);
  EXPECT_TRUE(Room().SendBackward());
  EXPECT_EQ(Room().ZOrder().Order(), (Order{1, 3, 2}));
  EXPECT_FALSE(Room().SendBackward());
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(LayersTest, CtrlFAndCtrlBRestackTheCurrentLayerByOneStep) {
  Add(0, 0);
  Add(20, 20);
  Room().SetCurrentLayer(2);
  Canvas().KeyPress.Raise(6);
  EXPECT_EQ(Room().ZOrder().Order(), (Order{1, 3, 2}));
  Canvas().KeyPress.Raise(2);
  EXPECT_EQ(Room().ZOrder().Order(), (Order{1, 2, 3}));
}

TEST_F(LayersTest, ThePageIsNeverRestacked) {
  Add(0, 0);
  Room().SetCurrentLayer(1);
  EXPECT_FALSE(Room().BringForward());
  EXPECT_FALSE(Room().SendBackward());
}

TEST_F(LayersTest, AnEmptyPageDisablesTheToolsAndEmptiesTheSizeLabel) {
  EXPECT_EQ(Form().lblImageSize.Caption(), "Size: 400 x 300");
  Form().TransLayers(1).SetPicture({});
  EXPECT_EQ(Form().lblImageSize.Caption(), "");
  for (const Control* one :
       {static_cast<Control*>(&Form().tbrBasicTools(0)), static_cast<Control*>(&Form().tbrBasicTools(1)),
        static_cast<Control*>(&Form().frZoomFactorContainer), static_cast<Control*>(&Form().picFrame),
        static_cast<Control*>(&Form().kwraTools)}) {
    EXPECT_FALSE(one->Enabled()) << one->Name();
  }
}

TEST_F(LayersTest, TheRubberBandIsNormalisedByTheTimer) {
  Canvas().ReceiveFocus();
  Room().Drag() = {true, 90, 80, 30, 20};
  Form().tmrMoveLayer.SetEnabled(true);
  desktop.FireTimer(Form().tmrMoveLayer);
  EXPECT_EQ(Form().fr.Left(), 30);
  EXPECT_EQ(Form().fr.Top(), 20);
  EXPECT_EQ(Form().fr.Width(), 60);
  EXPECT_EQ(Form().fr.Height(), 60);
  EXPECT_TRUE(Form().fr.Visible());
}

TEST_F(LayersTest, AwayFromTheCanvasTheTimerMovesTheFrameWithThePointerOneToOne) {
  Form().fr.Move(10, 10, 20, 20);
  Form().cmbZoomFactor.ReceiveFocus();
  Room().Drag() = {true, 50, 50, 53, 48};
  Form().tmrMoveLayer.SetEnabled(true);
  desktop.FireTimer(Form().tmrMoveLayer);
  desktop.FireTimer(Form().tmrMoveLayer);
  EXPECT_EQ(Form().fr.Left(), 13);
  EXPECT_EQ(Form().fr.Top(), 8);
}

TEST_F(LayersTest, TheLabelAddsFiveNumberedCircles) {
  Form().Label1.Click.Raise();
  EXPECT_EQ(Form().TransLayers.UBound(), 6);
  EXPECT_EQ(Form().TransLayers(4).Caption(), "\r\n  Layer # 4  \r\n");
  for (std::int16_t i = 2; i <= 6; ++i) {
    EXPECT_TRUE(Form().TransLayers(i).Visible());
    EXPECT_EQ(Form().TransLayers(i).DrawnFigure().kind, FigureKind::Ellipse);
  }
  EXPECT_TRUE(Form().tbrEditingTools.ButtonOf("Circle").pressed);
}

TEST_F(LayersTest, TheSecondLabelQuartersTheBackground) {
  control->LetBGImage(MakeImage("back.bmp", 400, 100));
  Form().Label2.Click.Raise();
  EXPECT_EQ(Form().TransBackImage.Width(), 100);
}

TEST_F(LayersTest, RandomStepsKeepTheOrderAPermutationOfTheLoadedLayers) {
  std::mt19937 random(20261121);
  const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  const auto any = [&] { return static_cast<std::int16_t>(1 + below(Form().TransLayers.UBound())); };
  for (int step = 0; step < 3000; ++step) {
    switch (below(9)) {
      case 0:
      case 1:
        if (Form().TransLayers.UBound() < 40) {
          Add(static_cast<float>(below(500) - 50), static_cast<float>(below(400) - 50), static_cast<float>(below(120)),
              static_cast<float>(below(120)));
        }
        break;
      case 2:
        Choose(below(2) == 0 ? "NoTools" : "Line");
        break;
      case 3:
        Room().PassPress(any());
        break;
      case 4:
        Room().PassPress(0);
        break;
      case 5:
        Room().BringForward();
        break;
      case 6:
        Room().SendBackward();
        break;
      case 7:
        control->ZoomRoom().UpdateAndZoom();
        break;
      default:
        if (below(20) == 0) Room().UnloadLayerItems();
        break;
    }
    Order order = Room().ZOrder().Order();
    ASSERT_EQ(order.front(), 1);
    std::sort(order.begin(), order.end());
    ASSERT_EQ(order.size() + 1, static_cast<std::size_t>(Form().TransLayers.Count()));
    for (std::size_t i = 0; i < order.size(); ++i) ASSERT_EQ(order[i], static_cast<std::int16_t>(i + 1));
    ASSERT_TRUE(Form().TransLayers.IsLoaded(Room().CurrentLayerIndex()));
  }
  EXPECT_TRUE(events.errors.empty());
}

using Borders = LayersTest;

TEST_F(Borders, ReleasedWithTheLeftButtonResizeThePageAfterTheirNotice) {
  desktop.boxes.clear();
  Form().BorderBottom.MouseUp.Raise(1, 0, 0, 30 * 15);
  Form().BorderRight.MouseUp.Raise(1, 0, -10 * 15, 0);
  EXPECT_EQ(Form().TransLayers(1).Height(), 330);
  EXPECT_EQ(Form().TransLayers(1).Width(), 390);
  Form().BorderCorner.MouseUp.Raise(1, 0, 10 * 15, 20 * 15);
  EXPECT_EQ(Form().TransLayers(1).Width(), 400);
  EXPECT_EQ(Form().TransLayers(1).Height(), 350);
  EXPECT_EQ(Form().BorderCorner.Top(), 350);
  ASSERT_EQ(desktop.boxes.size(), 3U);
  EXPECT_EQ(desktop.boxes[2], (ScriptedDesktop::Box{"change the code below", "", MessageButtons::Ok}));
}

TEST_F(Borders, DraggedPastTheOppositeEdgeLeaveTheSizeButShowTheNotice) {
  desktop.boxes.clear();
  Form().BorderBottom.MouseUp.Raise(1, 0, 0, -301 * 15);
  EXPECT_EQ(Form().TransLayers(1).Height(), 300);
  EXPECT_EQ(desktop.boxes.size(), 1U);
}

TEST_F(Borders, DivideTheDistanceByTheZoom) {
  control->ZoomRoom().LetZoomFactor(2.0);
  Form().BorderBottom.MouseUp.Raise(1, 0, 0, 30 * 15);
  EXPECT_EQ(Form().TransLayers(1).Height(), 315);
}

TEST_F(Borders, AnotherButtonDoesNothing) {
  desktop.boxes.clear();
  ForgetTrace();
  Form().BorderRight.MouseUp.Raise(2, 0, 150, 0);
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_EQ(Trace(), Names{"BorderRight_MouseUp"});
}

}  // namespace
}  // namespace kw::test
