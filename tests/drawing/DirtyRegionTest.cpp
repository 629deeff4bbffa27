#include "drawing/DirtyRegion.h"

#include <algorithm>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace kw {
namespace {

TEST(DirtyRegionTest, PartsFarFromEachOtherStayApart) {
  DirtyRegion region;
  region.Add({0, 0, 10, 10});
  region.Add({50, 50, 60, 60});
  EXPECT_EQ(region.Parts().size(), 2U);
}

TEST(DirtyRegionTest, PartsThatOverlapBecomeOne) {
  DirtyRegion region;
  region.Add({0, 0, 10, 10});
  region.Add({2, 0, 12, 10});
  EXPECT_EQ(region.Parts(), (std::vector<PixelRect>{{0, 0, 12, 10}}));
  region.Add({3, 3, 5, 5});
  EXPECT_EQ(region.Parts(), (std::vector<PixelRect>{{0, 0, 12, 10}}));
}

TEST(DirtyRegionTest, EmptyPartsAreNotKept) {
  DirtyRegion region;
  region.Add({5, 5, 5, 9});
  region.Add({9, 9, 1, 1});
  EXPECT_TRUE(region.Parts().empty());
}

TEST(DirtyRegionTest, ManyPartsBecomeFewThatCoverThemAll) {
  std::mt19937 random(7);
  std::vector<PixelRect> added;
  DirtyRegion region;
  for (int i = 0; i < 1000; ++i) {
    const auto left = static_cast<std::int32_t>(random() % 10000);
    const auto top = static_cast<std::int32_t>(random() % 10000);
    added.push_back({left, top, left + 1 + static_cast<std::int32_t>(random() % 30), top + 7});
    region.Add(added.back());
    ASSERT_LE(region.Parts().size(), DirtyRegion::MostParts);
  }
  for (const PixelRect& part : added) {
    EXPECT_TRUE(
        std::ranges::any_of(region.Parts(), [&](const PixelRect& whole) { return Common(whole, part) == part; }));
  }
}

TEST(DirtyRegionTest, EnormousPartsAreSafe) {
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  DirtyRegion region;
  region.Add({most - 1, most - 1, most, most});
  region.Add({least, least, least + 1, least + 1});
  EXPECT_EQ(region.Parts().size(), 2U);
  region.Add({least, least, most, most});
  EXPECT_EQ(region.Parts(), (std::vector<PixelRect>{{least, least, most, most}}));
}

}  // namespace
}  // namespace kw
