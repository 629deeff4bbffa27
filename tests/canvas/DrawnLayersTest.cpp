// Each tool makes a new layer of a drag, and changes nothing else that could be seen.

#include <array>
#include <functional>
#include <tuple>
#include <utility>

#include "tests/support/FormLook.h"
#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

// Lines of 4 in (1, 2, 3) on (40, 50, 60), not filled, on a page of one colour.
class DrawnLayer : public LayersTest {
protected:
  DrawnLayer() {
    Bitmap page(400, 300, 24);
    for (std::int32_t y = 0; y < page.Height(); ++y) {
      const auto row = page.MutableRow(y);
      for (std::size_t i = 0; i < row.size(); ++i) row[i] = std::array<std::uint8_t, 3>{200, 120, 90}.at(i % 3);
    }
    Form().TransLayers(1).SetPicture(page);
    Form().tbrFillPattern.SetButtonPressed("NoFillInside", true);
    Form().sldLineHeight.SetValue(4);
    Form().SampleForeGroundColor.SetBackColor(MakeColour(1, 2, 3));
    Form().SampleBackGroundColor.SetBackColor(MakeColour(40, 50, 60));
    Canvas().ReceiveFocus();
  }
  // All that is new after a drag with a tool.
  Lines NewsOf(const char* tool, float x0, float y0, float x1, float y1) {
    Choose(tool);
    const Lines before = LookOf(Form());
    DragOut(x0, y0, x1, y1);
    return NewLines(before, LookOf(Form()));
  }
  TransparentPicture& Newest() { return Form().TransLayers(Form().TransLayers.UBound()); }
};

// The opacity of each pixel in two hexadecimal digits, a row a line; blank for a transparent pixel.
Lines OpacityOf(const Bitmap& picture) {
  Lines rows;
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    std::string row;
    for (std::int32_t x = 0; x < picture.Width(); ++x) {
      const auto opacity = picture.Row(y)[static_cast<std::size_t>(x) * 4 + 3];
      constexpr const char* digits = "0123456789abcdef";
      row += opacity == 0 ? std::string("  ") : std::string{digits[opacity / 16], digits[opacity % 16]};
    }
    rows.push_back(row);
  }
  return rows;
}

TEST_F(DrawnLayer, OfARectangleACircleALineAndAText) {
  for (const auto& [tool, figure] : {std::pair{"Rectangle", "figure=3"},
                                     {"Circle", "figure=2"},
                                     {"Line", "figure=4"},
                                     {"Text", "figure=0 text entry typing"}}) {
    Form().fr.Move(0, 0, 0, 0);
    const Lines expected{
        "picCanvas > fr: 110 120 60 70 hidden", "picCanvas > TransLayers(2): 110 120 60 70",
        std::string("TransLayers(2): fore=1,2,3 back=40,50,60 line=1,2,3 transparent=40,50,60 line width=4 ") + figure};
    EXPECT_EQ(NewsOf(tool, 110, 120, 170, 190), expected);
    Room().UnloadLayerItems();
  }
}

TEST_F(DrawnLayer, OfASelection) {
  const Lines expected{"picCanvas > fr: 110 120 60 70 hidden", "picCanvas > TransLayers(2): 110 120 60 70",
                       "TransLayers(2): fore=1,2,3 back=40,50,60 line=1,2,3 transparent=40,50,60 line width=4 picture"};
  EXPECT_EQ(NewsOf("NoTools", 110, 120, 170, 190), expected);
  EXPECT_EQ(Newest().Picture().Width(), 60);
  EXPECT_EQ(Newest().Picture().Height(), 70);
}

// The canvas is two pixels larger than the page.
TEST_F(DrawnLayer, OfASelectionIsWhiteBesideThePage) {
  Choose("NoTools");
  DragOut(390, 290, 9999, 9999);
  const TransparentPicture& layer = Newest();
  EXPECT_EQ(PlaceOf(layer), "390 290 12 12");
  ASSERT_EQ(layer.Picture().BitsPerPixel(), 24);
  for (std::int32_t y = 0; y < 12; ++y) {
    for (std::int32_t x = 0; x < 12; ++x) {
      const Rgb expected = x < 10 && y < 10 ? Rgb{90, 120, 200} : Rgb{255, 255, 255};
      ASSERT_EQ(layer.Picture().PixelAt(x, y), expected) << x << ", " << y;
    }
  }
}

