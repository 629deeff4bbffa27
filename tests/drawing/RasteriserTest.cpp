#include "drawing/Rasteriser.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "drawing/Outline.h"
#include "tests/drawing/Coverage.h"

namespace kw {
namespace {

using test::AddPolygon;
using test::AreaInPixel;
using test::Coverage;

double Overlap(double low, double high, std::int32_t at) {
  return std::max(0.0, std::min<double>(high, at + 1) - std::max<double>(low, at));
}

TEST(RasteriserTest, AxisAlignedEdgesCoverTheirExactArea) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> place(-3, 23);
  constexpr PixelRect clip = {0, 0, 20, 20};
  Rasteriser rasteriser;
  for (int round = 0; round < 500; ++round) {
    Box box = {place(random), place(random), place(random), place(random)};
    if (box.left > box.right) std::swap(box.left, box.right);
    if (box.top > box.bottom) std::swap(box.top, box.bottom);
    rasteriser.Begin(clip);
    AddRectangle(rasteriser, box);
    const Coverage covered(rasteriser);
    ASSERT_TRUE(covered.IsWellFormed());
    for (std::int32_t y = 0; y < 20; ++y) {
      for (std::int32_t x = 0; x < 20; ++x) {
        const double area = Overlap(box.left, box.right, x) * Overlap(box.top, box.bottom, y);
        // Rounding to a whole step takes half a step; the rest is the counters' resolution.
        ASSERT_NEAR(covered.At(x, y), area * 255, 0.53) << x << ' ' << y;
      }
    }
  }
}

TEST(RasteriserTest, SlantedEdgesCoverTheirExactArea) {
  std::mt19937 random(2);
  std::uniform_real_distribution<double> place(-8, 24);
  constexpr PixelRect clip = {0, 0, 16, 16};
  Rasteriser rasteriser;
  for (int round = 0; round < 300; ++round) {
    const std::vector<Point> triangle = {
        {place(random), place(random)}, {place(random), place(random)}, {place(random), place(random)}};
    rasteriser.Begin(clip);
    AddPolygon(rasteriser, triangle);
    const Coverage covered(rasteriser);
    ASSERT_TRUE(covered.IsWellFormed());
    for (std::int32_t y = 0; y < 16; ++y) {
      for (std::int32_t x = 0; x < 16; ++x) {
        ASSERT_NEAR(covered.At(x, y), AreaInPixel(triangle, x, y) * 255, 0.56) << round << ": " << x << ' ' << y;
      }
    }
  }
}

TEST(RasteriserTest, TheDirectionOfAnOutlineDoesNotMatter) {
  constexpr PixelRect clip = {0, 0, 12, 12};
  const std::vector<Point> there = {{1.3, 2.1}, {10.7, 3.9}, {4.4, 11.2}};
  Rasteriser rasteriser;
  rasteriser.Begin(clip);
  AddPolygon(rasteriser, there);
  const Coverage a(rasteriser);
  rasteriser.Begin(clip);
  AddPolygon(rasteriser, {there.rbegin(), there.rend()});
  const Coverage b(rasteriser);
  EXPECT_GT(a.Area(), 10);
  for (std::int32_t y = 0; y < 12; ++y) {
    for (std::int32_t x = 0; x < 12; ++x) EXPECT_EQ(a.At(x, y), b.At(x, y));
  }
}

TEST(RasteriserTest, FiguresAddedTogetherUnite) {
  Rasteriser rasteriser;
  rasteriser.Begin({0, 0, 10, 10});
  AddRectangle(rasteriser, {1, 1, 6, 6});
  AddRectangle(rasteriser, {4, 4, 9, 9});
  const Coverage covered(rasteriser);
  EXPECT_DOUBLE_EQ(covered.Area(), 25 + 25 - 4);
  EXPECT_EQ(covered.At(5, 5), 255);
}

TEST(RasteriserTest, AHoleIsAnOutlineOfTheOtherDirection) {
  Rasteriser rasteriser;
  rasteriser.Begin({0, 0, 10, 10});
  AddPolygon(rasteriser, {{1, 1}, {9, 1}, {9, 9}, {1, 9}});
  AddPolygon(rasteriser, {{3, 3}, {3, 7}, {7, 7}, {7, 3}});
  const Coverage covered(rasteriser);
  EXPECT_DOUBLE_EQ(covered.Area(), 64 - 16);
  EXPECT_EQ(covered.At(5, 5), 0);
}

// A part drawn by itself must fit into the whole to the last bit.
TEST(RasteriserTest, CoverageDoesNotDependOnTheClip) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> place(-30, 90);
  std::uniform_int_distribution<std::int32_t> pixel(0, 59);
  Rasteriser rasteriser;
  for (int round = 0; round < 300; ++round) {
    const std::vector<Point> points = {{place(random), place(random)},
                                       {place(random), place(random)},
                                       {place(random), place(random)},
                                       {place(random), place(random)}};
    const Box box = {points[0].x, points[0].y, points[0].x + std::abs(points[1].x),
                     points[0].y + std::abs(points[1].y)};
    const double width = std::abs(points[2].x) / 4;
    const auto add = [&] {
      switch (round % 5) {
        case 0:
          AddPolygon(rasteriser, points);
          break;
        case 1:
          AddEllipse(rasteriser, box);
          break;
        case 2:
          AddEllipseStroke(rasteriser, box, width);
          break;
        case 3:
          AddPolylineStroke(rasteriser, points, width);
          break;
        default:
          AddRectangleStroke(rasteriser, box, width);
      }
    };
    rasteriser.Begin({0, 0, 60, 60});
    add();
    const Coverage whole(rasteriser);
    const std::int32_t left = pixel(random);
    const std::int32_t top = pixel(random);
    const PixelRect part = {left, top, left + 1 + pixel(random) % (60 - left), top + 1 + pixel(random) % (60 - top)};
    rasteriser.Begin(part);
    add();
    const Coverage piece(rasteriser);
    ASSERT_TRUE(piece.IsWellFormed());
    for (std::int32_t y = part.top; y < part.bottom; ++y) {
      for (std::int32_t x = part.left; x < part.right; ++x) ASSERT_EQ(piece.At(x, y), whole.At(x, y)) << round;
    }
  }
}

