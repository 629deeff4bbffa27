// The scroll bars, and the borders by which the page is made larger and smaller.

#include <cmath>
#include <functional>

#include "tests/support/LayersFixture.h"

namespace kw::test {
namespace {

class ScrollBars : public EditorTest {
protected:
  struct Direction {
    ScrollBar& bar;
    float frameExtent;
    std::function<void(float)> setCanvas;
  };
  std::vector<Direction> Both() {
    EditorForm& form = Form();
    return {{form.vScroll, form.picFrame.Height(), [&](float extent) { form.picCanvas.SetHeight(extent); }},
            {form.hScroll, form.picFrame.Width(), [&](float extent) { form.picCanvas.SetWidth(extent); }}};
  }
};

TEST_F(ScrollBars, ServeACanvasThatIsStrictlyLargerThanTheViewport) {
  ASSERT_NE(Form().picFrame.Height(), Form().picFrame.Width());
  for (const Direction& one : Both()) {
    one.setCanvas(one.frameExtent + 1);
    EXPECT_TRUE(one.bar.Enabled()) << one.bar.Name();
    EXPECT_EQ(one.bar.Min(), 0) << one.bar.Name();
    EXPECT_EQ(one.bar.Max(), 301) << one.bar.Name();
    EXPECT_EQ(one.bar.LargeChange(), static_cast<std::int16_t>(one.frameExtent)) << one.bar.Name();
    EXPECT_EQ(one.bar.SmallChange(), 1) << one.bar.Name();
    one.setCanvas(one.frameExtent);
    EXPECT_FALSE(one.bar.Enabled()) << one.bar.Name();
    EXPECT_EQ(one.bar.Max(), 0) << one.bar.Name();
    EXPECT_EQ(one.bar.LargeChange(), 1) << one.bar.Name();
    EXPECT_EQ(one.bar.SmallChange(), 1) << one.bar.Name();
  }
}

TEST_F(ScrollBars, GetTheirWholeRangeAndStepsAnew) {
  for (const Direction& one : Both()) {
    for (const float beyond : {1.0F, 0.0F}) {
      one.setCanvas(one.frameExtent + 500);
      one.bar.SetMin(7);
      one.bar.SetSmallChange(9);
      one.setCanvas(one.frameExtent + beyond);
      EXPECT_EQ(one.bar.Min(), 0) << one.bar.Name();
      EXPECT_EQ(one.bar.SmallChange(), 1) << one.bar.Name();
    }
  }
}

TEST_F(ScrollBars, ServeEachDirectionByItself) {
  for (const Direction& one : Both()) {
    Form().picCanvas.Move(0, 0, 10, 10);
    one.setCanvas(3000);
    EXPECT_EQ(Form().vScroll.Enabled(), &one.bar == &Form().vScroll);
    EXPECT_EQ(Form().hScroll.Enabled(), &one.bar == &Form().hScroll);
  }
}

TEST_F(ScrollBars, FollowTheViewportWhereverItIsMoved) {
  Form().picFrame.Move(5, 60, 300, 200);
  EXPECT_EQ(Form().vScroll.Left(), 305);
  EXPECT_EQ(Form().vScroll.Top(), 60);
  EXPECT_EQ(Form().vScroll.Height(), 200);
  EXPECT_EQ(Form().hScroll.Left(), 5);
  EXPECT_EQ(Form().hScroll.Top(), 260);
  EXPECT_EQ(Form().hScroll.Width(), 300);
}

TEST_F(ScrollBars, MoveTheCanvas) {
  Form().picCanvas.Move(0, 0, 3000, 3000);
  ForgetTrace();
  Form().vScroll.UserSetValue(120);
  EXPECT_EQ(Form().picCanvas.Top(), -120);
  EXPECT_EQ(Form().picCanvas.Left(), 0);
  Form().hScroll.UserSetValue(7);
  EXPECT_EQ(Form().picCanvas.Top(), -120);
  EXPECT_EQ(Form().picCanvas.Left(), -7);
  EXPECT_EQ(Trace(), (Names{"vScroll_change", "HScroll_change"}));
}

TEST_F(ScrollBars, PassTheFocusToTheCanvasElseToTheViewport) {
  ForgetTrace();
  Form().hScroll.ReceiveFocus();
  EXPECT_EQ(Form().editor.ActiveControl(), &Form().picCanvas);
  EXPECT_EQ(Trace(), (Names{"hScroll_GotFocus", "vScroll_GotFocus"}));
  Form().cmbZoomFactor.ReceiveFocus();
  ForgetTrace();
  Form().vScroll.ReceiveFocus();
  EXPECT_EQ(Form().editor.ActiveControl(), &Form().picCanvas);
  EXPECT_EQ(Trace(), Names{"vScroll_GotFocus"});
  Form().picCanvas.SetEnabled(false);
  for (ScrollBar* bar : {&Form().vScroll, &Form().hScroll}) {
    bar->ReceiveFocus();
    EXPECT_EQ(Form().editor.ActiveControl(), &Form().picFrame) << bar->Name();
  }
  Form().picFrame.SetEnabled(false);
  Form().vScroll.ReceiveFocus();
  EXPECT_EQ(Form().editor.ActiveControl(), &Form().vScroll) << "there is nothing to pass it to";
  EXPECT_TRUE(events.errors.empty());
}

class Borders : public LayersTest {
protected:
  // A screen whose pixels are higher than wide.
  static constexpr float TwipsAcross = 10;
  static constexpr float TwipsDown = 20;