TEST_F(DrawnLayer, OfASelectionThatBeganBesideTheCanvasHoldsWhatLiesOnIt) {
  Choose("NoTools");
  DragOut(-50, -40, 30, 20);
  EXPECT_EQ(PlaceOf(Newest()), "0 0 30 20");
}

TEST_F(DrawnLayer, OfAnImage) {
  const std::string path = MakeImage("inserted.bmp", 40, 20);
  desktop.openAnswers.emplace_back([&](OpenDialog& dialog) { dialog.fileName = path; });
  const Lines expected{"picCanvas > fr: 110 120 60 70 hidden", "picCanvas > TransLayers(2): 110 140 60 30",
                       "TransLayers(2): fore=1,2,3 back=40,50,60 line=1,2,3 transparent=40,50,60 line width=4 picture"};
  EXPECT_EQ(NewsOf("Image", 110, 120, 170, 190), expected);
  ASSERT_EQ(desktop.openShown.size(), 1U);
  EXPECT_EQ(desktop.openShown[0].filter,
            "All Supported Graphic Files (*.jpg, *.jpeg, *.bmp, *.tif, *.fmf, *.gif)|"
            "*.jpg; *.jpeg; *.bmp; *.tif; *.fmf; *.gif");
}

TEST_F(DrawnLayer, OfAnImageThatIsFarTooFlatIsAPixelHigh) {
  for (const auto& [width, height, place] :
       {std::tuple{200, 1, "110 154 60 1"}, {1, 300, "139 120 1 70"}, {60, 70, "110 120 60 70"}}) {
    const std::string path = MakeImage("inserted.bmp", width, height);
    desktop.openAnswers.emplace_back([&](OpenDialog& dialog) { dialog.fileName = path; });
    Choose("Image");
    DragOut(110, 120, 170, 190);
    EXPECT_EQ(PlaceOf(Newest()), place);
    Room().UnloadLayerItems();
  }
}

// Its paper lets the page through whatever the background colour is: white is its transparent colour.
TEST_F(DrawnLayer, OfASignature) {
  control->LetSignatureFilePath(MakeImage("sign.bmp", 30, 60));
  const Lines expected{"picCanvas > fr: 110 120 60 70 hidden", "picCanvas > TransLayers(2): 122 120 35 70",
                       "TransLayers(2): fore=1,2,3 back=40,50,60 line=1,2,3 line width=4 picture"};
  EXPECT_EQ(NewsOf("Signature", 110, 120, 170, 190), expected);
}

TEST_F(DrawnLayer, OfAFilling) {
  const Lines expected{
      "picCanvas > TransLayers(2): 0 0 400 300",
      "TransLayers(2): fore=1,2,3 back=40,50,60 line=1,2,3 transparent=254,253,252 line width=4 picture"};
  EXPECT_EQ(NewsOf("Fill", 110, 120, 170, 190), expected);
}

class ChildWatcher : public View {
public:
  explicit ChildWatcher(std::function<void()> whatToDo) : look(std::move(whatToDo)) {}
  void Changed(Aspect /*aspect*/) override {}
  void ChildAdded(Control& /*child*/) override { look(); }

private:
  std::function<void()> look;
};

TEST_F(DrawnLayer, OfAFillingIsMadeBehindTheHourglass) {
  MousePointer pointer = MousePointer::Arrow;
  ChildWatcher watcher([&] { pointer = Form().editor.Pointer(); });
  Canvas().AttachView(&watcher);
  Choose("Fill");
  Press(110, 120);
  Canvas().DetachView();
  EXPECT_EQ(pointer, MousePointer::Hourglass);
  EXPECT_EQ(Form().editor.Pointer(), MousePointer::Default);
}

