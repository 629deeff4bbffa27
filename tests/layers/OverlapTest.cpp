// Which layers overlap: those of which one has a corner inside the other, edges included.

#include <algorithm>

#include "tests/support/FormLook.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

TEST_F(LayersTest, LayersOverlapWhereACornerOfOneLiesInTheOther) {
  const struct {
    const char* what;
    float left, top, width, height;
    bool overlaps;
  } cases[] = {
      {"top left corner", 60, 70, 50, 40, true},
      {"top right corner", 140, 70, 50, 40, true},
      {"bottom left corner", 60, 130, 50, 40, true},
      {"bottom right corner", 140, 130, 50, 40, true},
      {"left side", 60, 110, 50, 10, true},
      {"right side", 140, 110, 50, 10, true},
      {"upper side", 110, 70, 10, 40, true},
      {"lower side", 110, 130, 10, 40, true},
      {"inside", 110, 110, 10, 10, true},
      {"around", 50, 60, 200, 180, true},
      {"across, with no corner inside", 60, 110, 200, 10, false},
      {"down, with no corner inside", 110, 60, 10, 200, false},
      {"touching on the left", 50, 110, 50, 10, true},
      {"touching on the right", 150, 110, 50, 10, true},
      {"touching above", 110, 50, 10, 50, true},
      {"touching below", 110, 140, 10, 50, true},
      {"touching at a corner", 50, 60, 50, 40, true},
      {"beside on the left", 50, 110, 49, 10, false},
      {"beside on the right", 151, 110, 50, 10, false},
      {"above", 110, 50, 10, 49, false},
      {"below", 110, 141, 10, 50, false},
  };
  for (const auto& one : cases) {
    Room().UnloadLayerItems();
    Add(100, 100, 50, 40);
    Add(one.left, one.top, one.width, one.height);
    Room().SetCurrentLayer(2);
    EXPECT_EQ(Room().BringForward(), one.overlaps) << one.what;
    EXPECT_EQ(Room().ZOrder().Order(),
              one.overlaps ? (std::vector<std::int16_t>{1, 3, 2}) : (std::vector<std::int16_t>{1, 2, 3}))
        << one.what;
    Room().UnloadLayerItems();
    Add(100, 100, 50, 40);
    Add(one.left, one.top, one.width, one.height);
    Room().SetCurrentLayer(3);
    EXPECT_EQ(Room().SendBackward(), one.overlaps) << one.what;
  }
}

TEST_F(LayersTest, SendBackwardPassesTheNextOverlappingLayerOnly) {
  Add(0, 0);
  Add(20, 20);
  Add(200, 200);
  Add(30, 30);
  Room().SetCurrentLayer(5);
  EXPECT_TRUE(Room().SendBackward());
  EXPECT_EQ(Room().ZOrder().Order(), (std::vector<std::int16_t>{1, 2, 5, 3, 4}));
  EXPECT_TRUE(Room().SendBackward());
  EXPECT_EQ(Room().ZOrder().Order(), (std::vector<std::int16_t>{1, 5, 2, 3, 4}));
  EXPECT_FALSE(Room().SendBackward());
  EXPECT_EQ(Canvas().Children().back(), &Form().TransLayers(4)) << "the controls follow";
  Room().SetCurrentLayer(4);
  EXPECT_FALSE(Room().SendBackward()) << "it lies alone";
}

TEST_F(LayersTest, APressBringsALayerToTheFrontOfAll) {
  Add(0, 0);
  Add(200, 200);
  Add(20, 20);
  Room().ZOrder().BringToFront(2);
  EXPECT_EQ(Room().ZOrder().Order(), (std::vector<std::int16_t>{1, 3, 4, 2}));
  EXPECT_EQ(Canvas().Children().back(), &Form().TransLayers(2));
  Room().ZOrder().BringToFront(1);
  Room().ZOrder().BringToFront(9);
  EXPECT_EQ(Room().ZOrder().Order(), (std::vector<std::int16_t>{1, 3, 4, 2}));
}