  Borders() {
    desktop.twipsPerPixelX = TwipsAcross;
    desktop.twipsPerPixelY = TwipsDown;
    desktop.boxes.clear();
  }
  static void Release(const LightWeightMarker& border, float across, float down, std::int16_t button = 1) {
    border.MouseUp.Raise(button, 0, across * TwipsAcross, down * TwipsDown);
  }
  void ExpectPage(float width, float height) {
    EXPECT_EQ(Form().TransLayers(1).Width(), width);
    EXPECT_EQ(Form().TransLayers(1).Height(), height);
  }
};

TEST_F(Borders, ReleasedWithTheLeftButtonResizeThePageAfterTheirNotice) {
  desktop.Expect("change the code below", 3);
  desktop.whileBoxIsUp = [this](const auto&) { ExpectPage(400, 300); };
  Release(Form().BorderBottom, 7, 30);
  desktop.whileBoxIsUp = nullptr;
  ExpectPage(400, 330);
  Release(Form().BorderRight, -10, 7);
  ExpectPage(390, 330);
  Release(Form().BorderCorner, 10, 20);
  ExpectPage(400, 350);
  EXPECT_EQ(Form().BorderCorner.Left(), 400);
  EXPECT_EQ(Form().BorderCorner.Top(), 350);
  EXPECT_EQ(desktop.boxes, std::vector<ScriptedDesktop::Box>(3, {"change the code below", "", MessageButtons::Ok}));
}

TEST_F(Borders, ResizeTheBackgroundByTheSameDistance) {
  desktop.Expect("change the code below", 3);
  control->LetBGImage(MakeImage("back.bmp", 100, 80));
  Release(Form().BorderBottom, 0, 5);
  Release(Form().BorderRight, -6, 0);
  EXPECT_EQ(Form().TransBackImage.Width(), 94);
  EXPECT_EQ(Form().TransBackImage.Height(), 85);
  Release(Form().BorderCorner, -94, -84);
  EXPECT_EQ(Form().TransBackImage.Width(), 94) << "nothing would be left";
  EXPECT_EQ(Form().TransBackImage.Height(), 1);
  ExpectPage(300, 221);
}

TEST_F(Borders, DraggedPastTheOppositeEdgeLeaveThatDirectionButShowTheNotice) {
  desktop.Expect("change the code below", 5);
  Release(Form().BorderBottom, 0, -300);
  Release(Form().BorderRight, -401, 0);
  ExpectPage(400, 300);
  Release(Form().BorderCorner, -500, 12);
  ExpectPage(400, 312);
  Release(Form().BorderCorner, 12, -500);
  ExpectPage(412, 312);
  EXPECT_EQ(desktop.boxes.size(), 4U);
  Release(Form().BorderBottom, 0, -311);
  ExpectPage(412, 1);
}

TEST_F(Borders, LeaveOneUnitButNotNothing) {
  desktop.Expect("change the code below", 5);
  Release(Form().BorderRight, -400, 0);
  Release(Form().BorderBottom, 0, -300);
  ExpectPage(400, 300);
  Release(Form().BorderRight, -399, 0);
  Release(Form().BorderBottom, 0, -299);
  ExpectPage(1, 1);
  Release(Form().BorderCorner, -0.5F, -0.5F);
  ExpectPage(0.5F, 0.5F);
}

TEST_F(Borders, DivideTheDistanceByTheZoom) {
  desktop.Expect("change the code below");
  control->ZoomRoom().LetZoomFactor(2.0);
  Release(Form().BorderCorner, 40, 30);
  ExpectPage(420, 315);
}

TEST_F(Borders, DragsByAZoomOfZeroAreADivisionByZero) {
  desktop.Expect("change the code below");
  desktop.Expect("Critical Error: Error Number : 11");
  control->ZoomRoom().LetZoomFactor(0);
  Release(Form().BorderCorner, 40, 30);
  EXPECT_EQ(events.errors, std::vector<int>{11});
  ExpectPage(400, 300);
}

TEST_F(Borders, AnotherButtonDoesNothing) {
  for (const std::int16_t button : {Mouse::RightButton, Mouse::MiddleButton}) {
    ForgetTrace();
    Release(Form().BorderRight, 10, 0, button);
    EXPECT_EQ(Trace(), Names{"BorderRight_MouseUp"});
  }
  EXPECT_TRUE(desktop.boxes.empty());
  ExpectPage(400, 300);
}

TEST_F(Borders, TraceTheirPressesAndReleases) {
  desktop.Expect("change the code below", 3);
  const std::vector<std::pair<LightWeightMarker*, std::string>> borders{{&Form().BorderBottom, "BorderBottom"},
                                                                        {&Form().BorderRight, "BorderRight"},
                                                                        {&Form().BorderCorner, "BorderCorner"}};
  for (const auto& [border, name] : borders) {
    ForgetTrace();
    border->MouseDown.Raise(1, 0, 0, 0);
    EXPECT_EQ(Trace(), Names{name + "_MouseDown"});
    ForgetTrace();
    border->MouseUp.Raise(1, 0, 0, 0);
    EXPECT_EQ(Trace(), (Names{name + "_MouseUp", "UpdateAndZoom"}));
  }
}

}  // namespace
}  // namespace kw::test
