#include <gtest/gtest.h>

#include "components/base/Arithmetic.h"
#include "components/controls/ImageCombo.h"
#include "components/controls/ImageList.h"
#include "components/controls/Label.h"
#include "components/controls/Menu.h"
#include "components/controls/RangeControl.h"
#include "components/controls/Timer.h"
#include "components/controls/ToolBar.h"
#include "components/controls/TransparentPicture.h"
#include "tests/support/Errors.h"
#include "tests/support/ScriptedDesktop.h"

namespace kw {
namespace {

using test::ErrorOf;

TEST(Slider, ClampsAndRaisesChangeOnlyForADifferentValue) {
  Slider slider("sldLineHeight");
  slider.SetMin(1);
  slider.SetMax(10);
  std::vector<int> values;
  slider.Change.Connect([&] { values.push_back(slider.Value()); });
  slider.SetValue(99);
  slider.SetValue(99);
  slider.UserSetValue(-5);
  slider.SetEnabled(false);
  slider.UserSetValue(4);
  EXPECT_EQ(values, (std::vector<int>{10, 1}));
}

TEST(Slider, APushedValueIsAChange) {
  Slider slider("s");
  int changes = 0;
  slider.Change.Connect([&] { ++changes; });
  slider.SetMin(3);
  EXPECT_EQ(slider.Value(), 3);
  EXPECT_EQ(changes, 1);
}

TEST(PageSpinner, ANewRangeIsNoPageChange) {
  PageSpinner spinner("PageIndex");
  int changes = 0;
  spinner.Change.Connect([&] { ++changes; });
  spinner.SetMax(5);
  spinner.SetMin(1);
  EXPECT_EQ(spinner.Value(), 1);
  EXPECT_EQ(changes, 0);
  spinner.SetValue(2);
  EXPECT_EQ(changes, 1);
}

TEST(ScrollBar, RefusesSteps) {
  ScrollBar bar("vScroll", true);
  EXPECT_EQ(ErrorOf([&] { bar.SetLargeChange(0); }), 380);
  EXPECT_EQ(ErrorOf([&] { bar.SetSmallChange(-1); }), 380);
}

class ToolBarTest : public testing::Test {
protected:
  ToolBarTest() {
    for (const char* key : {"NoTools", "Text", "Line"}) bar.AddButton({.key = key, .style = ButtonStyle::Group});
    bar.AddButton({.style = ButtonStyle::Separator});
    bar.AddButton({.key = "FillInside", .style = ButtonStyle::Group});
    bar.AddButton({.key = "Grid", .style = ButtonStyle::Check});
    bar.AddButton({.key = "Save"});
    bar.ButtonClick.Connect([this](const std::string& key) { clicked.push_back(key); });
  }
  ToolBar bar{"tbrEditingTools"};
  std::vector<std::string> clicked;
};

TEST_F(ToolBarTest, OneButtonOfAGroupIsPressed) {
  bar.UserClick("Text");
  bar.UserClick("FillInside");
  bar.UserClick("Line");
  EXPECT_FALSE(bar.ButtonOf("Text").pressed);
  EXPECT_TRUE(bar.ButtonOf("Line").pressed);
  EXPECT_TRUE(bar.ButtonOf("FillInside").pressed);
  bar.UserClick("Line");
  EXPECT_TRUE(bar.ButtonOf("Line").pressed);
  EXPECT_EQ(clicked, (std::vector<std::string>{"Text", "FillInside", "Line", "Line"}));
}

TEST_F(ToolBarTest, PressingByAProcedureRaisesNothing) {
  bar.SetButtonPressed("Text", true);
  bar.SetButtonPressed("NoTools", true);
  EXPECT_FALSE(bar.ButtonOf("Text").pressed);
  bar.SetButtonPressed("NoTools", false);
  EXPECT_FALSE(bar.ButtonOf("NoTools").pressed);
  EXPECT_TRUE(clicked.empty());
}

TEST_F(ToolBarTest, ACheckButtonTogglesAndAPushButtonDoesNot) {
  bar.UserClick("Grid");
  EXPECT_TRUE(bar.ButtonOf("Grid").pressed);
  bar.UserClick("Grid");
  EXPECT_FALSE(bar.ButtonOf("Grid").pressed);
  bar.UserClick("Save");
  EXPECT_FALSE(bar.ButtonOf("Save").pressed);
}

TEST_F(ToolBarTest, AClickOnWhatIsDisabledOrHiddenIsIgnored) {
  bar.SetButtonEnabled("Save", false);
  bar.UserClick("Save");
  bar.SetButtonEnabled("Save", true);
  bar.SetButtonVisible("Save", false);
  bar.UserClick("Save");
  bar.SetButtonVisible("Save", true);
  bar.SetEnabled(false);
  bar.UserClick("Save");
  EXPECT_TRUE(clicked.empty());
}

TEST_F(ToolBarTest, AnUnknownKeyIsAnError) {
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(bar.ButtonOf("save")); }), 35601);
  EXPECT_EQ(ErrorOf([&] { bar.SetButtonEnabled("", true); }), 35601);
}

