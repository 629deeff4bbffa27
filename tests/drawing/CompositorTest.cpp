#include "drawing/Compositor.h"

#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "tests/drawing/Canvas.h"
#include "tests/drawing/PatternText.h"

namespace kw {
namespace {

using test::Canvas;
using test::PatternText;
using test::White;

constexpr PixelRect Screen = {0, 0, 120, 90};

Bitmap Plain(std::int32_t width, std::int32_t height, Rgb colour) {
  Bitmap picture(width, height, 24);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = picture.MutableRow(y);
    for (std::size_t i = 0; i + 2 < row.size(); i += 3) {
      row[i] = colour.blue;
      row[i + 1] = colour.green;
      row[i + 2] = colour.red;
    }
  }
  return picture;
}

// The pixels of all of the area, composed afresh.
std::vector<std::uint32_t> Composed(const std::vector<DisplayItem>& items, const PixelRect& area) {
  PatternText texts;
  Compositor compositor(White);
  compositor.Show(items);
  const Canvas canvas(area);
  compositor.Paint(canvas.Buffer(), area, &texts);
  return canvas.Pixels();
}

class RandomItems {
public:
  explicit RandomItems(unsigned seed) : random(seed) {
    for (const int depth : {1, 4, 8, 24, 32}) {
      Bitmap picture(Number(1, 30), Number(1, 30), depth);
      for (std::int32_t y = 0; y < picture.Height(); ++y) {
        for (std::uint8_t& byte : picture.MutableRow(y)) byte = static_cast<std::uint8_t>(random());
      }
      pictures.push_back(picture);
    }
  }

  std::int32_t Number(std::int32_t low, std::int32_t high) {
    return std::uniform_int_distribution<std::int32_t>(low, high)(random);
  }
  Colour AnyColour() { return static_cast<Colour>(Number(0, 0xFFFFFF)); }
  double Fraction(double high) { return std::uniform_real_distribution<double>(-2, high)(random); }

  PixelRect Place() {
    const std::int32_t left = Number(-20, 115);
    const std::int32_t top = Number(-20, 85);
    return {left, top, left + Number(0, 50), top + Number(0, 40)};
  }

  DisplayItem Make() {
    DisplayItem item;
    item.key = ++lastKey;
    Change(item);
    return item;
  }

  std::vector<DisplayItem> Many(std::size_t count) {
    std::vector<DisplayItem> items(count);
    for (DisplayItem& item : items) item = Make();
    return items;
  }