TEST_F(DrawnLayer, OfAnImageOrASignatureBeyondTheLimitIsReported) {
  desktop.Expect("Critical Error: Error Number : 341");
  control->LetSignatureFilePath(MakeImage("sign.bmp", 30, 60));
  desktop.openAnswers.emplace_back([&](OpenDialog& dialog) { dialog.fileName = folder.File("sign.bmp"); });
  Form().TransLayers.Load(32767);
  for (const char* tool : {"Image", "Signature"}) {
    Choose(tool);
    DragOut(110, 120, 170, 190);
    EXPECT_EQ(events.errors, std::vector<int>{341}) << tool;
    EXPECT_EQ(Form().TransLayers.Count(), 3) << tool;
  }
}

TEST_F(DrawnLayer, OfTheColourPickerIsNone) {
  EXPECT_EQ(NewsOf("Chooser", 110, 120, 116, 123),
            (Lines{"TransLayers(1): fore=90,120,200 picture",
                   "SampleForeGroundColor: tip=Foreground Color back=90,120,200 bordered",
                   "lblSampleColor: fore=90,120,200 back=255,255,255 bordered"}));
}

TEST_F(DrawnLayer, OfThePenHasTheStrokeInItsColour) {
  const Lines expected{"picCanvas > point1(0): 108 118 4 4 hidden", "picCanvas > TransLayers(2): 107 117 12 9",
                       "point1(0): colour=1,2,3", "TransLayers(2): transparent=254,253,252 line width=4 picture"};
  EXPECT_EQ(NewsOf("Pen", 110, 120, 116, 123), expected);
  const Lines opacity{
      "                        ",  //
      "  50e8e97c0e            ",  //
      "  e8ffffffed7c0e        ",  //
      "  e8ffffffffffed7c0e    ",  //
      "  50edffffffffffffed50  ",  //
      "    0e7cedffffffffffe8  ",  //
      "        0e7cedffffffe8  ",  //
      "            0e7ce9e850  ",  //
      "                        ",
  };
  EXPECT_EQ(OpacityOf(Newest().Picture()), opacity);
  EXPECT_EQ(Newest().Picture().PixelAt(4, 4), (Rgb{1, 2, 3}));
}

TEST_F(DrawnLayer, OfTheRubberHasTheBackgroundColour) {
  const Lines expected{"picCanvas > point1(0): 108 118 4 4 hidden", "picCanvas > TransLayers(2): 107 117 12 9",
                       "point1(0): colour=40,50,60", "TransLayers(2): transparent=215,205,195 line width=4 picture"};
  EXPECT_EQ(NewsOf("Rubber", 110, 120, 116, 123), expected);
  EXPECT_EQ(Newest().Picture().PixelAt(4, 4), (Rgb{40, 50, 60}));
}

TEST_F(DrawnLayer, OfAClickWithThePenIsADot) {
  Choose("Pen");
  Press(110, 120);
  Release(110, 120);
  EXPECT_EQ(PlaceOf(Newest()), "107 117 6 6");
  const Lines opacity{"            ", "  50e8e850  ", "  e8ffffe8  ", "  e8ffffe8  ", "  50e8e850  ", "            "};
  EXPECT_EQ(OpacityOf(Newest().Picture()), opacity);
}

TEST_F(DrawnLayer, OfAStrokeThatRunsUpAndToTheLeftHoldsAllOfIt) {
  Choose("Pen");
  Press(110, 120);
  Drag(100, 125);
  Drag(95, 105);
  Release(95, 105);
  EXPECT_EQ(PlaceOf(Newest()), "92 102 21 26");
  EXPECT_EQ(OpacityOf(Newest().Picture())[22], "          30ffffffffffffed7c0e            ");
}

