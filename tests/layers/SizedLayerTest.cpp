// The exact handles of a picked layer, and its place after each kind of drag.

#include <tuple>
#include <utility>
#include <vector>

#include "tests/support/FormLook.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

// A layer at (100, 100) of 60 by 40 with its frame around it: on the canvas it takes (99, 99) to (161, 141).
class SizedLayer : public LayersTest {
protected:
  SizedLayer() {
    Canvas().ReceiveFocus();
    Choose("NoTools");
    Pick(60, 40);
  }
  void Pick(float width, float height) {
    Room().UnloadLayerItems();
    Add(100, 100, width, height);
    Press(100 + width / 2, 100 + height / 2);
    Release(100 + width / 2, 100 + height / 2);
  }
  TransparentPicture& Layer() { return Form().TransLayers(2); }
  // The mouse pointers from (95, 95) on as characters, ~ for the one from top left to bottom right, with the number of
  // rows that are alike.
  std::vector<std::pair<int, std::string>> PointersAround(int right, int bottom) {
    std::vector<std::pair<int, std::string>> rows;
    for (int y = 95; y < bottom; ++y) {
      std::string row;
      for (int x = 95; x < right; ++x) {
        row += "....../|~-.....o"[static_cast<std::size_t>(
            LayerDrag::PointerAt(Layer(), static_cast<float>(x), static_cast<float>(y)))];
      }
      if (!rows.empty() && rows.back().second == row)
        ++rows.back().first;
      else
        rows.emplace_back(1, row);
    }
    return rows;
  }
  // The layer without its frame after a drag.
  std::string Dragged(float x, float y, float toX, float toY, std::int16_t shift = 0) {
    Press(x, y);
    Canvas().MouseMove.Raise(1, shift, toX, toY);
    Release(toX, toY);
    Room().PassPress(0);
    std::string place = PlaceOf(Layer());
    Pick(60, 40);
    return place;
  }
};

// A handle takes the pointer two pixels around it, too.
TEST_F(SizedLayer, HasThePointerOfEachHandle) {
  const std::vector<std::pair<int, std::string>> expected{
      {2, "oooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooo"},
      {9, "oo~~~~~~~~~ooooooooooooooooooo|||||||||oooooooooooooooooooo/////////oooo"},
      {9, "oooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooo"},
      {9, "oo---------oooooooooooooooooooooooooooooooooooooooooooooooo---------oooo"},
      {10, "oooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooo"},
      {9, "oo/////////ooooooooooooooooooo|||||||||oooooooooooooooooooo~~~~~~~~~oooo"},
      {4, "oooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooooo"},
  };
  EXPECT_EQ(PointersAround(167, 147), expected);
}

TEST_F(SizedLayer, IsGraspedByItsCornersFirstWhereItIsSmall) {
  Pick(14, 10);
  const std::vector<std::pair<int, std::string>> expected{
      {2, "oooooooooooooooooooooooo"}, {7, "oo~~~~~~~~~||/////////oo"}, {2, "oo~~~~~~~~~||~~~~~~~~~oo"},
      {7, "oo/////////||~~~~~~~~~oo"}, {2, "oooooooooooooooooooooooo"},
  };
  EXPECT_EQ(PointersAround(119, 115), expected);
  EXPECT_EQ(Dragged(108, 105, 128, 117), "100 100 34 22");
  Pick(6, 4);
  EXPECT_EQ(Dragged(100, 100, 120, 112), "100 100 26 16");
}