// A picked layer lies one unit further up and left, and the frame is part of it.
TEST_F(LayersTest, APickedLayerIsHitOnItsFrameToo) {
  Add(100, 100, 50, 40);
  Choose("NoTools");
  Press(120, 120);
  Release(120, 120);
  const auto isHit = [this](float x, float y) {
    Canvas().MouseMove.Raise(0, 0, 10, 10);
    EXPECT_FALSE(Form().TransLayers(2).IsToShowBorderMarks());
    Canvas().MouseMove.Raise(0, 0, x, y);
    return Form().TransLayers(2).IsToShowBorderMarks();
  };
  for (const float x : {99.0F, 125.0F, 150.0F}) {
    for (const float y : {99.0F, 120.0F, 140.0F}) EXPECT_TRUE(isHit(x, y)) << x << ", " << y;
    EXPECT_FALSE(isHit(x, 98)) << x;
    EXPECT_FALSE(isHit(x, 141)) << x;
  }
  for (const float y : {99.0F, 120.0F, 140.0F}) {
    EXPECT_FALSE(isHit(98, y)) << y;
    EXPECT_FALSE(isHit(151, y)) << y;
  }
}

TEST_F(LayersTest, ALayerThatIsNotPickedIsHitUpToItsEdges) {
  Add(100, 100, 50, 40);
  Choose("NoTools");
  const auto isHit = [this](float x, float y) {
    Canvas().MouseMove.Raise(0, 0, x, y);
    return Form().TransLayers(2).IsToShowBorderMarks();
  };
  EXPECT_TRUE(isHit(100, 100));
  EXPECT_TRUE(isHit(150, 140));
  EXPECT_FALSE(isHit(151, 140));
  EXPECT_FALSE(isHit(150, 141));
  EXPECT_FALSE(isHit(151, 141));
  EXPECT_FALSE(isHit(99, 100));
  EXPECT_FALSE(isHit(100, 99));
}

TEST_F(LayersTest, APressThatCannotTellItsLayerIsOneOnTheCanvas) {
  desktop.Expect("Critical Error: Error Number : 6");
  Add(2e9F, 10, 2e9F, 10);
  Choose("Rectangle");
  Press(10, 10);
  EXPECT_EQ(events.errors, std::vector<int>{6});
  EXPECT_TRUE(Room().Drag().m_IsMouseDown);
}

TEST_F(LayersTest, TheLabelsCirclesAreOthersAtEachTimeOfTheDay) {
  std::vector<std::string> seen;
  for (const LocalTime& time : {LocalTime{1, 0, 0}, LocalTime{0, 59, 0}, LocalTime{0, 1, 0}, LocalTime{0, 0, 59},
                                LocalTime{0, 0, 1}, LocalTime{2, 0, 0}, LocalTime{0, 2, 0}}) {
    desktop.time = time;
    Form().Label1.Click.Raise();
    std::string look;
    for (std::int16_t i = 2; i <= 6; ++i) look += PlaceOf(Form().TransLayers(i)) + ", ";
    EXPECT_EQ(std::ranges::count(seen, look), 0) << time.hour << ":" << time.minute << ":" << time.second;
    seen.push_back(look);
    Room().UnloadLayerItems();
  }
}

TEST_F(LayersTest, TheLabelsCirclesAreThoseOfTheClock) {
  desktop.time = {10, 20, 30};
  Form().Label1.Click.Raise();
  Lines circles;
  for (std::int16_t i = 2; i <= 6; ++i) {
    const TransparentPicture& layer = Form().TransLayers(i);
    circles.push_back(PlaceOf(layer) + " in " + std::to_string(layer.ForeColor()) + " " +
                      std::to_string(layer.LineColor()));
  }
  // A fraction of 1000000 as the colour, then one of the canvas's width of 402 and one of its height of 302.
  EXPECT_EQ(circles,
            (Lines{"276 45 62 62 in 758081 758081", "389 95 62 62 in 852292 852292", "23 301 62 62 in 166500 166500",
                   "350 43 62 62 in 941043 941043", "349 179 62 62 in 877654 877654"}));
}

TEST_F(LayersTest, ATextInALayerWithoutWidthIsMeasuredForOnePixel) {
  TransparentPicture& layer = Add(10, 10, 0.2F, 10);
  layer.SetTextEntry(true);
  layer.Type("abc");
  EXPECT_EQ(layer.Height(), static_cast<float>(desktop.MeasureText("abc", layer.TextFont(), 1).height));
  EXPECT_GT(layer.Height(), static_cast<float>(desktop.MeasureText("abc", layer.TextFont(), 0).height));
}

}  // namespace
}  // namespace kw::test
