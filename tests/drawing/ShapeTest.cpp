#include "drawing/Shape.h"

#include <gtest/gtest.h>

#include "tests/drawing/Canvas.h"

namespace kw {
namespace {

using test::Canvas;
using test::White;

constexpr PixelRect Area = {-10, -10, 30, 30};
constexpr Colour Red = MakeColour(255, 0, 0);
constexpr Colour Blue = MakeColour(0, 0, 255);

std::vector<std::uint32_t> Drawn(const Shape& shape, const DrawOptions& options = {}, Point origin = {}) {
  const Canvas canvas(Area, PixelOf(White));
  Rasteriser rasteriser;
  DrawShape(canvas.Buffer(), shape, origin, Area, options, rasteriser);
  return canvas.Pixels();
}

std::uint32_t At(const std::vector<std::uint32_t>& pixels, std::int32_t x, std::int32_t y) {
  return pixels[static_cast<std::size_t>(y - Area.top) * 40 + static_cast<std::size_t>(x - Area.left)];
}

Shape FilledBox() {
  Shape shape;
  shape.box = {2, 3, 12, 11};
  shape.lineWidth = 2;
  shape.lineColour = Red;
  shape.fill = Blue;
  return shape;
}

TEST(ShapeTest, TheLineLiesAboveTheFill) {
  const auto pixels = Drawn(FilledBox());
  EXPECT_EQ(At(pixels, 1, 2), PixelOf(Red));  // half of the line is outside the box
  EXPECT_EQ(At(pixels, 2, 3), PixelOf(Red));
  EXPECT_EQ(At(pixels, 3, 4), PixelOf(Blue));
  EXPECT_EQ(At(pixels, 10, 9), PixelOf(Blue));
  EXPECT_EQ(At(pixels, 11, 10), PixelOf(Red));
  EXPECT_EQ(At(pixels, 13, 12), PixelOf(White));
}

TEST(ShapeTest, CoordinatesCountFromTheOrigin) {
  const auto pixels = Drawn(FilledBox(), {}, {-8, 7});
  EXPECT_EQ(At(pixels, -7, 9), PixelOf(Red));
  EXPECT_EQ(At(pixels, -5, 11), PixelOf(Blue));
  EXPECT_EQ(At(pixels, 3, 4), PixelOf(White));
}

TEST(ShapeTest, WhatHasTheTransparentColourIsLeftOut) {
  const auto outline = Drawn(FilledBox(), {.transparent = Blue});
  EXPECT_EQ(At(outline, 2, 3), PixelOf(Red));
  EXPECT_EQ(At(outline, 6, 7), PixelOf(White));
  const auto inside = Drawn(FilledBox(), {.transparent = Red});
  EXPECT_EQ(At(inside, 1, 2), PixelOf(White));
  EXPECT_EQ(At(inside, 2, 3), PixelOf(Blue));
}

TEST(ShapeTest, LighteningGoesHalfwayToWhite) {
  const auto pixels = Drawn(FilledBox(), {.isLightened = true});
  EXPECT_EQ(At(pixels, 2, 3), 0xFF8080U);
  EXPECT_EQ(At(pixels, 6, 7), 0x8080FFU);
}

TEST(ShapeTest, HalfCoveredPixelsAreHalfMixed) {
  Shape shape = FilledBox();
  shape.box = {2.5, 3, 12, 11};
  shape.lineWidth = 0;
  EXPECT_EQ(At(Drawn(shape), 2, 5), 0x7F7FFFU);
}

TEST(ShapeTest, ALineRunsBetweenAnyTwoCorners) {
  Shape line;
  line.kind = Shape::Kind::Line;
  line.box = {20, 2.5, 4, 2.5};
  line.lineWidth = 3;
  const auto backward = Drawn(line);
  EXPECT_EQ(At(backward, 10, 1), 0U);
  EXPECT_EQ(At(backward, 10, 3), 0U);
  EXPECT_EQ(At(backward, 10, 4), PixelOf(White));
  line.box = {4, 2.5, 20, 2.5};
  EXPECT_EQ(Drawn(line), backward);
  Shape polyline;
  polyline.kind = Shape::Kind::Polyline;
  polyline.points = {{4, 2.5}, {20, 2.5}};
  polyline.lineWidth = 3;
  EXPECT_EQ(Drawn(polyline), backward);
}

TEST(ShapeTest, OnlyThePartIsDrawn) {
  const Canvas canvas(Area, PixelOf(White));
  Rasteriser rasteriser;
  DrawShape(canvas.Buffer(), FilledBox(), {}, {4, 5, 5, 6}, {}, rasteriser);
  for (std::int32_t y = Area.top; y < Area.bottom; ++y) {
    for (std::int32_t x = Area.left; x < Area.right; ++x) {
      EXPECT_EQ(canvas.At(x, y), x == 4 && y == 5 ? PixelOf(Blue) : PixelOf(White));
    }
  }
}

TEST(ShapeTest, ABufferOfOnePixelTakesEveryShape) {
  for (const auto kind : {Shape::Kind::Rectangle, Shape::Kind::Ellipse, Shape::Kind::Line, Shape::Kind::Polyline}) {
    Shape shape;
    shape.kind = kind;
    shape.box = {-1e6, -1e6, 1e6, 1e6};
    shape.points = {{-1e6, -1e6}, {1e6, 1e6}};
    shape.lineWidth = 10;
    shape.lineColour = Red;
    shape.fill = Red;
    const Canvas canvas({0, 0, 1, 1});
    Rasteriser rasteriser;
    DrawShape(canvas.Buffer(), shape, {}, {0, 0, 1, 1}, {}, rasteriser);
    EXPECT_EQ(canvas.At(0, 0), PixelOf(Red));
  }
}

}  // namespace
}  // namespace kw