TEST_F(SizedLayer, IsSizedByItsHandlesAndMovedByItsInside) {
  const struct {
    float x, y, dx, dy;
    std::int16_t shift;
    const char* place;
  } cases[] = {
      {99, 99, 10, 6, 0, "110 106 50 34"},        {99, 99, 10, 6, 1, "109 106 51 34"},
      {99, 99, -12, -7, 0, "88 93 72 47"},        {99, 99, -12, -7, 1, "88 92 72 48"},
      {99, 99, 100, 100, 0, "154 134 6 6"},       {99, 99, 100, 100, 1, "150 134 10 6"},
      {99, 99, -80, -80, 0, "20 20 140 120"},     {99, 99, -80, -80, 1, "-18 20 178 120"},
      {130, 99, 10, 6, 0, "100 106 60 34"},       {130, 99, 10, 6, 1, "100 106 60 34"},
      {130, 99, -12, -7, 0, "100 93 60 47"},      {130, 99, 100, 100, 0, "100 134 60 6"},
      {130, 99, -80, -80, 0, "100 20 60 120"},    {160, 99, 10, 6, 0, "100 106 70 34"},
      {160, 99, 10, 6, 1, "100 93 70 47"},        {160, 99, -12, -7, 0, "100 93 48 47"},
      {160, 99, -12, -7, 1, "100 93 70 47"},      {160, 99, 100, 100, 0, "100 134 160 6"},
      {160, 99, 100, 100, 1, "100 32 160 108"},   {160, 99, -80, -80, 0, "100 20 6 120"},
      {160, 99, -80, -80, 1, "100 20 178 120"},   {160, 120, 10, 6, 0, "100 100 70 40"},
      {160, 120, 10, 6, 1, "100 100 70 40"},      {160, 120, -12, -7, 0, "100 100 48 40"},
      {160, 120, 100, 100, 0, "100 100 160 40"},  {160, 120, -80, -80, 0, "100 100 6 40"},
      {160, 140, 10, 6, 0, "100 100 70 46"},      {160, 140, 10, 6, 1, "100 100 70 47"},
      {160, 140, -12, -7, 0, "100 100 48 33"},    {160, 140, -12, -7, 1, "100 100 50 33"},
      {160, 140, 100, 100, 0, "100 100 160 140"}, {160, 140, 100, 100, 1, "100 100 208 140"},
      {160, 140, -80, -80, 0, "100 100 6 6"},     {160, 140, -80, -80, 1, "100 100 10 6"},
      {130, 140, 10, 6, 0, "100 100 60 46"},      {130, 140, 10, 6, 1, "100 100 60 46"},
      {130, 140, -12, -7, 0, "100 100 60 33"},    {130, 140, 100, 100, 0, "100 100 60 140"},
      {130, 140, -80, -80, 0, "100 100 60 6"},    {99, 140, 10, 6, 0, "110 100 50 46"},
      {99, 140, 10, 6, 1, "91 100 69 46"},        {99, 140, -12, -7, 0, "88 100 72 33"},
      {99, 140, -12, -7, 1, "88 100 72 48"},      {99, 140, 100, 100, 0, "154 100 6 140"},
      {99, 140, 100, 100, 1, "-48 100 208 140"},  {99, 140, -80, -80, 0, "20 100 140 6"},
      {99, 140, -80, -80, 1, "20 100 140 94"},    {99, 120, 10, 6, 0, "110 100 50 40"},
      {99, 120, 10, 6, 1, "110 100 50 40"},       {99, 120, -12, -7, 0, "88 100 72 40"},
      {99, 120, 100, 100, 0, "154 100 6 40"},     {99, 120, -80, -80, 0, "20 100 140 40"},
      {130, 120, 10, 6, 0, "110 106 60 40"},      {130, 120, 10, 6, 1, "110 106 60 40"},
      {130, 120, -12, -7, 0, "88 93 60 40"},      {130, 120, 100, 100, 0, "200 200 60 40"},
      {130, 120, -80, -80, 0, "20 20 60 40"},
  };
  for (const auto& one : cases) {
    EXPECT_EQ(Dragged(one.x, one.y, one.x + one.dx, one.y + one.dy, one.shift), one.place)
        << one.x << ", " << one.y << " by " << one.dx << ", " << one.dy << " shift " << one.shift;
  }
}

TEST_F(SizedLayer, MovesFromThreePixelsOnInEitherDirection) {
  for (const auto& [dx, dy, place] : {std::tuple{2.0F, 2.0F, "100 100 60 40"},
                                      {3.0F, 0.0F, "103 100 60 40"},
                                      {0.0F, 3.0F, "100 103 60 40"},
                                      {-2.0F, -2.0F, "100 100 60 40"},
                                      {-3.0F, 0.0F, "97 100 60 40"},
                                      {0.0F, -3.0F, "100 97 60 40"}}) {
    EXPECT_EQ(Dragged(130, 120, 130 + dx, 120 + dy), place);
  }
}

TEST_F(SizedLayer, FollowsThePointerByWholePixelsAndOnTheCanvasOnly) {
  EXPECT_EQ(Dragged(130, 120, 140.4F, 130.6F), "110 111 60 40");
  EXPECT_EQ(Dragged(130, 120, -50, -60), "-30 -20 60 40");
  EXPECT_EQ(Dragged(130, 120, 9999, 9999), "372 282 60 40");
}

TEST_F(SizedLayer, ThatHadNoHeightLandsWithOnePixel) {
  for (const bool isFlat : {true, false}) {
    Room().UnloadLayerItems();
    Add(100, 100, isFlat ? 100.0F : 0.0F, isFlat ? 0.0F : 100.0F);
    const float x = isFlat ? 125.0F : 100.0F;
    const float y = isFlat ? 100.0F : 125.0F;
    Press(x, y);
    Release(x, y);
    EXPECT_EQ(Dragged(x, y, x + 10, y + 20), isFlat ? "110 120 100 1" : "110 120 1 100");
  }
}

TEST_F(SizedLayer, IsNotMovedWithAnotherTool) {
  Choose("Line");
  Press(130, 120);
  EXPECT_FALSE(Room().PickedDrag().IsUnderWay());
  Drag(150, 150);
  Release(150, 150);
  EXPECT_EQ(PlaceOf(Layer()), "99 99 60 40");
}

TEST_F(SizedLayer, UnloadedInTheDragIsLeftAlone) {
  Press(130, 120);
  Drag(150, 150);
  Form().TransLayers.Unload(2);
  Drag(160, 160);
  EXPECT_FALSE(Form().fr.Visible());
  EXPECT_FALSE(Room().PickedDrag().IsUnderWay());
  EXPECT_TRUE(events.errors.empty());
}

}  // namespace
}  // namespace kw::test
