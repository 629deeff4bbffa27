#include "scene/HitTest.h"

#include <gtest/gtest.h>

#include <limits>

#include "components/controls/LightWeightMarker.h"
#include "tests/support/Errors.h"

namespace kw::test {
namespace {

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

// How many whole points of a rectangle, its edges included, are inside.
template <class Test>
int CountInside(const Test& isInside, int left, int top, int right, int bottom) {
  int count = 0;
  for (int y = top; y <= bottom; ++y) {
    for (int x = left; x <= right; ++x) count += isInside(static_cast<float>(x), static_cast<float>(y)) ? 1 : 0;
  }
  return count;
}

TEST(IsPointInTest, RoundsTheControlsEdgesAndThePoint) {
  LightWeightMarker marker("marker");
  marker.Move(10.4F, 20.6F, 5, 5);
  EXPECT_TRUE(IsPointIn(marker, 9.6F, 21));
  EXPECT_FALSE(IsPointIn(marker, 9.4F, 21));
  EXPECT_FALSE(IsPointIn(marker, 10, 20));
  EXPECT_TRUE(IsPointIn(marker, 15.4F, 26.4F));
  EXPECT_FALSE(IsPointIn(marker, 15.6F, 26));
  EXPECT_TRUE(IsPointInItem(marker, 15, 26));
  EXPECT_FALSE(IsPointInItem(marker, 16, 26));
}

TEST(IsPointInTest, AnEmptyControlStillHasItsCorner) {
  const LightWeightMarker marker("marker");
  EXPECT_TRUE(IsPointIn(marker, 0, 0));
  EXPECT_FALSE(IsPointIn(marker, 1, 0));
}

TEST(IsPointInTest, OfAPickedLayerIncludesItsFrame) {
  TransparentPicture layer("layer");
  layer.Move(10, 20, 5, 7);
  const auto isInside = [&](float x, float y) { return IsPointInLayer(layer, x, y); };
  EXPECT_EQ(CountInside(isInside, 0, 0, 40, 40), 6 * 8);
  EXPECT_TRUE(isInside(10, 20));
  EXPECT_TRUE(isInside(15, 27));
  layer.SetSelectionFrame(1);
  const auto left = static_cast<int>(layer.Left());
  const auto top = static_cast<int>(layer.Top());
  EXPECT_EQ(CountInside(isInside, 0, 0, 40, 40), 7 * 9);
  EXPECT_EQ(CountInside(isInside, left, top, left + 6, top + 8), 7 * 9) << "from the frame's corner";
  EXPECT_TRUE(IsPointInItem(layer, layer.Left() + 6, layer.Top() + 8));
  EXPECT_FALSE(IsPointInItem(layer, layer.Left() + 7, layer.Top() + 8));
}

}  // namespace
}  // namespace kw::test
