// The slider of the line thickness, its sample and its captions.

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

class Thickness : public EditorTest {
protected:
  // A step of the slider is 200 twips.
  Thickness() {
    control->OpenFile(MakeImage("page.bmp"));
    Form().sldLineHeight.SetWidth(1800);
    Form().sldLineHeight.UserSetValue(5);
  }
  std::int32_t Value() { return Form().sldLineHeight.Value(); }
  Label& Upper() { return Form().lblLineSize1; }
  Label& Lower() { return Form().lblLineSize2; }
  // Places on the form, in twips.
  static void Press(Label& caption, float place, std::int16_t button = 1) {
    caption.MouseDown.Raise(button, 0, place - caption.Left(), 0);
  }
  static void DragTo(Label& caption, float place, std::int16_t buttons = 1) {
    caption.MouseMove.Raise(buttons, 0, place - caption.Left(), 0);
  }
  static void Release(Label& caption, float place, std::int16_t button = 1) {
    caption.MouseUp.Raise(button, 0, place - caption.Left(), 0);
  }
};

TEST_F(Thickness, AThicknessOfThreeGivesASampleOf45Twips) {
  Form().sldLineHeight.UserSetValue(3);
  EXPECT_EQ(Form().SampleLine.Height(), 45);
  EXPECT_EQ(Form().SampleLine.Top(), Form().sldLineHeight.Top() - 45 - 15);
  EXPECT_EQ(Form().lblLineSize1.Caption(), "Thickness 3");
  EXPECT_EQ(Form().lblLineSize2.Caption(), "Thickness 3");
}

TEST_F(Thickness, AThicknessWhoseSampleIsTooHighIsAnOverflowAndStillNamed) {
  desktop.Expect("Critical Error: Error Number : 6");
  Form().sldLineHeight.SetMax(3000);
  Form().sldLineHeight.UserSetValue(2184);
  EXPECT_EQ(Form().SampleLine.Height(), 32760);
  Form().sldLineHeight.UserSetValue(2185);
  EXPECT_EQ(events.errors, std::vector<int>{6});
  EXPECT_EQ(Form().SampleLine.Height(), 32760);
  EXPECT_EQ(Form().lblLineSize1.Caption(), "Thickness 2185");
}

TEST_F(Thickness, TheLowerCaptionGoesAlongTheSliderTwoStepsAhead) {
  Form().sldLineHeight.Move(60, 0, 2280, 390);
  Lower().SetWidth(1140);
  for (const auto& [value, left] :
       std::vector<std::pair<int, float>>{{1, 60 + 1140 * 2 / 11.0F}, {4, 60 + 1140 * 5 / 11.0F}, {10, 1200}}) {
    Form().sldLineHeight.UserSetValue(value);
    EXPECT_FLOAT_EQ(Lower().Left(), left) << value;
  }
  Form().sldLineHeight.SetMin(4);
  Form().sldLineHeight.UserSetValue(5);
  EXPECT_FLOAT_EQ(Lower().Left(), 60 + 1140 * 3 / 8.0F);
}

TEST_F(Thickness, APressOnACaptionChangesNothing) {
  for (Label* caption : {&Upper(), &Lower()}) {
    for (const int value : {1, 2, 5, 10}) {
      for (const float x : {-5000.0F, 0.0F, 700.0F, 99999.0F}) {
        Form().sldLineHeight.UserSetValue(value);
        Press(*caption, x);
        EXPECT_EQ(Value(), value);
        Release(*caption, x);
        EXPECT_EQ(Value(), value);
      }
    }
  }
}

TEST_F(Thickness, ADragFromACaptionMovesTheSliderBySoMuchAsThePointer) {
  for (Label* caption : {&Upper(), &Lower()}) {
    Press(*caption, 700);
    for (const auto& [place, value] : std::vector<std::pair<float, int>>{{799, 5},
                                                                         {801, 6},
                                                                         {1100, 7},
                                                                         {700, 5},
                                                                         {500, 4},
                                                                         {-100, 1},
                                                                         {-1e30F, 1},
                                                                         {1700, 10},
                                                                         {1e30F, 10},
                                                                         {900, 6}}) {
      DragTo(*caption, place);
      EXPECT_EQ(Value(), value) << caption->Name() << " at " << place;
    }
    Release(*caption, 900);
    DragTo(*caption, 100);
    EXPECT_EQ(Value(), 6) << "the drag is over";
    Form().sldLineHeight.UserSetValue(5);
  }
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Thickness, OnlyTheLeftButtonDrags) {
  Press(Upper(), 700, 2);
  DragTo(Upper(), 1100, 2);
  DragTo(Upper(), 1100);
  EXPECT_EQ(Value(), 5);
  Press(Upper(), 700);
  DragTo(Upper(), 1100, 0);
  DragTo(Upper(), 1100, 2);
  EXPECT_EQ(Value(), 5) << "the button is not held";
  Release(Upper(), 700, 2);
  DragTo(Upper(), 1100);
  EXPECT_EQ(Value(), 7) << "another button was released";
}

TEST_F(Thickness, TheLossOfTheMouseEndsTheDragFromACaption) {
  for (Label* caption : {&Upper(), &Lower()}) {
    Press(*caption, 700);
    caption->MouseLost.Raise();
    DragTo(*caption, 1100);
    EXPECT_EQ(Value(), 5);
  }
}

TEST_F(Thickness, ADragFromACaptionOfASliderWithoutWidthOrRangeIsNoError) {
  Form().sldLineHeight.SetWidth(0);
  Press(Upper(), 700);
  DragTo(Upper(), 1100);
  EXPECT_EQ(Value(), 5);
  Form().sldLineHeight.SetWidth(1800);
  Form().sldLineHeight.SetMin(10);
  Press(Upper(), 700);
  DragTo(Upper(), 100);
  EXPECT_EQ(Value(), 10);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Thickness, OnlyThePressOfACaptionTracesItsNames) {
  ForgetTrace();
  Press(Upper(), 700);
  DragTo(Upper(), 701);
  Release(Upper(), 701);
  Press(Lower(), 700);
  DragTo(Lower(), 900);
  Release(Lower(), 900);
  EXPECT_EQ(Trace(), (Names{"lblLineSize1_MouseDown", "lblLineSize2_MouseDown", "lblLineSize1_MouseDown",
                            "sldLineHeight_Change"}));
}

}  // namespace
}  // namespace kw::test