TEST(RasteriserTest, AFigureLargerThanABandIsWhole) {
  // 3000 columns are swept about ten rows at a time.
  const PixelRect clip = {-1000, -50, 2000, 250};
  // Every edge's part of a pixel is a whole number of 255ths.
  const Box box = {-999.6, -20.2, 1999.8, 240.4};
  Rasteriser rasteriser;
  rasteriser.Begin(clip);
  AddRectangle(rasteriser, box);
  EXPECT_NEAR(Coverage(rasteriser).Area(), (box.right - box.left) * (box.bottom - box.top), 0.05);
}

TEST(RasteriserTest, EnormousCoordinatesAreSafe) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nothing = std::numeric_limits<double>::quiet_NaN();
  const double values[] = {-infinity, -1e300, -3e9, -5, 0, 5, 3e9, 1e300, infinity, nothing};
  Rasteriser rasteriser;
  for (const double a : values) {
    for (const double b : values) {
      for (const double c : values) {
        const std::vector<Point> points = {{a, b}, {b, c}, {c, a}};
        rasteriser.Begin({-8, -8, 8, 8});
        AddPolygon(rasteriser, points);
        AddRectangle(rasteriser, {a, b, c, a});
        AddRectangleStroke(rasteriser, {a, b, c, c}, b);
        AddEllipse(rasteriser, {a, b, c, c});
        AddEllipseStroke(rasteriser, {a, a, b, b}, c);
        AddPolylineStroke(rasteriser, points, 3);
        AddPolylineStroke(rasteriser, points, c);
        EXPECT_TRUE(Coverage(rasteriser).IsWellFormed());
      }
    }
  }
}

// An edge that all but stands upright over the whole range crosses from one column to the next somewhere.
TEST(RasteriserTest, AnEdgeOfEnormousSlopeIsSafe) {
  for (const double x : {1.0, 3.0, 4.0}) {
    Rasteriser rasteriser;
    rasteriser.Begin({0, 0, 6, 8});
    AddPolygon(rasteriser, {{std::nextafter(x, 0), -1e9}, {x, 1e9}, {6, 1e9}, {6, -1e9}});
    EXPECT_DOUBLE_EQ(Coverage(rasteriser).Area(), (6 - x) * 8);
    rasteriser.Begin({0, 0, 6, 8});
    AddPolygon(rasteriser, {{x, -1e9}, {std::nextafter(x, 0), 1e9}, {6, 1e9}, {6, -1e9}});
    EXPECT_DOUBLE_EQ(Coverage(rasteriser).Area(), (6 - x) * 8);
  }
}

TEST(RasteriserTest, AFigureFarLargerThanTheClipCoversAllOfIt) {
  Rasteriser rasteriser;
  rasteriser.Begin({0, 0, 1, 1});
  AddRectangle(rasteriser, {-1e300, -1e300, 1e300, 1e300});
  EXPECT_EQ(Coverage(rasteriser).At(0, 0), 255);
  rasteriser.Begin({0, 0, 1, 1});
  AddEllipse(rasteriser, {-9e8, -9e8, 9e8, 9e8});
  EXPECT_EQ(Coverage(rasteriser).At(0, 0), 255);
  rasteriser.Begin({-4, -4, 4, 4});
  AddEllipse(rasteriser, {0, -4e8, 8e8, 4e8});  // so large that its left end is straight
  const Coverage half(rasteriser);
  EXPECT_EQ(half.At(-1, 0), 0);
  EXPECT_EQ(half.At(0, 0), 255);
  EXPECT_DOUBLE_EQ(half.Area(), 32);
}

TEST(RasteriserTest, MoreOverlapsThanTheCountersHoldAreSafe) {
  Rasteriser rasteriser;
  rasteriser.Begin({0, 0, 4, 4});
  for (int i = 0; i < 65536; ++i) AddRectangle(rasteriser, {0.5, 0.5, 3.5, 3.5});
  EXPECT_TRUE(Coverage(rasteriser).IsWellFormed());
}

TEST(RasteriserTest, AnEmptyClipTakesEverything) {
  Rasteriser rasteriser;
  rasteriser.Begin({5, 5, 5, 9});
  AddEllipse(rasteriser, {0, 0, 10, 10});
  rasteriser.Sweep([](std::int32_t, std::int32_t, std::int32_t, int) { FAIL(); });
}

}  // namespace
}  // namespace kw