  void Change(DisplayItem& item) {
    item.bounds = Place();
    item.background = Number(0, 5) == 0 ? std::optional(AnyColour()) : std::nullopt;
    item.picture = Number(0, 1) == 0 ? pictures[static_cast<std::size_t>(Number(0, 4))] : Bitmap();
    item.options = {};
    if (Number(0, 1) == 0) item.options.transparent = Number(0, 1) == 0 ? White : Colour{0};
    item.options.isLightened = Number(0, 3) == 0;
    item.shape.reset();
    if (Number(0, 1) == 0) {
      Shape shape;
      shape.kind = static_cast<Shape::Kind>(Number(0, 3));
      shape.box = {Fraction(20), Fraction(20), Fraction(50), Fraction(50)};
      for (int i = 0; i < 6; ++i) shape.points.push_back({Fraction(50), Fraction(40)});
      shape.lineWidth = Fraction(9);
      shape.lineColour = AnyColour();
      if (Number(0, 1) == 0) shape.fill = AnyColour();
      item.shape = shape;
    }
    item.text.reset();
    if (Number(0, 3) == 0) item.text = TextRun{"a layer", {}, AnyColour()};
    item.frame = static_cast<DisplayItem::Frame>(Number(0, 2));
    item.frameColour = AnyColour();
    item.frameWidth = Number(1, 3);
    item.hasHandles = Number(0, 4) == 0;
  }

private:
  std::mt19937 random;
  std::vector<Bitmap> pictures;
  std::uint64_t lastKey = 0;
};

// Thousands of changes of every kind, each painted by its dirty parts only.
TEST(CompositorTest, PaintingDirtyPartsEqualsPaintingAll) {
  RandomItems make(1);
  PatternText texts;
  Compositor compositor(White);
  const Canvas canvas(Screen);
  compositor.Paint(canvas.Buffer(), Screen, &texts);
  std::vector<DisplayItem> items;
  for (int step = 0; step < 2000; ++step) {
    const auto pick = [&] {
      return static_cast<std::ptrdiff_t>(make.Number(0, static_cast<std::int32_t>(items.size()) - 1));
    };
    switch (items.size() < 4 ? 0 : make.Number(0, 6)) {
      case 0:
        items.insert(items.begin() + make.Number(0, static_cast<std::int32_t>(items.size())), make.Make());
        break;
      case 1:
        items.erase(items.begin() + pick());
        break;
      case 2:
        make.Change(items[static_cast<std::size_t>(pick())]);
        break;
      case 3: {
        DisplayItem& moved = items[static_cast<std::size_t>(pick())];
        const PixelRect place = make.Place();
        moved.bounds = {place.left, place.top, place.left + moved.bounds.Width(), place.top + moved.bounds.Height()};
        break;
      }
      case 4: {  // brought to the front
        const auto at = items.begin() + pick();
        std::rotate(at, at + 1, items.end());
        break;
      }
      case 5:
        std::swap(items[static_cast<std::size_t>(pick())], items[static_cast<std::size_t>(pick())]);
        break;
      default:
        if (items.size() > 20) items.resize(10);
    }
    for (const PixelRect& part : compositor.Show(items)) compositor.Paint(canvas.Buffer(), part, &texts);
    ASSERT_EQ(canvas.Pixels(), Composed(items, Screen)) << step;
  }
}

TEST(CompositorTest, PaintingAPartTouchesNothingElse) {
  RandomItems make(2);
  PatternText texts;
  for (int round = 0; round < 200; ++round) {
    Compositor compositor(White);
    std::vector<DisplayItem> items = make.Many(12);
    compositor.Show(items);
    const Canvas canvas(Screen);
    const PixelRect part = make.Place();
    compositor.Paint(canvas.Buffer(), part, &texts);
    for (std::int32_t y = 0; y < Screen.bottom; ++y) {
      for (std::int32_t x = 0; x < Screen.right; ++x) {
        const bool isInside = x >= part.left && x < part.right && y >= part.top && y < part.bottom;
        if (!isInside) {
          ASSERT_EQ(canvas.At(x, y), Canvas::Untouched);
        }
      }
    }
  }
}

TEST(CompositorTest, AMovedItemDirtiesItsOldAndItsNewPlaceOnly) {
  RandomItems make(3);
  std::vector<DisplayItem> items = make.Many(500);
  items[250].bounds = {10, 10, 30, 30};
  Compositor compositor(White);
  compositor.Show(items);
  EXPECT_TRUE(compositor.Show(items).empty());
  items[250].bounds = {60, 50, 80, 70};
  const auto parts = compositor.Show(items);
  ASSERT_EQ(parts.size(), 2U);
  EXPECT_TRUE((parts[0] == PixelRect{60, 50, 80, 70} && parts[1] == PixelRect{10, 10, 30, 30}) ||
              (parts[1] == PixelRect{60, 50, 80, 70} && parts[0] == PixelRect{10, 10, 30, 30}));
}

TEST(CompositorTest, ABareFrameDirtiesItsLinesOnly) {
  DisplayItem band;
  band.key = 1;
  band.bounds = {10, 10, 110, 90};
  band.frame = DisplayItem::Frame::Solid;
  const auto areaOf = [](const std::vector<PixelRect>& parts) {
    std::int32_t area = 0;
    for (const PixelRect& part : parts) area += part.Width() * part.Height();
    return area;
  };
  Compositor compositor(White);
  EXPECT_EQ(areaOf(compositor.Show({band})), 2 * 100 + 2 * 78);
  band.hasHandles = true;
  compositor.Show({band});
  band.hasHandles = false;
  band.bounds = {20, 20, 100, 80};
  EXPECT_LT(areaOf(compositor.Show({band})), 100 * 80 / 5);
  band.background = White;
  EXPECT_EQ(areaOf(compositor.Show({band})), 80 * 60) << "what fills its place shows in all of it";
  band.background.reset();
  EXPECT_EQ(areaOf(compositor.Show({band})), 80 * 60);
  band.bounds = {20, 20, 22, 80};
  compositor.Show({});
  EXPECT_EQ(areaOf(compositor.Show({band})), 2 * 60) << "no more than its place";
}

TEST(CompositorTest, TheFormerListComesBackForItsMemory) {
  std::vector<DisplayItem> list(3);
  for (std::size_t i = 0; i < 3; ++i) list[i].key = i + 1;
  Compositor compositor(White);
  compositor.Exchange(list);
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(compositor.Items().size(), 3U);
  compositor.Exchange(list);
  EXPECT_EQ(list.size(), 3U);
  EXPECT_TRUE(compositor.Items().empty());
}

TEST(CompositorTest, ARestackedItemDirtiesItsOwnPlaceOnly) {
  RandomItems make(4);
  std::vector<DisplayItem> items = make.Many(50);
  items[7].bounds = {5, 6, 25, 26};
  Compositor compositor(White);
  compositor.Show(items);
  std::rotate(items.begin() + 7, items.begin() + 8, items.end());
  EXPECT_EQ(compositor.Show(items), (std::vector<PixelRect>{{5, 6, 25, 26}}));
  std::rotate(items.begin(), items.end() - 1, items.end());
  EXPECT_EQ(compositor.Show(items), (std::vector<PixelRect>{{5, 6, 25, 26}}));
}

TEST(CompositorTest, APictureThatWasWrittenToIsNoticed) {
  DisplayItem item{.key = 1, .bounds = {0, 0, 4, 4}, .picture = Plain(4, 4, {10, 20, 30})};
  Compositor compositor(White);
  compositor.Show({item});
  EXPECT_TRUE(compositor.Show({item}).empty());
  item.picture.MutableRow(0)[0] = 99;
  EXPECT_EQ(compositor.Show({item}).size(), 1U);
}

TEST(CompositorTest, LayersLieAboveThePageAndItAboveItsBackground) {
  const DisplayItem background{
      .key = 1, .bounds = {0, 0, 10, 10}, .picture = Plain(10, 10, {0, 0, 0}), .options = {.isLightened = true}};
  Bitmap paper = Plain(8, 8, {255, 255, 255});
  paper.MutableRow(2)[6] = 0;  // a yellow dot
  const DisplayItem page{.key = 2, .bounds = {0, 0, 8, 8}, .picture = paper, .options = {.transparent = White}};
  const DisplayItem layer{
      .key = 3, .bounds = {4, 4, 9, 9}, .background = MakeColour(255, 0, 0), .frame = DisplayItem::Frame::Solid};
  Compositor compositor(White);
  compositor.Show({background, page, layer});
  const Canvas canvas({0, 0, 12, 12});
  compositor.Paint(canvas.Buffer(), {0, 0, 12, 12}, nullptr);
  EXPECT_EQ(canvas.At(1, 1), 0x808080U);  // the background, paler, through the paper
  EXPECT_EQ(canvas.At(2, 2), 0xFFFF00U);  // the page
  EXPECT_EQ(canvas.At(5, 5), 0xFF0000U);  // the layer
  EXPECT_EQ(canvas.At(4, 6), 0U);         // its frame
  EXPECT_EQ(canvas.At(8, 8), 0U);
  EXPECT_EQ(canvas.At(9, 9), 0x808080U);
  EXPECT_EQ(canvas.At(11, 11), 0xFFFFFFU);  // the ground
}

TEST(CompositorTest, AFillOfTheTransparentColourIsNotThere) {
  Shape circle;
  circle.kind = Shape::Kind::Ellipse;
  circle.box = {2, 2, 18, 18};
  circle.lineWidth = 2;
  circle.fill = Colour{20};
  DisplayItem layer{.key = 1, .bounds = {0, 0, 20, 20}, .shape = circle, .options = {.transparent = Colour{20}}};
  Compositor compositor(White);
  compositor.Show({layer});
  const Canvas canvas({0, 0, 20, 20});
  compositor.Paint(canvas.Buffer(), {0, 0, 20, 20}, nullptr);
  EXPECT_EQ(canvas.At(10, 10), 0xFFFFFFU);
  EXPECT_EQ(canvas.At(2, 10), 0U);
  layer.options.transparent = Colour{21};
  compositor.Show({layer});
  compositor.Paint(canvas.Buffer(), {0, 0, 20, 20}, nullptr);
  EXPECT_EQ(canvas.At(10, 10), PixelOf(Colour{20}));
}

TEST(CompositorTest, TextIsBlendedByItsMask) {
  const DisplayItem layer{.key = 1, .bounds = {0, 0, 8, 4}, .text = TextRun{"@", {}, MakeColour(0, 0, 0)}};
  Compositor compositor(White);
  compositor.Show({layer});
  const Canvas canvas({0, 0, 8, 4});
  PatternText texts;
  compositor.Paint(canvas.Buffer(), {0, 0, 8, 4}, &texts);
  EXPECT_EQ(canvas.At(0, 0), 0xFFFFFFU);
  EXPECT_EQ(canvas.At(1, 0), 0xBFBFBFU);  // 64 of 255
  EXPECT_EQ(canvas.At(2, 0), 0x7F7F7FU);
}

TEST(CompositorTest, HandlesAreInsideThePlace) {
  const PixelRect place = {10, 20, 111, 91};
  const auto handles = HandlesOf(place);
  for (const PixelRect& handle : handles) {
    EXPECT_EQ(handle.Width(), 5);
    EXPECT_EQ(handle.Height(), 5);
    EXPECT_EQ(Common(handle, place), handle);
  }
  EXPECT_EQ(handles[0], (PixelRect{10, 20, 15, 25}));
  EXPECT_EQ(handles[1], (PixelRect{58, 20, 63, 25}));
  EXPECT_EQ(handles[4], (PixelRect{106, 86, 111, 91}));
  EXPECT_EQ(handles[7], (PixelRect{10, 53, 15, 58}));
}

TEST(CompositorTest, EnormousPlacesAreSafe) {
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  Shape shape;
  shape.kind = Shape::Kind::Ellipse;
  shape.box = {0, 0, 4e9, 4e9};
  shape.fill = Colour{7};
  std::vector<DisplayItem> items;
  std::uint64_t key = 0;
  for (const PixelRect& place : {PixelRect{least, least, most, most}, PixelRect{most - 1, most - 1, most, most},
                                 PixelRect{least, least, least + 1, least + 1}, PixelRect{most, most, least, least}}) {
    items.push_back({.key = ++key,
                     .bounds = place,
                     .picture = Plain(2, 2, {1, 2, 3}),
                     .shape = shape,
                     .text = TextRun{"x", {}, 0},
                     .frame = DisplayItem::Frame::Dotted,
                     .hasHandles = true});
  }
  Compositor compositor(White);
  for (const PixelRect& area : {PixelRect{0, 0, 1, 1}, PixelRect{-2, -2, 2, 2}}) {
    const Canvas canvas(area);
    for (const PixelRect& part : compositor.Show(items)) compositor.Paint(canvas.Buffer(), part, nullptr);
    compositor.Show({});
  }
}

}  // namespace
}  // namespace kw
