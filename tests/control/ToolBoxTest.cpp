#include "drawing/ColourMap.h"
#include "support/EditorFixture.h"

namespace kw::test {
namespace {

class ToolBoxTest : public EditorTest {
protected:
  ToolBoxTest() {
    Form().editor.UserResize(1000, 800);
    control->OpenFile(MakeImage("page.bmp"));
  }
  RaisedArea& Box() { return Form().kwraTools; }
  float FrameRight() { return Form().picFrame.Left() + Form().picFrame.Width(); }
  float FrameBottom() { return Form().picFrame.Top() + Form().picFrame.Height(); }
  void Press(float x, float y) { Box().MouseDown.Raise(1, 0, x, y); }
  void Move(float x, float y) { Box().MouseMove.Raise(1, 0, x, y); }
  void Release() { Box().MouseUp.Raise(1, 0, 0, 0); }
};

TEST_F(ToolBoxTest, FollowsThePointerOneToOneWhileTheLeftButtonIsHeld) {
  const float left = Box().Left();
  const float top = Box().Top();
  Press(20, 10);
  EXPECT_EQ(Box().Pointer(), MousePointer::SizeAll);
  Move(15, 4);
  EXPECT_EQ(Box().Left(), left - 5);
  EXPECT_EQ(Box().Top(), top - 6);
  Release();
  EXPECT_EQ(Box().Pointer(), MousePointer::Default);
  Move(0, 0);
  EXPECT_EQ(Box().Left(), left - 5);
}

TEST_F(ToolBoxTest, PastTheTopEdgeStopsSixPixelsBelowItUntilTheNextPress) {
  Press(10, 10);
  Move(10, -5000);
  EXPECT_EQ(Box().Top(), Form().picFrame.Top() + 6);
  Move(10, 200);
  EXPECT_EQ(Box().Top(), Form().picFrame.Top() + 6);
  Press(10, 10);
  Move(10, 40);
  EXPECT_EQ(Box().Top(), Form().picFrame.Top() + 36);
}

TEST_F(ToolBoxTest, PastTheRightEdgeStopsSixPixelsFromItThoughFiveAreAllowed) {
  Box().SetLeft(FrameRight() - Box().Width() - 20);
  Press(10, 10);
  Move(25, 10);
  EXPECT_EQ(Box().Left(), FrameRight() - Box().Width() - 5);
  Move(11, 10);
  EXPECT_EQ(Box().Left(), FrameRight() - Box().Width() - 6);
}

TEST_F(ToolBoxTest, PastTheLeftAndTheBottomEdgeStopsSixPixelsFromThem) {
  Press(10, 10);
  Move(-5000, 10);
  EXPECT_EQ(Box().Left(), Form().picFrame.Left() + 6);
  Move(60, 10);
  EXPECT_EQ(Box().Left(), Form().picFrame.Left() + 6);
  Release();
  const float bottom = FrameBottom() - Box().Height();
  Box().SetTop(bottom - 20);
  Press(10, 10);
  Move(10, 25);
  EXPECT_EQ(Box().Top(), bottom - 5);
  Move(10, 11);
  EXPECT_EQ(Box().Top(), bottom - 6);
  Move(10, 0);
  EXPECT_EQ(Box().Top(), bottom - 6);
}

TEST_F(ToolBoxTest, EveryHandlerTracesItsName) {
  ForgetTrace();
  Press(10, 10);
  Move(11, 11);
  Release();
  Form().kwrpHideToolBox.MouseDown.Raise(1, 0, -1, 0);
  Form().kwraBasicToolsContainer(0).MouseMove.Raise(1, 0, 5, 5);
  Form().kwraBasicToolsContainer(1).MouseUp.Raise(1, 0, 5, 5);
  Form().sldLineHeight.LostFocus.Raise();
  EXPECT_EQ(Trace(), (Names{"kwraTools_MouseDown", "kwraTools_MouseMove", "kwraTools_MouseUp",
                            "kwrpHideToolBox_MouseDown", "kwraBasicToolsContainer_MouseMove",
                            "pictbrBasicToolsContainer_MouseUp", "sldLineHeight_LostFocus"}));
}

TEST_F(ToolBoxTest, OtherButtonsDoNothing) {
  const float left = Box().Left();
  Box().MouseDown.Raise(2, 0, 10, 10);
  Box().MouseMove.Raise(2, 0, 50, 10);
  EXPECT_EQ(Box().Left(), left);
  EXPECT_EQ(Box().Pointer(), MousePointer::Default);
}

TEST_F(ToolBoxTest, ItsButtonHidesItUnlessThePressLiesOutside) {
  const RaisedPicture& button = Form().kwrpHideToolBox;
  button.MouseDown.Raise(1, 0, -1, 5);
  button.MouseDown.Raise(1, 0, 5, button.Height() + 1);
  EXPECT_TRUE(Box().Visible());
  button.MouseDown.Raise(1, 0, button.Width(), button.Height());
  EXPECT_FALSE(Box().Visible());
}

TEST_F(ToolBoxTest, AThicknessOfThreeGivesASampleOf45Twips) {
  Form().sldLineHeight.UserSetValue(3);
  EXPECT_EQ(Form().SampleLine.Height(), 45);
  EXPECT_EQ(Form().SampleLine.Top(), Form().sldLineHeight.Top() - 45 - 15);
  EXPECT_EQ(Form().lblLineSize1.Caption(), "Thickness 3");
  EXPECT_EQ(Form().lblLineSize2.Caption(), "Thickness 3");
}

TEST_F(ToolBoxTest, AThicknessWhoseSampleIsTooHighIsAnOverflowAndStillNamed) {
  Form().sldLineHeight.SetMax(3000);
  Form().sldLineHeight.UserSetValue(2184);
  EXPECT_EQ(Form().SampleLine.Height(), 32760);
  Form().sldLineHeight.UserSetValue(2185);
  EXPECT_EQ(events.errors, std::vector<int>{6});
  EXPECT_EQ(Form().SampleLine.Height(), 32760);
  EXPECT_EQ(Form().lblLineSize1.Caption(), "Thickness 2185");
}

TEST_F(ToolBoxTest, ACaptionSetsTheThicknessWithinItsRange) {
  for (const float x : {-5000.0F, 0.0F, 900.0F, 99999.0F}) {
    Form().lblLineSize1.MouseDown.Raise(1, 0, x, 0);
    EXPECT_GE(Form().sldLineHeight.Value(), Form().sldLineHeight.Min());
    EXPECT_LE(Form().sldLineHeight.Value(), Form().sldLineHeight.Max());
  }
  EXPECT_EQ(Form().sldLineHeight.Value(), Form().sldLineHeight.Max());
}

using Strip = ToolBoxTest;

TEST_F(Strip, APressOnAContainerChangesBetweenOneRowAndTwo) {
  const RaisedArea& first = Form().kwraBasicToolsContainer(0);
  const RaisedArea& second = Form().kwraBasicToolsContainer(1);
  ForgetTrace();
  second.MouseDown.Raise(1, 0, 0, 0);
  EXPECT_EQ(second.Left(), first.Left());
  EXPECT_EQ(second.Top(), first.Top() + first.Height() + 1);
  EXPECT_EQ(Form().picFrame.Top(), second.Top() + second.Height() + 1);
  EXPECT_EQ(FrameBottom() + Form().hScroll.Height(), 800);
  EXPECT_EQ(Trace(), (Names{"kwraBasicToolsContainer_MouseDown", "pictbrBasicToolsContainer_DblClick", "RedrawToolBars",
                            "UserControl_Resize", "PicFrame_Resize", "SetScrollBarPositions", "SetScrollBalValues",
                            "SetScrollBarPositions"}));
  second.MouseDown.Raise(1, 0, 0, 0);
  EXPECT_EQ(second.Top(), first.Top());
  EXPECT_EQ(second.Left(), first.Left() + first.Width() + 1);
}

TEST_F(Strip, AnotherButtonChangesNoRows) {
  const float top = Form().kwraBasicToolsContainer(1).Top();
  Form().kwraBasicToolsContainer(1).MouseDown.Raise(2, 0, 0, 0);
  EXPECT_EQ(Form().kwraBasicToolsContainer(1).Top(), top);
}

using Colours = ToolBoxTest;

TEST_F(Colours, AreReadOutWithTheRequiredArithmetic) {
  EXPECT_EQ(ColourPicker::ReadOut(16777215), "R: 256 G: 3 B: 0");
  EXPECT_EQ(ColourPicker::ReadOut(255), "R: 0 G: 1 B: 0");
  EXPECT_EQ(ColourPicker::ReadOut(0), "R: 0 G: 0 B: 0");
}

TEST_F(Colours, ThePaletteDropsOpenFromASwatchAndHidesWithTheFocus) {
  Form().SampleForeGroundColor.Click.Raise();
  EXPECT_TRUE(Form().kwrpColors.Visible());
  EXPECT_EQ(Form().editor.ActiveControl(), &Form().kwrpColors);
  EXPECT_EQ(Form().lblSampleColor.Caption(), "R: 0 G: 0 B: 0");
  Form().picCanvas.ReceiveFocus();
  EXPECT_FALSE(Form().kwrpColors.Visible());
}

TEST_F(Colours, ThePaletteReadsOutTheColourEachTimeItDropsOpen) {
  Form().SampleForeGroundColor.Click.Raise();
  Form().kwrpColors.MouseMove.Raise(0, 0, 900, 700);
  Form().kwrpColors.MouseUp.Raise(4, 0, 900, 700);
  Form().SampleForeGroundColor.Click.Raise();
  EXPECT_EQ(Form().lblSampleColor.Caption(), "R: 0 G: 0 B: 0");
}

TEST_F(Colours, AreTakenTwoPixelsInPastTheNearEdgesAndFivePastTheFarOnes) {
  const RaisedPicture& palette = Form().kwrpColors;
  Form().SampleForeGroundColor.Click.Raise();
  palette.MouseUp.Raise(1, 0, -1, -1);
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(),
            ColourOfMap(double{30 / palette.Width()}, double{30 / palette.Height()}));
  EXPECT_FALSE(palette.Visible());
  Form().SampleForeGroundColor.Click.Raise();
  palette.MouseUp.Raise(1, 0, 99999, 99999);
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), ColourOfMap(double{(palette.Width() - 75) / palette.Width()},
                                                                  double{(palette.Height() - 75) / palette.Height()}));
}

