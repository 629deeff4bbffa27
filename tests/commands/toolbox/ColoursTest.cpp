// The swatches, the palette and the colour dialog.

#include <array>

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

// The colours of the palette, 152 by 96 pixels, two pixels inside its upper left corner, five inside the lower right
// one, and at a point between.
constexpr Colour NearCorner = MakeColour(255, 245, 244);
constexpr Colour FarCorner = MakeColour(13, 13, 13);
constexpr float PaleGreenX = 700;
constexpr float PaleGreenY = 500;
constexpr Colour PaleGreen = MakeColour(78, 255, 78);

class Colours : public EditorTest {
protected:
  Colours() {
    Form().editor.UserResize(1000, 800);
    control->OpenFile(MakeImage("page.bmp"));
  }
};

TEST_F(Colours, AreReadOutWithTheRequiredArithmetic) {
  EXPECT_EQ(ColourPicker::ReadOut(16777215), "R: 256 G: 3 B: 0");
  EXPECT_EQ(ColourPicker::ReadOut(255), "R: 0 G: 1 B: 0");
  EXPECT_EQ(ColourPicker::ReadOut(0), "R: 0 G: 0 B: 0");
  EXPECT_EQ(ColourPicker::ReadOut(98303), "R: 2 G: 131 B: 128");
}

// At the very edge a point is still one of the palette.
TEST_F(Colours, AreTakenAtTheEdgesAsTheyAreThere) {
  const RaisedPicture& palette = Form().kwrpColors;
  Form().SampleBackGroundColor.Click.Raise();
  const auto colourAt = [&](float x, float y) {
    palette.MouseMove.Raise(1, 0, x, y);
    return Form().lblSampleColor.BackColor();
  };
  EXPECT_EQ(colourAt(0, 0), MakeColour(255, 255, 255));
  EXPECT_EQ(colourAt(0.5F, 0.5F), MakeColour(255, 255, 255));
  EXPECT_EQ(colourAt(2280, 700), MakeColour(131, 131, 131));
  EXPECT_EQ(colourAt(700, 1440), MakeColour(0, 0, 0));
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
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), NearCorner);
  EXPECT_FALSE(palette.Visible());
  Form().SampleForeGroundColor.Click.Raise();
  palette.MouseUp.Raise(1, 0, 99999, 99999);
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), FarCorner);
}

TEST_F(Colours, AreReadAtTheSameInsetsUnderAMovingPointerInPixelsOfTheScreenAtHand) {
  const RaisedPicture& palette = Form().kwrpColors;
  Form().SampleBackGroundColor.Click.Raise();
  palette.MouseMove.Raise(1, 0, -1, -1);
  EXPECT_EQ(Form().lblSampleColor.BackColor(), NearCorner);
  palette.MouseMove.Raise(1, 0, palette.Width() + 1, palette.Height() + 1);
  EXPECT_EQ(Form().lblSampleColor.BackColor(), FarCorner);
  desktop.twipsPerPixelX = 10;
  desktop.twipsPerPixelY = 20;
  palette.MouseMove.Raise(1, 0, -1, -1);
  EXPECT_EQ(Form().lblSampleColor.BackColor(), MakeColour(255, 242, 241));
  palette.MouseMove.Raise(1, 0, palette.Width() + 1, palette.Height() + 1);
  EXPECT_EQ(Form().lblSampleColor.BackColor(), MakeColour(18, 18, 18));
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
  EXPECT_EQ(colourOf({0x10, 0x10, 0x10}), 0x101010U);
  EXPECT_EQ(colourOf({0xF, 0xF, 0xF}), 0xFFFU);
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
  Label& readOut = Form().lblSampleColor;
  const Colour foreColor = readOut.ForeColor();
  const Colour backColor = readOut.BackColor();
  Form().SampleForeGroundColor.Click.Raise();
  const std::string caption = readOut.Caption();
  Form().kwrpColors.MouseMove.Raise(1, 0, PaleGreenX, PaleGreenY);
  EXPECT_EQ(readOut.Caption(), caption);
  EXPECT_EQ(readOut.ForeColor(), PaleGreen);
  EXPECT_EQ(readOut.BackColor(), backColor);
  // Any other state of the buttons, also that of two.
  for (const std::int16_t buttons : std::to_array<std::int16_t>({0, 2, 3})) {
    readOut.SetCaption("");
    readOut.SetForeColor(foreColor);
    Form().kwrpColors.MouseMove.Raise(buttons, 0, PaleGreenX, PaleGreenY);
    EXPECT_EQ(readOut.Caption(), "R: 79 G: 158 B: 156") << buttons;
    EXPECT_EQ(readOut.ForeColor(), foreColor) << buttons;
  }
  Form().SampleBackGroundColor.Click.Raise();
  Form().kwrpColors.MouseMove.Raise(1, 0, PaleGreenX, PaleGreenY);
  EXPECT_EQ(readOut.ForeColor(), foreColor);
  EXPECT_EQ(readOut.BackColor(), PaleGreen);
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
}

TEST_F(Colours, ACancelledDialogLeavesTheColour) {
  desktop.colourAnswers.emplace_back([](Colour& colour) { colour = MakeColour(10, 20, 30); });
  Form().SampleForeGroundColor.DblClick.Raise();
  desktop.colourAnswers.emplace_back([](Colour& colour) { colour = MakeColour(40, 50, 60); });
  Form().SampleBackGroundColor.DblClick.Raise();
  // The colour that a preview left behind is put right as well.
  Form().lblSampleColor.SetForeColor(1);
  Form().lblSampleColor.SetBackColor(1);
  Form().SampleForeGroundColor.DblClick.Raise();
  EXPECT_EQ(Form().lblSampleColor.Caption(), ColourPicker::ReadOut(MakeColour(10, 20, 30)));
  Form().SampleBackGroundColor.DblClick.Raise();
  EXPECT_EQ(Form().lblSampleColor.Caption(), ColourPicker::ReadOut(MakeColour(40, 50, 60)));
  ASSERT_EQ(desktop.coloursShown.size(), 4U);
  EXPECT_EQ(desktop.coloursShown[2], MakeColour(10, 20, 30));
  EXPECT_EQ(desktop.coloursShown[3], MakeColour(40, 50, 60));
  EXPECT_EQ(Form().SampleForeGroundColor.BackColor(), MakeColour(10, 20, 30));
  EXPECT_EQ(Form().SampleBackGroundColor.BackColor(), MakeColour(40, 50, 60));
  EXPECT_EQ(Form().TransLayers(1).ForeColor(), MakeColour(10, 20, 30));
  EXPECT_EQ(Form().TransLayers(1).BackColor(), MakeColour(40, 50, 60));
  EXPECT_EQ(Form().TransLayers(1).FillColor(), MakeColour(40, 50, 60));
  EXPECT_EQ(Form().lblSampleColor.ForeColor(), MakeColour(10, 20, 30));
  EXPECT_EQ(Form().lblSampleColor.BackColor(), MakeColour(40, 50, 60));
}

}  // namespace
}  // namespace kw::test