TEST(ToolBarArray, AKeyIsFoundOnWhicheverElementHasIt) {
  const ControlArray<ToolBar> bars("tbrBasicTools", 2);
  bars(0).AddButton({.key = "Save"});
  bars(1).AddButton({.key = "NextPage"});
  EXPECT_EQ(&BarOf(bars, "Save"), &bars(0));
  EXPECT_EQ(&BarOf(bars, "NextPage"), &bars(1));
  EXPECT_EQ(ErrorOf([&] { BarOf(bars, "Nothing"); }), 35601);
}

TEST(ImageCombo, CountsFromOneAndRaisesClickForTheUsersChoiceOnly) {
  ImageCombo list("cmbPageNo");
  int clicks = 0;
  list.Click.Connect([&] { ++clicks; });
  list.Add("1");
  list.Add("3");
  list.Add("2", 2);
  list.Select(3);
  EXPECT_EQ(list.Text(), "3");
  EXPECT_EQ(clicks, 0);
  list.UserChoose(2);
  list.UserChoose(2);
  EXPECT_EQ(list.Text(), "2");
  EXPECT_EQ(clicks, 2);
  list.SetEnabled(false);
  list.UserChoose(1);
  EXPECT_EQ(clicks, 2);
  list.Clear();
  EXPECT_EQ(list.ItemCount(), 0);
  EXPECT_EQ(list.SelectedItem(), 0);
}

TEST(ImageCombo, RefusesPlacesOutOfRange) {
  ImageCombo list("c");
  list.Add("1");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(list.ItemText(0)); }), 9);
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(list.ItemText(2)); }), 9);
  EXPECT_EQ(ErrorOf([&] { list.Add("4", 4); }), 9);
}

TEST(ImageList, KnowsItsPicturesByKey) {
  ImageList list("imgLstMousePointers");
  list.Add("Pen.Ico");
  EXPECT_EQ(list.Picture("Pen.Ico"), "Pen.Ico");
  EXPECT_EQ(ErrorOf([&] { static_cast<void>(list.Picture("pen.ico")); }), 35601);
}

TEST(Timer, RunsWhileEnabledWithAnInterval) {
  test::ScriptedDesktop desktop;
  Timer timer("tmrMoveLayer", desktop);
  int ticks = 0;
  timer.Tick.Connect([&] { ++ticks; });
  timer.SetEnabled(true);
  EXPECT_FALSE(desktop.FireTimer(timer));
  timer.SetInterval(10);
  EXPECT_TRUE(desktop.FireTimer(timer));
  timer.SetEnabled(false);
  timer.Fire();  // was under way
  EXPECT_EQ(ticks, 1);
  EXPECT_EQ(ErrorOf([&] { timer.SetInterval(65536); }), 380);
  EXPECT_EQ(ErrorOf([&] { timer.SetInterval(-1); }), 380);
}

TEST(Timer, StopsWithItsOwner) {
  test::ScriptedDesktop desktop;
  {
    Timer timer("t", desktop);
    timer.SetInterval(10);
    timer.SetEnabled(true);
    EXPECT_EQ(desktop.runningTimers.size(), 1U);
  }
  EXPECT_TRUE(desktop.runningTimers.empty());
}

TEST(TransparentPicture, RaisesChangeForASizeAndForEveryAssignedPicture) {
  TransparentPicture layer("TransLayers");
  int changes = 0;
  layer.Change.Connect([&] { ++changes; });
  layer.SetWidth(5);
  layer.SetWidth(5);
  layer.SetLeft(3);
  EXPECT_EQ(changes, 1);
  const Bitmap picture(4, 4, 24);
  layer.SetPicture(picture);
  layer.SetPicture(layer.SourcePicture());
  EXPECT_EQ(changes, 3);
  EXPECT_TRUE(layer.HasPicture());
  EXPECT_TRUE(layer.TryClearPicture());
  EXPECT_FALSE(layer.HasPicture());
}

TEST(Menu, IsChosenWhileEnabled) {
  Menu entry("mnuPasteSelectedArea");
  int clicks = 0;
  entry.Click.Connect([&] { ++clicks; });
  entry.UserChoose();
  entry.SetEnabled(false);
  entry.UserChoose();
  EXPECT_EQ(clicks, 1);
}

TEST(Label, IsTransparentUntilABackColourIsSet) {
  Label label("lblSampleColor");
  EXPECT_FALSE(label.IsOpaque());
  label.SetBackColor(MakeColour(1, 2, 3));
  EXPECT_TRUE(label.IsOpaque());
  EXPECT_EQ(label.BackColor(), 0x030201U);
}

TEST(Arithmetic, RaisesOverflowWhereAValueDoesNotFit) {
  EXPECT_EQ(ToInteger16(32767), 32767);
  EXPECT_EQ(ErrorOf([] { ToInteger16(32768); }), 6);
  EXPECT_EQ(ErrorOf([] { ToInteger16(-32769); }), 6);
  EXPECT_EQ(ErrorOf([] { AddChecked(2147483647, 1); }), 6);
  EXPECT_EQ(RoundToEven<std::int32_t>(2.5), 2);
  EXPECT_EQ(RoundToEven<std::int32_t>(3.5), 4);
  EXPECT_EQ(RoundToEven<std::int32_t>(-0.5), 0);
  EXPECT_EQ(ErrorOf([] { RoundToEven<std::int16_t>(32767.6); }), 6);
  EXPECT_EQ(ErrorOf([] { RoundToEven<std::int16_t>(std::numeric_limits<double>::quiet_NaN()); }), 6);
}

}  // namespace
}  // namespace kw
