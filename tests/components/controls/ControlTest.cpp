#include "components/controls/Control.h"

#include <gtest/gtest.h>

#include <limits>

#include "components/controls/CheckBox.h"
#include "components/controls/PictureBox.h"
#include "components/controls/RaisedArea.h"
#include "components/controls/UserControl.h"
#include "tests/support/Errors.h"

namespace kw {
namespace {

using test::ErrorOf;

// Notes what it was told.
class RecordingView : public View {
public:
  void Changed(Aspect aspect) override { told.push_back(aspect); }
  void ChildAdded(Control& child) override { added.push_back(child.Name()); }
  void ChildRemoved(Control& child) override { removed.push_back(child.Name()); }
  std::vector<Aspect> told;
  std::vector<std::string> added;
  std::vector<std::string> removed;
};

TEST(Control, TellsItsViewWhatChangedAndNothingTwice) {
  RaisedArea area("kwraTools");
  RecordingView view;
  area.AttachView(&view);
  area.Move(1, 2, 3, 4);
  area.Move(1, 2, 3, 4);
  area.SetVisible(false);
  area.SetVisible(false);
  area.SetEnabled(false);
  area.SetPointer(MousePointer::Cross);
  EXPECT_EQ(view.told, (std::vector<Aspect>{Aspect::Geometry, Aspect::Visibility, Aspect::Enabled, Aspect::Pointer}));
  area.DetachView();
  area.SetVisible(true);
  EXPECT_EQ(view.told.size(), 4U);
}

TEST(Control, RefusesASizeThatIsNone) {
  RaisedArea area("a");
  EXPECT_EQ(ErrorOf([&] { area.SetWidth(-1); }), 380);
  EXPECT_EQ(ErrorOf([&] { area.SetHeight(std::numeric_limits<float>::quiet_NaN()); }), 380);
  EXPECT_EQ(ErrorOf([&] { area.SetLeft(std::numeric_limits<float>::infinity()); }), 380);
  EXPECT_EQ(area.Width(), 0);
}

TEST(Control, RaisesResizeForASizeOnly) {
  PictureBox box("picFrame");
  int resizes = 0;
  box.Resize.Connect([&] { ++resizes; });
  box.Move(5, 6);
  EXPECT_EQ(resizes, 0);
  box.SetWidth(10);
  EXPECT_EQ(resizes, 1);
}

TEST(Control, JoinsAndLeavesContainers) {
  RaisedArea outer("outer");
  RecordingView view;
  outer.AttachView(&view);
  {
    RaisedArea inner("inner");
    inner.SetContainer(&outer);
    EXPECT_EQ(outer.Children().size(), 1U);
  }
  EXPECT_TRUE(outer.Children().empty());
  EXPECT_EQ(view.added, std::vector<std::string>{"inner"});
  EXPECT_EQ(view.removed, std::vector<std::string>{"inner"});
}

TEST(Control, ZOrderBringsItBeforeItsSiblings) {
  RaisedArea outer("outer");
  RaisedArea a("a");
  RaisedArea b("b");
  a.SetContainer(&outer);
  b.SetContainer(&outer);
  a.ZOrder();
  EXPECT_EQ(outer.Children(), (std::vector<Control*>{&b, &a}));
}

TEST(Focus, GoesToOneControlOfAFormAndRaisesBothEvents) {
  UserControl form("form");
  PictureBox first("first");
  PictureBox second("second");
  first.SetContainer(&form);
  second.SetContainer(&form);
  std::string log;
  first.GotFocus.Connect([&] { log += "+1"; });
  first.LostFocus.Connect([&] { log += "-1"; });
  second.GotFocus.Connect([&] { log += "+2"; });
  first.SetFocus();
  second.ReceiveFocus();
  second.ReceiveFocus();
  EXPECT_EQ(log, "+1-1+2");
  EXPECT_EQ(form.ActiveControl(), &second);
  second.LoseFocus();
  EXPECT_EQ(form.ActiveControl(), nullptr);
}

TEST(Focus, IsRefusedWhileTheControlOrAContainerIsHiddenOrDisabled) {
  UserControl form("form");
  RaisedArea area("area");
  PictureBox box("box");
  area.SetContainer(&form);
  box.SetContainer(&area);
  area.SetEnabled(false);
  EXPECT_FALSE(box.CanTakeFocus());
  EXPECT_EQ(ErrorOf([&] { box.SetFocus(); }), 5);
  area.SetEnabled(true);
  form.SetVisible(false);
  EXPECT_FALSE(box.CanTakeFocus());
}

TEST(Focus, OfWhatIsHiddenIsNobodysUntilItIsGivenAgain) {
  UserControl form("form");
  RaisedArea area("area");
  PictureBox box("box");
  area.SetContainer(&form);
  box.SetContainer(&area);
  std::string log;
  box.GotFocus.Connect([&] { log += "+"; });
  box.LostFocus.Connect([&] { log += "-"; });
  for (Control* hidden : {static_cast<Control*>(&box), static_cast<Control*>(&area)}) {
    box.SetFocus();
    hidden->SetVisible(false);
    EXPECT_EQ(form.ActiveControl(), nullptr);
    hidden->SetVisible(true);
    EXPECT_EQ(form.ActiveControl(), nullptr);
  }
  EXPECT_EQ(log, "+-+-");
}

TEST(Focus, OfADestroyedControlIsNobodys) {
  UserControl form("form");
  {
    PictureBox box("box");
    box.SetContainer(&form);
    box.SetFocus();
  }
  EXPECT_EQ(form.ActiveControl(), nullptr);
}

TEST(UserControl, MeasuresItselfInTwipsAndRaisesResize) {
  UserControl form("form");
  int resizes = 0;
  form.Resize.Connect([&] { ++resizes; });
  form.UserResize(100, 50);
  form.UserResize(100, 50);
  EXPECT_EQ(form.Width(), 1500);
  EXPECT_EQ(form.Height(), 750);
  EXPECT_EQ(resizes, 1);
}

TEST(CheckBox, RaisesClickWhenItsValueChangesByWhomever) {
  CheckBox box("chkCancelPrinting");
  int clicks = 0;
  box.Click.Connect([&] { ++clicks; });
  box.UserToggle();
  box.SetValue(true);
  box.SetValue(false);
  box.SetEnabled(false);
  box.UserToggle();
  EXPECT_EQ(clicks, 2);
}

}  // namespace
}  // namespace kw
