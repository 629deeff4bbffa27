#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

using ZoomBox = ScriptedDesktop::Box;

class ZoomTest : public LayersTest {
protected:
  void Click(const std::string& key) { Form().tbrMoreTools.ButtonClick.Raise(key); }
  void Let(double factor) { control->ZoomRoom().LetZoomFactor(factor); }
  double Factor() { return control->ZoomRoom().ZoomFactor(); }
  std::string Text() { return Form().cmbZoomFactor.Text(); }
};

TEST_F(ZoomTest, StepsThroughItsList) {
  Click("ZoomIn");
  EXPECT_EQ(Text(), "150 %");
  EXPECT_EQ(Factor(), 1.5);
  Click("ZoomOut");
  EXPECT_EQ(Text(), "100 %");
  EXPECT_EQ(Factor(), 1.0);
  Click("ZoomOut");
  EXPECT_EQ(Text(), "90 %");
}

TEST_F(ZoomTest, StopsAtTheEndsOfItsListWithTheirBoxesAndChangesNothing) {
  desktop.Expect("Zoom Error: Can not Zoom in more..");
  desktop.Expect("Error: Can not Zoom out more..");
  Let(4.0);
  desktop.boxes.clear();
  ForgetTrace();
  Click("ZoomIn");
  EXPECT_EQ(Factor(), 4.0);
  EXPECT_EQ(Text(), "400 %");
  EXPECT_EQ(Trace(), (Names{"tbrMoreTools_ButtonClick", "ToolbarButtonClick", "ZoomIn"}));
  Let(0.1);
  ForgetTrace();
  Click("ZoomOut");
  EXPECT_EQ(Factor(), 0.1);
  EXPECT_EQ(Text(), "10 %");
  EXPECT_EQ(Trace(), (Names{"tbrMoreTools_ButtonClick", "ToolbarButtonClick", "ZoomOut"}));
  EXPECT_EQ(desktop.boxes, (std::vector<ZoomBox>{{"Can not Zoom in more..", "Zoom Error", MessageButtons::Ok},
                                                 {"Can not Zoom out more..", "Error", MessageButtons::Ok}}));
  Click("ZoomIn");
  EXPECT_EQ(Text(), "20 %");
  Let(4.0);
  Click("ZoomOut");
  EXPECT_EQ(Text(), "350 %");
}

TEST_F(ZoomTest, SelectsAListedFactorAndKeepsTheSelectionForAnotherOne) {
  Let(0.3);
  EXPECT_EQ(Text(), "30 %");
  ForgetTrace();
  Let(1.25);
  EXPECT_EQ(Text(), "30 %");
  EXPECT_EQ(Trace(), (Names{"Let ZoomFactor", "UpdateAndZoom"}));
}

// The combo stays at 30 % meanwhile: the step goes from the factor that is kept.
TEST_F(ZoomTest, StepsFromAFactorThatIsNotListedToTheNearestOneInThatDirection) {
  Let(0.3);
  Let(1.25);
  Click("ZoomIn");
  EXPECT_EQ(Text(), "150 %");
  Let(0.3);
  Let(1.25);
  Click("ZoomOut");
  EXPECT_EQ(Text(), "100 %");
  Let(7);
  Click("ZoomOut");
  EXPECT_EQ(Text(), "400 %");
  Let(0.3);
  Let(0.05);
  Click("ZoomIn");
  EXPECT_EQ(Text(), "10 %");
}

TEST_F(ZoomTest, StepsToAListedFactorThatIsOnePercentAway) {
  Let(0.99);
  Click("ZoomIn");
  EXPECT_EQ(Text(), "100 %");
  EXPECT_EQ(Factor(), 1.0);
  Let(1.01);
  Click("ZoomOut");
  EXPECT_EQ(Text(), "100 %");
  EXPECT_EQ(Factor(), 1.0);
}

