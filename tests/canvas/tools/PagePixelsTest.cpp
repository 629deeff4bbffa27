// The page's pixels under the canvas, also of a page that is moved and larger on the canvas than its picture.

#include <gtest/gtest.h>

#include "canvas/tools/PagePixels.h"
#include "scene/CanvasItems.h"

namespace kw::test {
namespace {

constexpr Colour Ink = MakeColour(9, 8, 7);

// 6 by 4 pixels in grey 100 with a darker spot at (2, 1); on the canvas at (5, 7), twice as wide and thrice as high.
class PagePixels : public testing::Test {
protected:
  PagePixels() {
    Bitmap picture(6, 4, 24);
    for (std::int32_t y = 0; y < 4; ++y) {
      for (std::uint8_t& value : picture.MutableRow(y)) value = 100;
    }
    Put(picture, 2, 1, 10, 20, 30);
    page.SetPicture(picture);
    page.Move(5, 7, 12, 12);
  }
  static void Put(Bitmap& picture, std::size_t x, std::int32_t y, std::uint8_t red, std::uint8_t green,
                  std::uint8_t blue) {
    const auto row = picture.MutableRow(y);
    row[x * 3] = blue;
    row[x * 3 + 1] = green;
    row[x * 3 + 2] = red;
  }
  void Put(std::size_t x, std::int32_t y, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    Bitmap picture = page.Picture();
    Put(picture, x, y, red, green, blue);
    page.SetPicture(picture);
  }
  // The region as text: # for a pixel of it.
  std::vector<std::string> Region(float x, float y, int tolerance) {
    const auto region = RegionOfPageAt(page, x, y, Ink, tolerance);
    if (!region) return {"none"};
    place = {region->left, region->top, region->width, region->height};
    std::vector<std::string> rows;
    for (std::int32_t row = 0; row < region->picture.Height(); ++row) {
      std::string line;
      for (std::int32_t column = 0; column < region->picture.Width(); ++column) {
        EXPECT_EQ(region->picture.PixelAt(column, row), (Rgb{9, 8, 7}));
        line += region->picture.Row(row)[static_cast<std::size_t>(column) * 4 + 3] == 255 ? '#' : '.';
      }
      rows.push_back(line);
    }
    return rows;
  }