TEST_F(Colours, AreReadAtTheSameInsetsUnderAMovingPointerInPixelsOfTheScreenAtHand) {
  const RaisedPicture& palette = Form().kwrpColors;
  Form().SampleBackGroundColor.Click.Raise();
  desktop.twipsPerPixelX = 10;
  desktop.twipsPerPixelY = 20;
  palette.MouseMove.Raise(1, 0, -1, -1);
  EXPECT_EQ(Form().lblSampleColor.BackColor(),
            ColourOfMap(double{20 / palette.Width()}, double{40 / palette.Height()}));
  palette.MouseMove.Raise(1, 0, palette.Width() + 1, palette.Height() + 1);
  EXPECT_EQ(Form().lblSampleColor.BackColor(), ColourOfMap(double{(palette.Width() - 50) / palette.Width()},
                                                           double{(palette.Height() - 100) / palette.Height()}));
}

TEST_F(Colours, OfTheForegroundToo) {
  Form().SampleForeGroundColor.Click.Raise();
  desktop.colourAnswers.emplace_back([](Colour& colour) { colour = MakeColour(9, 8, 7); });
  Form().kwrpColors.MouseUp.Raise(2, 0, 600, 600);
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), MakeColour(9, 8, 7));
  EXPECT_EQ(Form().TransLayers(1).ForeColor(), MakeColour(9, 8, 7));
  EXPECT_EQ(Form().lblSampleColor.ForeColor(), MakeColour(9, 8, 7));
  EXPECT_FALSE(Form().kwrpColors.Visible());
}

