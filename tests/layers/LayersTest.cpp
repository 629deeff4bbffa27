#include <cmath>
#include <limits>
#include <map>
#include <random>

#include "tests/support/Errors.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

using Order = std::vector<std::int16_t>;

TEST_F(LayersTest, ANewLayerIsLoadedOnTopWithTheLineSize) {
  Form().sldLineHeight.SetValue(7);
  ForgetTrace();
  const TransparentPicture& layer = *Room().NewLayer();
  EXPECT_EQ(Trace(), Names{"NewLayer"});
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

TEST_F(LayersTest, ALayerIsRaisedAboveAllThatItOverlapsAndIsNotMadeTheCurrentOne) {
  Add(0, 0);
  Add(20, 20);
  Add(200, 200);
  Add(30, 30);
  Add(300, 200);
  Room().SetCurrentLayer(4);
  ForgetTrace();
  Room().RaiseAboveOthers(2);
  EXPECT_EQ(Room().ZOrder().Order(), (Order{1, 3, 4, 5, 2, 6}));
  EXPECT_EQ(Room().CurrentLayerIndex(), 4);
  EXPECT_EQ(Trace(), Names(3, "BringForward"));
}

TEST_F(LayersTest, ALayerThatStandsInNoOrderIsNoSubscriptOnceItsPlaceIsNeeded) {
  desktop.Expect("Critical Error: Error Number : 9");
  Add(100, 100);
  TransparentPicture& stray = Form().TransLayers.Load(3);
  stray.Move(300, 200, 20, 20);
  Room().SetCurrentLayer(3);
  EXPECT_FALSE(Room().BringForward());
  EXPECT_FALSE(Room().SendBackward());
  EXPECT_TRUE(events.errors.empty());
  stray.Move(110, 110);
  EXPECT_FALSE(Room().BringForward());
  EXPECT_TRUE(events.errors.empty());
  EXPECT_FALSE(Room().SendBackward());
  EXPECT_EQ(events.errors, std::vector<int>{9});
  EXPECT_EQ(Room().ZOrder().Order(), (Order{1, 2}));
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

TEST_F(LayersTest, TheRubberBandIsNormalisedByTheTimer) {
  Canvas().ReceiveFocus();
  Room().Drag() = {.m_IsMouseDown = true, .m_StartX = 90, .m_StartY = 80, .m_CurrentX = 30, .m_CurrentY = 20};
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
  Room().Drag() = {.m_IsMouseDown = true,
                   .m_StartX = 40,
                   .m_StartY = 40,
                   .m_CurrentX = 53,
                   .m_CurrentY = 48,
                   .followedX = 50,
                   .followedY = 50};
  Form().tmrMoveLayer.SetEnabled(true);
  desktop.FireTimer(Form().tmrMoveLayer);
  desktop.FireTimer(Form().tmrMoveLayer);
  EXPECT_EQ(Form().fr.Left(), 13);
  EXPECT_EQ(Form().fr.Top(), 8);
  EXPECT_EQ(Room().Drag().m_StartX, 40) << "where the button went down stays known";
  EXPECT_EQ(Room().Drag().m_StartY, 40);
}

TEST_F(LayersTest, RandomStepsKeepTheOrderAPermutationAndEachLayerInItsPlace) {
  desktop.Allow("change the code below");
  std::mt19937 random(20261121);
  const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
  const auto any = [&] { return static_cast<std::int16_t>(1 + below(Form().TransLayers.UBound())); };
  std::map<std::int16_t, std::pair<float, float>> homes;  // the place of each floating layer while it is not picked
  float width = 400;
  float height = 300;
  for (int step = 0; step < 3000; ++step) {
    switch (below(11)) {
      case 0:
      case 1:
        if (Form().TransLayers.UBound() < 40) {
          const TransparentPicture& layer =
              Add(static_cast<float>(below(500) - 50), static_cast<float>(below(400) - 50),
                  static_cast<float>(below(120)), static_cast<float>(below(120)));
          homes[Form().TransLayers.UBound()] = {layer.Left(), layer.Top()};
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
      case 8:
        control->ZoomRoom().LetZoomFactor(0.5 + below(4) * 0.5);
        break;
      case 9: {
        const auto across = static_cast<float>(below(2) == 0 ? 50 - below(100) : 400 - static_cast<int>(width));
        const auto down = static_cast<float>(50 - below(100));
        const auto zoom = static_cast<float>(control->ZoomRoom().ZoomFactor());
        Form().BorderCorner.MouseUp.Raise(1, 0, across * zoom * 15, down * zoom * 15);
        if (width + across > 0) width += across;
        if (height + down > 0) height += down;
        break;
      }
      default:
        if (below(20) != 0) break;
        Room().UnloadLayerItems();
        homes.clear();
        break;
    }
    Order order = Room().ZOrder().Order();
    ASSERT_EQ(order.front(), 1);
    std::sort(order.begin(), order.end());
    ASSERT_EQ(order.size() + 1, static_cast<std::size_t>(Form().TransLayers.Count()));
    for (std::size_t i = 0; i < order.size(); ++i) ASSERT_EQ(order[i], static_cast<std::int16_t>(i + 1));
    ASSERT_TRUE(Form().TransLayers.IsLoaded(Room().CurrentLayerIndex()));
    int picked = 0;
    for (const auto& [index, home] : homes) {
      const TransparentPicture& layer = Form().TransLayers(index);
      const auto shift = static_cast<float>(layer.SelectionFrame());
      picked += layer.SelectionFrame();
      ASSERT_EQ(layer.Left(), home.first - shift) << step;
      ASSERT_EQ(layer.Top(), home.second - shift) << step;
    }
    ASSERT_LE(picked, 1) << step;
    ASSERT_EQ(Form().TransLayers(1).Width(), width) << step;
    ASSERT_EQ(Form().TransLayers(1).Height(), height) << step;
    control->ZoomRoom().UpdateAndZoom();
    ASSERT_EQ(Form().BorderCorner.Left(), width) << step;
    ASSERT_EQ(Form().BorderCorner.Top(), height) << step;
    ASSERT_EQ(Canvas().Width(), width + 2) << step;
  }
  EXPECT_TRUE(events.errors.empty());
}

}  // namespace
}  // namespace kw::test