  using Rows = std::vector<std::string>;
  TransparentPicture page{"page"};
  std::vector<float> place;
};

TEST_F(PagePixels, HaveTheColourOfTheirPlaceOnTheCanvas) {
  const Colour grey = MakeColour(100, 100, 100);
  const Colour spot = MakeColour(10, 20, 30);
  // The spot is 2 by 3 pixels of the canvas, from (9, 10) on.
  for (int column = 16; column < 24; ++column) {
    for (int row = 18; row < 28; ++row) {
      const float x = static_cast<float>(column) / 2;
      const float y = static_cast<float>(row) / 2;
      const bool isSpot = x >= 9 && x < 11 && y >= 10 && y < 13;
      EXPECT_EQ(ColourOfPageAt(page, x, y), isSpot ? spot : grey) << x << ", " << y;
    }
  }
}

TEST_F(PagePixels, EndAtThePagesEdges) {
  for (const auto& [x, y] : {std::pair{5.0F, 7.0F}, {16.9F, 7.0F}, {5.0F, 18.9F}, {16.9F, 18.9F}}) {
    EXPECT_TRUE(ColourOfPageAt(page, x, y)) << x << ", " << y;
    EXPECT_TRUE(RegionOfPageAt(page, x, y, Ink, 0)) << x << ", " << y;
  }
  for (const auto& [x, y] : {std::pair{4.9F, 7.0F}, {5.0F, 6.9F}, {17.0F, 7.0F}, {5.0F, 19.0F}}) {
    EXPECT_FALSE(ColourOfPageAt(page, x, y)) << x << ", " << y;
    EXPECT_FALSE(RegionOfPageAt(page, x, y, Ink, 0)) << x << ", " << y;
  }
  page.SetPicture({});
  EXPECT_FALSE(ColourOfPageAt(page, 6, 8));
}

TEST_F(PagePixels, OfARegionLieWhereTheyAreOnTheCanvas) {
  EXPECT_EQ(Region(9, 10, 0), Rows{"#"});
  EXPECT_EQ(place, (std::vector<float>{9, 10, 2, 3}));
  EXPECT_EQ(Region(5, 7, 0), (Rows{"######", "##.###", "######", "######"}));
  EXPECT_EQ(place, (std::vector<float>{5, 7, 12, 12}));
  // A wall of three, so that the right of it is a region of its own.
  for (const std::int32_t y : {0, 2, 3}) Put(2, y, 10, 20, 30);
  EXPECT_EQ(Region(16, 18, 0), (Rows{"###", "###", "###", "###"}));
  EXPECT_EQ(place, (std::vector<float>{11, 7, 6, 12}));
  EXPECT_EQ(Region(5, 7, 0), (Rows{"##", "##", "##", "##"}));
  EXPECT_EQ(Region(9, 18, 0), (Rows{"#", "#", "#", "#"}));
  EXPECT_EQ(place, (std::vector<float>{9, 7, 2, 12}));
}

// A spiral: each arm is found from the other end, around corners upward and downward and on both sides.
TEST_F(PagePixels, OfARegionAreFoundAroundEveryCorner) {
  for (const std::int32_t x : {1, 2, 3, 4}) Put(static_cast<std::size_t>(x), 1, 10, 20, 30);
  Put(4, 2, 10, 20, 30);
  Put(1, 2, 10, 20, 30);
  Put(1, 3, 10, 20, 30);
  const Rows spiral{"######", "#....#", "#.##.#", "#.####"};
  EXPECT_EQ(Region(5, 18, 0), spiral);
  EXPECT_EQ(Region(10, 14, 0), spiral);
}

TEST_F(PagePixels, AreOfOneRegionUpToTheToleranceInEachColour) {
  for (const std::uint8_t value : {std::uint8_t{140}, std::uint8_t{60}}) {
    Put(0, 0, value, 100, 100);
    EXPECT_EQ(Region(16, 18, 40)[0], "######");
    Put(0, 0, 100, value, 100);
    EXPECT_EQ(Region(16, 18, 40)[0], "######");
    Put(0, 0, 100, 100, value);
    EXPECT_EQ(Region(16, 18, 40)[0], "######");
  }
  for (const std::uint8_t value : {std::uint8_t{141}, std::uint8_t{59}}) {
    Put(0, 0, value, 100, 100);
    EXPECT_EQ(Region(16, 18, 40)[0], ".#####");
    Put(0, 0, 100, value, 100);
    EXPECT_EQ(Region(16, 18, 40)[0], ".#####");
    Put(0, 0, 100, 100, value);
    EXPECT_EQ(Region(16, 18, 40)[0], ".#####");
  }
}

TEST_F(PagePixels, AreCopiedAsTheCanvasShowsThem) {
  const Bitmap copy = CopyOfPage(page, {12, 14, 17, 19});  // away from the spot
  ASSERT_EQ(copy.Width(), 5);
  ASSERT_EQ(copy.Height(), 5);
  EXPECT_EQ(copy.BitsPerPixel(), 24);
  EXPECT_EQ(copy.PixelAt(0, 0), (Rgb{100, 100, 100}));
  EXPECT_EQ(copy.PixelAt(4, 4), (Rgb{100, 100, 100}));
  page.Move(5, 7, 6, 4);
  const Bitmap own = CopyOfPage(page, {4, 6, 12, 12});
  for (std::int32_t y = 0; y < 6; ++y) {
    for (std::int32_t x = 0; x < 8; ++x) {
      const bool isPage = x >= 1 && x < 7 && y >= 1 && y < 5;
      const Rgb expected = x == 3 && y == 2 ? Rgb{10, 20, 30} : isPage ? Rgb{100, 100, 100} : Rgb{255, 255, 255};
      EXPECT_EQ(own.PixelAt(x, y), expected) << x << ", " << y;
    }
  }
}

TEST_F(PagePixels, OfARegionHaveAColourThatIsNoneOfTheirs) {
  EXPECT_EQ(OtherThan(0), 0xFFFFFFU);
  EXPECT_EQ(OtherThan(0x123456), 0xEDCBA9U);
}

}  // namespace
}  // namespace kw::test