// Nothing refuses a number that is no colour; it is kept as it stands and read out with its sign.
TEST_F(Colours, OutOfTheirRangeAreKeptAndNoError) {
  for (const auto& [number, readOut] : std::vector<std::pair<std::int32_t, std::string>>{
           {-1, "R: 0 G: 0 B: -1"}, {0x7F000001, "R: 32512 G: 127 B: 128"}, {0x01000000, "R: 256 G: 3 B: 1"}}) {
    const auto colour = static_cast<Colour>(number);
    desktop.colourAnswers.assign(2, [&](Colour& chosen) { chosen = colour; });
    Form().SampleForeGroundColor.DblClick.Raise();
    Form().SampleBackGroundColor.DblClick.Raise();
    EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), colour);
    EXPECT_EQ(Form().TransLayers(1).ForeColor(), colour);
    EXPECT_EQ(Form().TransLayers(1).FillColor(), colour);
    EXPECT_EQ(Form().lblSampleColor.Caption(), readOut);
  }
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Colours, AtRandomShiftWhereANumberIsSmall) {
  const auto colourOf = [](std::vector<int> numbers) {
    auto next = numbers.begin();
    return ColoursAndLines::RandomColour([&] { return *next++ / 1000000.0; });
  };
  EXPECT_EQ(colourOf({0x12, 0x34, 0x56}), 0x123456U);
  EXPECT_EQ(colourOf({0x1, 0x2, 0x3}), 0x123U);
  EXPECT_EQ(colourOf({0xAB, 0xC, 0xDE}), 0xABCDEU);
  EXPECT_EQ(colourOf({255, 254, 999999}), 0xFE90U);
}