TEST_F(ZoomTest, AChoiceInTheComboIsTheFactor) {
  ForgetTrace();
  Form().cmbZoomFactor.UserChoose(12);
  EXPECT_EQ(Factor(), 2.0);
  EXPECT_EQ(Trace(), (Names{"cmbZoomFactor_Click", "Let ZoomFactor", "UpdateAndZoom"}));
}

TEST_F(ZoomTest, AChoiceBeforeAPageIsOpenDoesNothing) {
  Form().TransLayers(1).SetPicture({});
  ForgetTrace();
  Form().cmbZoomFactor.UserChoose(1);
  EXPECT_EQ(Trace(), Names{"cmbZoomFactor_Click"});
  EXPECT_EQ(Factor(), 1.0);
}

TEST_F(ZoomTest, TheBordersLieAroundTheLargerOfPageAndShownBackground) {
  const auto expectAround = [this](float width, float height) {
    const EditorForm& form = Form();
    const auto expectAt = [](const Control& border, float left, float top, float wide, float high) {
      EXPECT_EQ(border.Left(), left) << border.Name();
      EXPECT_EQ(border.Top(), top) << border.Name();
      EXPECT_EQ(border.Width(), wide) << border.Name();
      EXPECT_EQ(border.Height(), high) << border.Name();
    };
    expectAt(form.BorderBottom, 0, height, width, 2);
    expectAt(form.BorderRight, width, 0, 2, height);
    expectAt(form.BorderCorner, width, height, 2, 2);
    EXPECT_EQ(form.picCanvas.Width(), width + 2);
    EXPECT_EQ(form.picCanvas.Height(), height + 2);
  };
  expectAround(400, 300);
  control->LetBGImage(MakeImage("back.bmp", 450, 200));
  control->LetIsToShowBackImage(true);
  expectAround(450, 300);
  Form().TransBackImage.Move(0, 0, 350, 320);
  control->ZoomRoom().UpdateAndZoom();
  expectAround(400, 320);
  control->LetIsToShowBackImage(false);
  expectAround(400, 300);
}

TEST_F(ZoomTest, WhatReachesPastThePageIsDrawnAnewBehindTheHourglass) {
  Add(10, 10, 50, 50);
  Add(380, 10, 21, 50);   // past the right edge
  Add(10, 280, 50, 21);   // past the bottom edge
  Add(350, 250, 50, 50);  // up to both
  std::vector<int> drawn;
  for (std::int16_t i = 2; i <= 5; ++i) {
    Form().TransLayers(i).Change.Connect([&, i] {
      drawn.push_back(i);
      EXPECT_EQ(Form().editor.Pointer(), MousePointer::Hourglass);
    });
  }
  control->ZoomRoom().UpdateAndZoom();
  EXPECT_EQ(drawn, (std::vector<int>{3, 4}));
  EXPECT_EQ(Form().editor.Pointer(), MousePointer::Default);
}

TEST_F(ZoomTest, TheFirstAndTheLastLayerAreDrawnAnewToo) {
  Add(390, 10, 50, 50);
  Add(10, 10, 50, 50);
  Add(390, 80, 50, 50);
  int drawn = 0;
  for (const std::int16_t i : {std::int16_t{2}, std::int16_t{4}})
    Form().TransLayers(i).Change.Connect([&] { ++drawn; });
  control->ZoomRoom().UpdateAndZoom();
  EXPECT_EQ(drawn, 2);
}

TEST_F(ZoomTest, ALayerThatCannotBeDrawnAnewDoesNotHoldUpTheOthers) {
  desktop.Expect("Critical Error: Error Number : 7");
  Add(390, 10, 50, 50);
  Add(390, 80, 50, 50);
  Form().TransLayers(2).Change.Connect([] { Raise(ErrorNumber::OutOfMemory); });
  int drawn = 0;
  Form().TransLayers(3).Change.Connect([&] { ++drawn; });
  control->ZoomRoom().UpdateAndZoom();
  EXPECT_EQ(drawn, 1);
  EXPECT_EQ(events.errors, std::vector<int>{7});
}

}  // namespace
}  // namespace kw::test
