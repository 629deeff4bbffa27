#include <algorithm>

#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

using Drawing = LayersTest;

TEST_F(Drawing, ADragMakesALayerWithTheToolsFigureAndColours) {
  Choose("Rectangle");
  Form().tbrFillPattern.SetButtonPressed("NoFillInside", true);
  Form().sldLineHeight.SetValue(3);
  Form().SampleForeGroundColor.SetBackColor(MakeColour(1, 2, 3));
  Form().SampleBackGroundColor.SetBackColor(MakeColour(4, 5, 6));
  Form().TransLayers(0).SetStyle(5);
  Form().TransLayers(0).SetIsToShowResize(true);
  ForgetTrace();
  DragOut(100, 80, 40, 20);
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  const TransparentPicture& layer = Form().TransLayers(2);
  EXPECT_EQ(layer.Left(), 40);
  EXPECT_EQ(layer.Top(), 20);
  EXPECT_EQ(layer.Width(), 60);
  EXPECT_EQ(layer.Height(), 60);
  EXPECT_TRUE(layer.Visible());
  EXPECT_EQ(layer.DrawnFigure().kind, FigureKind::Rectangle);
  EXPECT_EQ(layer.LineWidth(), 3);
  EXPECT_EQ(layer.LineColor(), MakeColour(1, 2, 3));
  EXPECT_EQ(layer.ForeColor(), MakeColour(1, 2, 3));
  EXPECT_EQ(layer.BackColor(), MakeColour(4, 5, 6));
  EXPECT_EQ(layer.TransparentColor(), MakeColour(4, 5, 6));
  EXPECT_EQ(layer.Style(), 0);
  EXPECT_FALSE(layer.IsToShowResize());
  EXPECT_FALSE(Form().fr.Visible());
  // The handlers themselves are silent.
  EXPECT_EQ(Trace(), (Names{"NewLayer", "TransLayers_Change"}));
}

TEST_F(Drawing, AFilledInsideIsOpaqueExceptForTheBackColour20) {
  Choose("Circle");
  Form().tbrFillPattern.SetButtonPressed("FillInside", true);
  Form().SampleBackGroundColor.SetBackColor(MakeColour(255, 255, 255));
  DragOut(10, 10, 60, 60);
  EXPECT_NE(Form().TransLayers(2).TransparentColor(), Form().TransLayers(2).BackColor());
  Form().SampleBackGroundColor.SetBackColor(20);
  DragOut(100, 100, 160, 160);
  EXPECT_EQ(Form().TransLayers(3).TransparentColor(), 20U);
}

TEST_F(Drawing, AFilledInsidesTransparentColourIsHalfTheBackColourAndTenRoundedToEven) {
  Choose("Circle");
  Form().tbrFillPattern.SetButtonPressed("FillInside", true);
  for (const auto& [back, transparent] :
       std::vector<std::pair<Colour, Colour>>{{0, 10}, {1, 10}, {3, 12}, {5, 12}, {7, 14}, {255, 138}}) {
    Form().SampleBackGroundColor.SetBackColor(back);
    DragOut(10, 10, 60, 60);
    ASSERT_EQ(Form().TransLayers.UBound(), 2);
    EXPECT_EQ(Form().TransLayers(2).TransparentColor(), transparent) << back;
    Room().UnloadLayerItems();
  }
}

TEST_F(Drawing, APressOnALayersEdgeIsTheLayersAndDrawsNoBand) {
  Add(100, 100, 50, 50);
  Choose("NoTools");
  Press(150, 150);
  EXPECT_FALSE(Room().Drag().m_IsMouseDown);
  EXPECT_EQ(Room().CurrentLayerIndex(), 2);
  Release(150, 150);
  Choose("Rectangle");
  Press(150, 150);
  Drag(170, 170);
  EXPECT_FALSE(Room().Drag().m_IsMouseDown);
  EXPECT_FALSE(Form().fr.Visible());
  Release(170, 170);
  EXPECT_EQ(Form().TransLayers.UBound(), 2);
}

TEST_F(Drawing, AHiddenLayerTakesNoPressAndTheTopmostTakesIt) {
  Add(100, 100, 50, 50).SetVisible(false);
  Add(110, 110, 50, 50);
  Add(110, 110, 50, 50);
  Choose("NoTools");
  Press(101, 101);
  EXPECT_TRUE(Room().Drag().m_IsMouseDown);
  Release(101, 101);
  Press(120, 120);
  EXPECT_EQ(Room().CurrentLayerIndex(), 4);
}

TEST_F(Drawing, ALineKeepsItsDirection) {
  Choose("Line");
  DragOut(10, 10, 60, 60);
  DragOut(10, 160, 60, 110);
  EXPECT_FALSE(Form().TransLayers(2).DrawnFigure().isRising);
  EXPECT_TRUE(Form().TransLayers(3).DrawnFigure().isRising);
}

TEST_F(Drawing, ASelectionIsOnTopAndLeavesTheCurrentLayerAndItsFont) {
  Font chosen;
  chosen.name = "Arial";
  chosen.size = 20;
  desktop.fontAnswers.emplace_back([&](Font& font) { font = chosen; });
  Form().tbrMoreTools.ButtonClick.Raise("FontSettings");
  Add(200, 200);
  Choose("NoTools");
  ForgetTrace();
  DragOut(10, 10, 220, 220);
  ASSERT_EQ(Form().TransLayers.UBound(), 3);
  EXPECT_EQ(Room().ZOrder().Order().back(), 3);
  const Names trace = Trace();
  EXPECT_EQ(std::count(trace.begin(), trace.end(), "BringForward"), 1);
  EXPECT_EQ(Room().CurrentLayerIndex(), 1);
  Choose("Text");
  DragOut(300, 200, 380, 240);
  EXPECT_TRUE(Form().TransLayers(4).TextFont() == chosen);
}