TEST_F(Colours, TheRightButtonPicksAndOpensTheDialogForFineAdjustment) {
  Form().SampleBackGroundColor.Click.Raise();
  desktop.colourAnswers.emplace_back([](Colour& colour) { colour = MakeColour(1, 2, 3); });
  Form().kwrpColors.MouseUp.Raise(2, 0, 600, 600);
  ASSERT_EQ(desktop.coloursShown.size(), 1U);
  EXPECT_EQ(Form().SampleBackGroundColor.BackColor(), MakeColour(1, 2, 3));
  EXPECT_EQ(Form().TransLayers(1).FillColor(), MakeColour(1, 2, 3));
  EXPECT_EQ(Form().lblSampleColor.Caption(), ColourPicker::ReadOut(MakeColour(1, 2, 3)));
}

TEST_F(Colours, ThePaletteHidesAfterAnyButton) {
  Form().SampleForeGroundColor.Click.Raise();
  const Colour before = Form().SampleForeGroundColor.BackColor();
  Form().kwrpColors.MouseUp.Raise(4, 0, 600, 600);
  EXPECT_FALSE(Form().kwrpColors.Visible());
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), before);
}

TEST_F(Colours, AHeldButtonPreviewsAndAFreePointerNamesTheColour) {
  Form().SampleForeGroundColor.Click.Raise();
  const std::string caption = Form().lblSampleColor.Caption();
  Form().kwrpColors.MouseMove.Raise(1, 0, 700, 500);
  EXPECT_EQ(Form().lblSampleColor.Caption(), caption);
  EXPECT_NE(Form().lblSampleColor.ForeColor(), 0U);
  Form().kwrpColors.MouseMove.Raise(0, 0, 700, 500);
  EXPECT_EQ(Form().lblSampleColor.Caption(), ColourPicker::ReadOut(Form().lblSampleColor.ForeColor()));
}

TEST_F(Colours, EveryHandlerTracesItsName) {
  const auto tracedBy = [this](const std::function<void()>& act) {
    ForgetTrace();
    act();
    return Trace();
  };
  EditorForm& form = Form();
  EXPECT_EQ(tracedBy([&] { form.SampleForeGroundColor.Click.Raise(); }),
            (Names{"SampleForeGroundColor_Click", "picColors_GotFocus"}));
  EXPECT_EQ(tracedBy([&] { form.picCanvas.ReceiveFocus(); }), Names{"picColors_LostFocus"});
  EXPECT_EQ(tracedBy([&] { form.SampleBackGroundColor.Click.Raise(); }),
            (Names{"SampleBackGroundColor_Click", "picColors_GotFocus"}));
  EXPECT_EQ(tracedBy([&] { form.kwrpColors.MouseMove.Raise(1, 0, 5, 5); }), Names{"picColors_MouseMove"});
  EXPECT_EQ(tracedBy([&] { form.kwrpColors.MouseUp.Raise(2, 0, 5, 5); }),
            (Names{"kwrpColors_MouseUp", "Let EditorBackColor", "SampleBackGroundColor_DblClick", "Let EditorBackColor",
                   "picColors_LostFocus"}));
  EXPECT_EQ(tracedBy([&] { form.SampleForeGroundColor.DblClick.Raise(); }),
            (Names{"SampleForeGroundColor_DblClick", "Let EditorForeColor"}));
  EXPECT_EQ(tracedBy([&] { form.sldLineHeight.UserSetValue(7); }), Names{"sldLineHeight_Change"});
  EXPECT_EQ(tracedBy([&] { form.lblLineSize2.MouseDown.Raise(1, 0, -9999, 0); }),
            (Names{"lblLineSize2_MouseDown", "lblLineSize1_MouseDown", "sldLineHeight_Change"}));
}

TEST_F(Colours, ACancelledDialogLeavesTheColour) {
  Form().SampleForeGroundColor.DblClick.Raise();
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), 0U);
  EXPECT_EQ(Form().lblSampleColor.Caption(), "R: 0 G: 0 B: 0");
}

}  // namespace
}  // namespace kw::test