TEST_F(DrawnLayer, OfAStrokeAcrossTheEdgeHoldsWhatLiesOnTheCanvas) {
  Choose("Pen");
  DragOut(1, 2, -6, 3);
  EXPECT_EQ(PlaceOf(Newest()), "-1 -1 5 7");
  const Lines left{"          ", "cef1e850  ", "ffffffe8  ", "ffffffe8  ", "ffffe950  ", "3c17      ", "          "};
  EXPECT_EQ(OpacityOf(Newest().Picture()), left);
  DragOut(399, 300, 409, 301);
  EXPECT_EQ(PlaceOf(Newest()), "396 297 7 6");
  const Lines right{"              ", "  50e8f5dbc2a8", "  e8ffffffffff",
                    "  e8ffffffffff", "  50e9ffffffff", "      0f29425c"};
  EXPECT_EQ(OpacityOf(Newest().Picture()), right);
}

TEST_F(DrawnLayer, OfAStrokeAcrossTheUpperEdgeBeginsWithAPixelBeyondIt) {
  Choose("Pen");
  DragOut(11, 2, 11, -6);
  EXPECT_EQ(PlaceOf(Newest()), "8 -1 6 6");
  const Lines opacity{"  ffffffff  ", "  ffffffff  ", "  ffffffff  ", "  e8ffffe8  ", "  50e8e850  ", "            "};
  EXPECT_EQ(OpacityOf(Newest().Picture()), opacity);
}

TEST_F(DrawnLayer, OfAStrokeBesideTheCanvasIsNone) {
  Choose("Pen");
  for (const auto& [x, y] : {std::pair{-2.0F, 50.0F}, {404.0F, 50.0F}, {50.0F, -2.0F}, {50.0F, 304.0F}}) {
    Press(x, y);
    Release(x, y);
    EXPECT_EQ(Form().TransLayers.UBound(), 1) << x << ", " << y;
  }
  Press(-1, 50);
  Release(-1, 50);
  EXPECT_EQ(Form().TransLayers.UBound(), 2) << "a row of it lies on the canvas";
}

TEST_F(DrawnLayer, OfAStrokeThatIsTooLongEndsWhereTheNextOneBegins) {
  Choose("Pen");
  Press(110, 120);
  Form().point1.Load(32767).Move(148, 158, 4, 4);
  Form().SampleForeGroundColor.SetBackColor(MakeColour(9, 9, 9));
  Drag(170, 160);
  EXPECT_EQ(PlaceOf(Newest()), "107 117 46 46");
  ASSERT_EQ(Form().point1.Count(), 2);
  EXPECT_EQ(PlaceOf(Form().point1(0)), "148 158 4 4");
  EXPECT_EQ(PlaceOf(Form().point1(1)), "168 158 4 4");
  EXPECT_TRUE(Form().point1(0).Visible());
  EXPECT_EQ(Form().point1(0).Color(), MakeColour(1, 2, 3)) << "the colour of the stroke";
  Release(170, 160);
  EXPECT_EQ(PlaceOf(Newest()), "147 157 26 6");
}

TEST_F(DrawnLayer, OfAReleaseWithoutAStrokeIsNoneAndYieldsToNobody) {
  Choose("Pen");
  int yields = 0;
  desktop.onDoEvents = [&] { ++yields; };
  Release(110, 120);
  EXPECT_EQ(yields, 0);
  EXPECT_EQ(Form().TransLayers.UBound(), 1);
}

TEST_F(DrawnLayer, OfMovesToOnePlaceHasOneMarker) {
  Choose("Pen");
  Press(110, 120);
  EXPECT_EQ(Canvas().Children().back(), &Form().point1(0));
  Drag(110.4F, 119.6F);
  EXPECT_EQ(Form().point1.Count(), 1);
  Drag(110, 121);
  EXPECT_EQ(Form().point1.Count(), 2);
  Drag(111, 121);
  EXPECT_EQ(Form().point1.Count(), 3);
  EXPECT_EQ(PlaceOf(Form().point1(2)), "109 119 4 4");
  EXPECT_EQ(Canvas().Children().back(), &Form().point1(2));
}

}  // namespace
}  // namespace kw::test