TEST_F(Drawing, AfterASelectionACommandStillWorksOnThePage) {
  desktop.Expect("DoPreCommandProcess");
  Choose("NoTools");
  DragOut(10, 20, 60, 60);
  Form().tbrMoreTools.ButtonClick.Raise("Invert");
  const TransparentPicture& selection = Form().TransLayers(2);
  EXPECT_EQ(selection.Left(), 10);
  EXPECT_EQ(selection.Width(), 50);
  EXPECT_EQ(selection.Picture().Row(0)[0], 0);
  EXPECT_EQ(Form().TransLayers(1).Picture().Row(0)[0], 255);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Drawing, ALayerBeyondTheLimitIsReportedOnceAndChangesNothing) {
  desktop.Expect("Critical Error: Error Number : 341");
  Form().TransLayers.Load(32767);
  for (const char* tool : {"Rectangle", "Pen", "Fill", "NoTools", "Text"}) {
    Choose(tool);
    DragOut(10, 10, 60, 60);
    EXPECT_EQ(events.errors, std::vector<int>{341}) << tool;
    EXPECT_EQ(Form().TransLayers.UBound(), 32767) << tool;
    EXPECT_EQ(Room().ZOrder().Order(), std::vector<std::int16_t>{1}) << tool;
    EXPECT_FALSE(Form().TransLayers(32767).Visible()) << tool;
    EXPECT_EQ(Form().TransLayers(32767).Width(), 0) << tool;
    EXPECT_FALSE(Form().fr.Visible()) << tool;
    EXPECT_EQ(Form().point1.UBound(), 0) << tool;
  }
}

TEST_F(Drawing, OnAPageOfOnePixelEveryToolEndsInOrder) {
  control->OpenFile(MakeImage("dot.bmp", 1, 1));
  for (const char* tool : {"NoTools", "Text", "Circle", "Line", "Rectangle", "Pen", "Rubber", "Fill", "Chooser"}) {
    Choose(tool);
    DragOut(0, 0, 80, 80);
    EXPECT_FALSE(Form().fr.Visible()) << tool;
    EXPECT_EQ(Form().point1.UBound(), 0) << tool;
    for (const auto& [index, layer] : Form().TransLayers) {
      EXPECT_LE(layer->Width(), Canvas().Width() + 2) << tool;
    }
    Room().UnloadLayerItems();
  }
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Drawing, AtTheFarCornerOfAPageOfTwentyThousandPixelsSquareLayersLieExactly) {
  constexpr std::int32_t side = 20000;
  const std::string path = folder.File("large.bmp");
  SavePicture(Bitmap(side, side, 1), path);
  control->OpenFile(path);
  EXPECT_EQ(Canvas().Width(), side + 2);
  const float start = side - 60;
  for (const char* tool : {"NoTools", "Text", "Circle", "Line", "Rectangle"}) {
    Choose(tool);
    DragOut(start, start, side, side);
    ASSERT_EQ(Form().TransLayers.UBound(), 2) << tool;
    const TransparentPicture& layer = Form().TransLayers(2);
    EXPECT_EQ(layer.Left(), start) << tool;
    EXPECT_EQ(layer.Top(), start) << tool;
    EXPECT_EQ(layer.Width(), 60) << tool;
    EXPECT_EQ(layer.Height(), 60) << tool;
    Room().UnloadLayerItems();
  }
  Choose("Pen");
  DragOut(start, start, start + 20, start);
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  EXPECT_GE(Form().TransLayers(2).Left(), start - 5);
  EXPECT_LE(Form().TransLayers(2).Width(), 30);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Drawing, APenStrokeBecomesALayerWithItsPicture) {
  Choose("Pen");
  Form().sldLineHeight.SetValue(4);
  Canvas().ReceiveFocus();
  Press(50, 60);
  EXPECT_TRUE(Form().point1(0).Visible());
  Drag(52, 61);
  Drag(52, 61);
  Drag(90, 100);
  EXPECT_EQ(Form().point1.Count(), 3);
  for (std::int16_t i = 0; i < 3; ++i) EXPECT_TRUE(Form().point1(i).Visible()) << i;
  Release(90, 100);
  EXPECT_EQ(Form().point1.Count(), 1);
  EXPECT_FALSE(Form().point1(0).Visible());
  ASSERT_EQ(Form().TransLayers.UBound(), 2);
  const TransparentPicture& layer = Form().TransLayers(2);
  EXPECT_TRUE(layer.Visible());
  EXPECT_EQ(layer.Picture().Width(), static_cast<std::int32_t>(layer.Width()));
  EXPECT_LE(layer.Left(), 48);
  EXPECT_GE(layer.Left() + layer.Width(), 92);
  // On the stroke it is opaque, in a corner away from it transparent.
  const auto alphaAt = [&](float x, float y) {
    const auto row = layer.Picture().Row(static_cast<std::int32_t>(y - layer.Top()));
    return row[static_cast<std::size_t>(x - layer.Left()) * 4 + 3];
  };
  EXPECT_EQ(alphaAt(71, 80), 255);
  EXPECT_EQ(alphaAt(88, 62), 0);
}

TEST_F(Drawing, ALayerBeyondTheRangeOfWholeNumbersIsAnOverflowForThePressOnIt) {
  desktop.Expect("Critical Error: Error Number : 6");
  Add(2e9F, 10, 2e9F, 10);
  Choose("NoTools");
  Press(10, 10);
  EXPECT_EQ(events.errors, std::vector<int>{6});
}

}  // namespace
}  // namespace kw::test
