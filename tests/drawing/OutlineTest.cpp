#include "drawing/Outline.h"

#include <cmath>
#include <ctime>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "tests/drawing/Coverage.h"

namespace kw {
namespace {

using std::numbers::pi;
using test::Coverage;

constexpr PixelRect Clip = {0, 0, 200, 200};

// The exact area of an ellipse in one pixel, summed over narrow columns.
double EllipseAreaInPixel(const Box& box, std::int32_t x, std::int32_t y) {
  constexpr int columns = 400;
  const double radiusX = (box.right - box.left) / 2;
  const double radiusY = (box.bottom - box.top) / 2;
  double area = 0;
  for (int i = 0; i < columns; ++i) {
    const double u = (x + (i + 0.5) / columns - box.left - radiusX) / radiusX;
    if (std::abs(u) >= 1) continue;
    const double half = radiusY * std::sqrt(1 - u * u);
    const double middle = box.top + radiusY;
    area += std::max(0.0, std::min<double>(middle + half, y + 1) - std::max<double>(middle - half, y)) / columns;
  }
  return area;
}

TEST(OutlineTest, EveryPixelOfAnEllipseHasItsArea) {
  const Box boxes[] = {{50, 50, 150, 150}, {10.3, 20.7, 190.1, 60.2}, {30, 30, 33, 39}, {70.5, 70.5, 71.25, 71}};
  for (const Box& box : boxes) {
    Rasteriser rasteriser;
    rasteriser.Begin(Clip);
    AddEllipse(rasteriser, box);
    const Coverage covered(rasteriser);
    for (std::int32_t y = 0; y < 200; ++y) {
      for (std::int32_t x = 0; x < 200; ++x) {
        ASSERT_NEAR(covered.At(x, y), EllipseAreaInPixel(box, x, y) * 255, 2.1) << x << ' ' << y;
      }
    }
    const double area = pi * (box.right - box.left) * (box.bottom - box.top) / 4;
    EXPECT_NEAR(covered.Area(), area, 0.001 * area + 0.01);
  }
}

TEST(OutlineTest, APartOfALargeEllipseHasItsArea) {
  const Box boxes[] = {{-11900, -5900, 120.5, 6100}, {-3000, -90000, 4000, 60.25}, {40.5, 30, 9e8, 250}};
  for (const Box& box : boxes) {
    Rasteriser rasteriser;
    rasteriser.Begin(Clip);
    AddEllipse(rasteriser, box);
    const Coverage covered(rasteriser);
    for (std::int32_t y = 0; y < 200; ++y) {
      for (std::int32_t x = 0; x < 200; ++x) {
        ASSERT_NEAR(covered.At(x, y), EllipseAreaInPixel(box, x, y) * 255, 2.5) << x << ' ' << y;
      }
    }
  }
}

TEST(OutlineTest, TimeIsBoundedByTheClip) {
  const std::clock_t start = std::clock();
  Rasteriser rasteriser;
  double area = 0;
  for (int i = 0; i < 200; ++i) {
    rasteriser.Begin(Clip);
    AddEllipse(rasteriser, {-1.0 * i, -4e8, 8e8, 4e8});
    AddEllipseStroke(rasteriser, {-4e8, -2e8 + i, 4e8, 2e8}, 3e8);
    AddEllipseStroke(rasteriser, {-4e8, 100, 4e8, 101}, 7);
    const Point points[] = {{-5e8, 0}, {1e9, 3e8}, {100, 100}};
    AddPolylineStroke(rasteriser, points, 4e8 + i);
    area += Coverage(rasteriser).Area();
  }
  EXPECT_GT(area, 0);
  // Divided without regard to the clip they would take far longer.
  EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 10);
}

TEST(OutlineTest, AnEllipseIsSymmetric) {
  for (const double width : {0.0, 1.0, 7.5}) {
    Rasteriser rasteriser;
    rasteriser.Begin(Clip);
    if (width > 0) {
      AddEllipseStroke(rasteriser, {20.25, 60.5, 179.75, 139.5}, width);
    } else {
      AddEllipse(rasteriser, {20.25, 60.5, 179.75, 139.5});
    }
    const Coverage covered(rasteriser);
    ASSERT_GT(covered.Area(), 300);
    for (std::int32_t y = 0; y < 200; ++y) {
      for (std::int32_t x = 0; x < 200; ++x) {
        ASSERT_NEAR(covered.At(x, y), covered.At(199 - x, y), 1);
        ASSERT_NEAR(covered.At(x, y), covered.At(x, 199 - y), 1);
      }
    }
  }
}

TEST(OutlineTest, ACirclesLineHasTheAreaOfARing) {
  for (const double width : {0.25, 1.0, 4.0, 30.0}) {
    Rasteriser rasteriser;
    rasteriser.Begin(Clip);
    AddEllipseStroke(rasteriser, {50, 50, 150, 150}, width);
    const double area = pi * 100 * width;
    EXPECT_NEAR(Coverage(rasteriser).Area(), area, 0.004 * area + 0.1) << width;
  }
}

TEST(OutlineTest, ALineThickerThanTheEllipseHasNoHole) {
  Rasteriser rasteriser;
  rasteriser.Begin(Clip);
  AddEllipseStroke(rasteriser, {90, 90, 110, 110}, 60);
  const Coverage covered(rasteriser);
  EXPECT_NEAR(covered.Area(), pi * 40 * 40, 3);
  for (std::int32_t i = 65; i < 135; ++i) EXPECT_EQ(covered.At(i, 100), 255);
}

// The line of a flat ellipse is as thick at its sharp ends as in the middle.
TEST(OutlineTest, AFlatEllipsesLineIsEverywhereAsThick) {
  const Box box = {20, 90, 180, 110};
  constexpr double width = 9;
  Rasteriser rasteriser;
  rasteriser.Begin(Clip);
  AddEllipseStroke(rasteriser, box, width);
  const Coverage covered(rasteriser);
  for (std::int32_t y = 70; y < 130; ++y) {
    for (std::int32_t x = 0; x < 200; ++x) {
      double distance = 1000;
      for (int i = 0; i < 1000; ++i) {
        const double t = 2 * pi * i / 1000;
        distance = std::min(distance, std::hypot(100 + 80 * std::cos(t) - x - 0.5, 100 + 10 * std::sin(t) - y - 0.5));
      }
      if (distance < width / 2 - 0.75) {
        ASSERT_EQ(covered.At(x, y), 255) << x << ' ' << y;
      }
      if (distance > width / 2 + 0.75) {
        ASSERT_EQ(covered.At(x, y), 0) << x << ' ' << y;
      }
    }
  }
}

TEST(OutlineTest, ARectanglesLineHasSquareCorners) {
  Rasteriser rasteriser;
  rasteriser.Begin(Clip);
  AddRectangleStroke(rasteriser, {10.5, 20.5, 50.5, 60.5}, 3);
  const Coverage covered(rasteriser);
  EXPECT_DOUBLE_EQ(covered.Area(), 43 * 43 - 37 * 37);
  EXPECT_EQ(covered.At(9, 19), 255);
  EXPECT_EQ(covered.At(8, 19), 0);
  EXPECT_EQ(covered.At(12, 22), 0);
}

TEST(OutlineTest, ALineHasRoundEnds) {
  Rasteriser rasteriser;
  rasteriser.Begin(Clip);
  const Point ends[] = {{30, 40}, {150, 130}};
  AddPolylineStroke(rasteriser, ends, 12);
  EXPECT_NEAR(Coverage(rasteriser).Area(), 150 * 12 + pi * 36, 1.5);
}

TEST(OutlineTest, ASinglePointIsADisc) {
  for (const std::vector<Point>& points : {std::vector<Point>{{60, 60}}, std::vector<Point>{{60, 60}, {60, 60}}}) {
    Rasteriser rasteriser;
    rasteriser.Begin(Clip);
    AddPolylineStroke(rasteriser, points, 20);
    EXPECT_NEAR(Coverage(rasteriser).Area(), pi * 100, 0.5);
  }
}

TEST(OutlineTest, ABendIsRoundOutsideAndSharpInside) {
  const Point corners[] = {{40, 40}, {140, 40}, {140, 120}};
  Rasteriser rasteriser;
  rasteriser.Begin(Clip);
  AddPolylineStroke(rasteriser, corners, 20);
  const Coverage covered(rasteriser);
  // Two bars less the square that both cover, a quarter disc at the bend, half a disc at each end.
  EXPECT_NEAR(covered.Area(), 180 * 20 - 100 + pi * 100 * 1.25, 1);
  EXPECT_EQ(covered.At(149, 30), 0);
  EXPECT_EQ(covered.At(129, 50), 0);
  EXPECT_EQ(covered.At(130, 50), 255);
  EXPECT_EQ(covered.At(129, 49), 255);
}

TEST(OutlineTest, ALineInManyPiecesIsTheSameLine) {
  std::vector<Point> points;
  for (int i = 0; i <= 64; ++i) points.push_back({20.25 + i * 2.5, 30.5 + i * 1.75});
  Rasteriser rasteriser;
  rasteriser.Begin(Clip);
  AddPolylineStroke(rasteriser, points, 3.5);
  const Coverage pieces(rasteriser);
  const Point ends[] = {points.front(), points.back()};
  rasteriser.Begin(Clip);
  AddPolylineStroke(rasteriser, ends, 3.5);
  const Coverage whole(rasteriser);
  for (std::int32_t y = 0; y < 200; ++y) {
    for (std::int32_t x = 0; x < 200; ++x) ASSERT_NEAR(pieces.At(x, y), whole.At(x, y), 1) << x << ' ' << y;
  }
}

double DistanceTo(const Point& a, const Point& b, double x, double y) {
  const double dx = b.x - a.x;
  const double dy = b.y - a.y;
  const double square = dx * dx + dy * dy;
  const double t = square > 0 ? std::clamp(((x - a.x) * dx + (y - a.y) * dy) / square, 0.0, 1.0) : 0;
  return std::hypot(x - a.x - t * dx, y - a.y - t * dy);
}

// Strokes with every kind of bend, turned back upon themselves and with pieces shorter than they are wide.
TEST(OutlineTest, AStrokeCoversWhatIsNearItsLineAndNothingElse) {
  std::mt19937 random(4);
  std::uniform_real_distribution<double> place(30, 170);
  std::uniform_real_distribution<double> step(-9, 9);
  for (int round = 0; round < 60; ++round) {
    std::vector<Point> points = {{place(random), place(random)}};
    for (int i = 0; i < 12; ++i) {
      if (round % 2 == 0) {
        points.push_back({place(random), place(random)});
      } else {
        points.push_back({points.back().x + step(random), points.back().y + step(random)});
      }
      if (round % 3 == 0) points.push_back(points[points.size() / 2]);
    }
    const double width = 1 + round % 25;
    Rasteriser rasteriser;
    rasteriser.Begin(Clip);
    AddPolylineStroke(rasteriser, points, width);
    const Coverage covered(rasteriser);
    ASSERT_TRUE(covered.IsWellFormed());
    for (std::int32_t y = 0; y < 200; ++y) {
      for (std::int32_t x = 0; x < 200; ++x) {
        double distance = 1000;
        for (std::size_t i = 0; i + 1 < points.size(); ++i) {
          distance = std::min(distance, DistanceTo(points[i], points[i + 1], x + 0.5, y + 0.5));
        }
        if (distance < width / 2 - 0.75) {
          ASSERT_EQ(covered.At(x, y), 255) << round << ": " << x << ' ' << y;
        }
        if (distance > width / 2 + 0.75) {
          ASSERT_EQ(covered.At(x, y), 0) << round << ": " << x << ' ' << y;
        }
      }
    }
  }
}

TEST(OutlineTest, NoWidthAndNoPointsCoverNothing) {
  Rasteriser rasteriser;
  rasteriser.Begin(Clip);
  const Point ends[] = {{30, 40}, {150, 130}};
  AddPolylineStroke(rasteriser, ends, 0);
  AddPolylineStroke(rasteriser, ends, -3);
  AddPolylineStroke(rasteriser, {}, 5);
  AddRectangle(rasteriser, {50, 50, 40, 60});
  AddRectangleStroke(rasteriser, {10, 10, 50, 50}, 0);
  AddEllipse(rasteriser, {50, 50, 50, 90});
  AddEllipseStroke(rasteriser, {10, 10, 50, 50}, -1);
  EXPECT_EQ(Coverage(rasteriser).Area(), 0);
}

}  // namespace
}  // namespace kw
