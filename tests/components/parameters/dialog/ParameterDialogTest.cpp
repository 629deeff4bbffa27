#include "components/parameters/dialog/ParameterDialog.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/Errors.h"
#include "tests/support/Numbers.h"
#include "tests/support/ScriptedDesktop.h"

namespace kw::test {
namespace {

// Notes when a field is to select its text.
class TypingWatch final : public View {
public:
  explicit TypingWatch(Control& watched) : control(watched) { control.AttachView(this); }
  ~TypingWatch() override { control.DetachView(); }
  void Changed(Aspect aspect) override { starts += aspect == Aspect::Typing ? 1 : 0; }

  int starts = 0;

private:
  Control& control;
};

class ParameterDialogTest : public testing::Test, protected Numbers {
protected:
  // Asks; Enter is pressed in the end unless the user has left the dialog.
  bool Ask(const std::function<void()>& user) {
    dialog.emplace(desktop, question, values);
    desktop.onParameters = [&](DialogForm&) { user(); };
    return dialog->ShowModal();
  }
  NumberField& Number(std::size_t i) { return dialog->fields[i]->number; }
  Slider& SliderOf(std::size_t i) { return dialog->fields[i]->slider; }
  ImageCombo& Choice() { return dialog->fields[Kernel]->choice; }
  void Press(std::int16_t key) { dialog->form.KeyDown.Raise(key, 0); }
  std::string Message() { return dialog->message.Caption(); }
  const Control* Focus() { return dialog->form.ActiveControl(); }
  bool FirePreview() { return desktop.FireTimer(dialog->tmrPreview); }
  // A preview that tells which angle it shows.
  void ShowPreviews() {
    question.makePreview = [this](std::int32_t width, std::int32_t height) -> ParameterQuestion::Preview {
      rooms.emplace_back(width, height);
      return [this](std::span<const double> shown) {
        shownAngles.push_back(shown[Angle]);
        pointers.push_back(dialog->form.Pointer());
        if (shown[Angle] == 66) Raise(ErrorNumber::OutOfMemory);
        if (shown[Angle] == 50) std::this_thread::sleep_for(std::chrono::milliseconds(60));
        return Bitmap(40, 30, 24);
      };
    };
  }

  ScriptedDesktop desktop;
  ParameterQuestion question{.title = "Kw numbers", .fields = Fields};
  std::array<double, 4> values{10, 2.5, 7, 2};
  const std::array<double, 4> start = values;
  std::optional<ParameterDialog> dialog;
  std::vector<std::pair<int, int>> rooms;
  std::vector<double> shownAngles;
  std::vector<MousePointer> pointers;
};

TEST_F(ParameterDialogTest, ShowsTheValuesAndGivesThoseThatWereTyped) {
  EXPECT_TRUE(Ask([&] {
    EXPECT_EQ(dialog->form.Caption(), "Kw numbers");
    EXPECT_EQ(Number(Angle).Text(), "10");
    EXPECT_EQ(Number(Sigma).Text(), "2.5");
    EXPECT_EQ(Number(Level).Text(), "7");
    EXPECT_EQ(Choice().Text(), "Second");
    EXPECT_EQ(SliderOf(Angle).Value(), 370);
    EXPECT_EQ(SliderOf(Angle).Max(), 720);
    EXPECT_EQ(SliderOf(Sigma).Value(), 22);
    Number(Angle).UserType("-45.25");
    Number(Sigma).UserType(" 0,75 ");
    Number(Level).UserType("255");
    EXPECT_EQ(SliderOf(Angle).Value(), 315);
    EXPECT_EQ(SliderOf(Level).Value(), 255);
    EXPECT_EQ(Number(Angle).Text(), "-45.25") << "the slider follows, it does not round the number";
    Choice().UserChoose(1);
  }));
  EXPECT_EQ(values, (std::array<double, 4>{-45.25, 0.75, 255, 1}));
}

TEST_F(ParameterDialogTest, WritesAndReadsTheUsersDecimalSeparator) {
  desktop.decimalSeparator = "٫";
  EXPECT_TRUE(Ask([&] {
    EXPECT_EQ(Number(Sigma).Text(), "2٫5");
    Number(Sigma).UserType("1٫25");
  }));
  EXPECT_EQ(values[Sigma], 1.25);
}

TEST_F(ParameterDialogTest, SlidersAndSpinButtonsStepWithinTheRange) {
  EXPECT_TRUE(Ask([&] {
    SliderOf(Level).UserSetValue(254);
    EXPECT_EQ(Number(Level).Text(), "254");
    EXPECT_EQ(Message(), "Level: 0 to 255; 0: found; default 0");
    for (int i = 0; i < 3; ++i) Number(Level).UserStep(1);
    EXPECT_EQ(Number(Level).Text(), "255");
    EXPECT_EQ(SliderOf(Level).Value(), 255);
    Number(Sigma).UserStep(-1);
    EXPECT_EQ(Number(Sigma).Text(), "2.4");
    EXPECT_EQ(SliderOf(Sigma).Value(), 21);
  }));
  EXPECT_EQ(values, (std::array<double, 4>{10, 2.4, 255, 2}));
}

TEST_F(ParameterDialogTest, AStepFromWhatIsNoNumberGoesToTheStandardValue) {
  EXPECT_TRUE(Ask([&] {
    Number(Angle).UserType("x");
    EXPECT_EQ(SliderOf(Angle).Value(), 370) << "the slider waits for a number";
    Number(Angle).UserStep(1);
    EXPECT_EQ(Number(Angle).Text(), "90");
    Number(Level).UserType("");
    SliderOf(Level).UserSetValue(9);
    EXPECT_EQ(Number(Level).Text(), "9");
  }));
  EXPECT_EQ(values, (std::array<double, 4>{90, 2.5, 9, 2}));
}

TEST_F(ParameterDialogTest, EscapeCancelAndTheCloseBoxLeaveTheValues) {
  const std::function<void()> ways[] = {[&] { Press(DialogForm::EscapeKey); }, [&] { dialog->cancel.UserClick(); },
                                        [&] { dialog->form.UserClose(); }};
  for (const auto& leave : ways) {
    EXPECT_FALSE(Ask([&] {
      Number(Angle).UserType("33");
      leave();
      EXPECT_FALSE(dialog->form.Visible());
    }));
    EXPECT_EQ(values, start);
  }
}

TEST_F(ParameterDialogTest, EnterPressesTheButtonThatHasTheFocusElseOk) {
  EXPECT_TRUE(Ask([&] {
    dialog->defaults.SetFocus();
    Press(DialogForm::EnterKey);
    EXPECT_EQ(Number(Angle).Text(), "90");
    EXPECT_TRUE(dialog->form.Visible());
    SliderOf(Angle).SetFocus();
    Press('A');
    EXPECT_TRUE(dialog->form.Visible());
  }));
  EXPECT_EQ(values, (std::array<double, 4>{90, 1.5, 0, 1}));
  EXPECT_FALSE(Ask([&] { dialog->cancel.SetFocus(); }));
}

TEST_F(ParameterDialogTest, DefaultsBringsBackTheStandardValues) {
  EXPECT_TRUE(Ask([&] {
    Number(Angle).UserType("nonsense");
    dialog->defaults.UserClick();
    EXPECT_EQ(Number(Angle).Text(), "90");
    EXPECT_EQ(SliderOf(Angle).Value(), 450);
    EXPECT_EQ(Choice().SelectedItem(), 1);
  }));
  EXPECT_EQ(values, (std::array<double, 4>{90, 1.5, 0, 1}));
}

TEST_F(ParameterDialogTest, ANumberOutOfItsRangeIsShownAndNotTaken) {
  EXPECT_TRUE(Ask([&] {
    const TypingWatch angle(Number(Angle));
    const TypingWatch level(Number(Level));
    int wrong = 0;
    for (const char* text : {"", "361", "1e2", "nan", "3 4", "--1", "\u0661"}) {
      Number(Angle).UserType(text);
      dialog->ok.SetFocus();
      Press(DialogForm::EnterKey);
      EXPECT_TRUE(dialog->form.Visible());
      EXPECT_EQ(Message(), "Not allowed. Angle: -360 to 360 degrees; default 90");
      EXPECT_EQ(Focus(), &Number(Angle));
      Press(DialogForm::EnterKey);
      wrong += 2;
      EXPECT_EQ(angle.starts, wrong) << "its text is selected, also if it had the focus";
      EXPECT_EQ(desktop.beeps, wrong);
    }
    EXPECT_EQ(values, start);
    Number(Angle).UserType("-360");
    Number(Level).UserType("1.5");
    dialog->ok.UserClick();
    EXPECT_EQ(Focus(), &Number(Level)) << "only whole numbers";
    EXPECT_EQ(level.starts, 1);
    Number(Level).UserType("1");
    EXPECT_EQ(Message(), "Level: 0 to 255; 0: found; default 0");
  }));
  EXPECT_EQ(values, (std::array<double, 4>{-360, 2.5, 1, 2}));
}

TEST_F(ParameterDialogTest, TheKeyboardVisitsFieldsThenButtons) {
  EXPECT_TRUE(Ask([&] {
    std::vector<const Control*> stops;
    for (const Control* child : dialog->form.Children()) {
      const bool isStop = child->CanTakeFocus() && dynamic_cast<const Label*>(child) == nullptr;
      if (isStop) stops.push_back(child);
    }
    EXPECT_EQ(stops,
              (std::vector<const Control*>{&Number(0), &SliderOf(0), &Number(1), &SliderOf(1), &Number(2), &SliderOf(2),
                                           &Choice(), &dialog->ok, &dialog->cancel, &dialog->defaults}));
    EXPECT_EQ(Focus(), &Number(0)) << "the first field is selected";
    EXPECT_EQ(Message(), "Angle: -360 to 360 degrees; default 90");
  }));
}

TEST_F(ParameterDialogTest, AMnemonicLeadsToItsField) {
  EXPECT_FALSE(Ask([&] {
    EXPECT_EQ(dialog->fields[Level]->label.Caption(), "&Level:");
    EXPECT_TRUE(dialog->form.UserAltKey(u'l'));
    EXPECT_EQ(Focus(), &Number(Level));
    EXPECT_EQ(Message(), "Level: 0 to 255; 0: found; default 0");
    EXPECT_TRUE(dialog->form.UserAltKey(u'K'));
    EXPECT_EQ(Focus(), &Choice());
    EXPECT_EQ(Message(), "Kernel: default First");
    EXPECT_FALSE(dialog->form.UserAltKey(u'x'));
    EXPECT_FALSE(dialog->form.UserAltKey(0));
    EXPECT_TRUE(dialog->form.UserAltKey(u'd'));
    EXPECT_EQ(Number(Angle).Text(), "90");
    EXPECT_EQ(Focus(), &dialog->defaults);
    Press(DialogForm::EscapeKey);
  }));
}

TEST_F(ParameterDialogTest, WithoutAPreviewThereIsNoPictureAndNoTimer) {
  EXPECT_TRUE(Ask([&] {
    EXPECT_EQ(dialog->picPreview.Container(), nullptr);
    Number(Angle).UserType("5");
    EXPECT_FALSE(FirePreview());
  }));
}

TEST_F(ParameterDialogTest, ThePreviewFollowsTheValuesOnceForManyChanges) {
  ShowPreviews();
  EXPECT_TRUE(Ask([&] {
    EXPECT_EQ(desktop.runningTimers[&dialog->tmrPreview], 15);
    EXPECT_TRUE(rooms.empty()) << "the window is up before the first preview is made";
    dialog->form.UserScale(1.5);
    EXPECT_TRUE(FirePreview());
    EXPECT_EQ(rooms, (std::vector<std::pair<int, int>>{{360, 360}})) << "pixels of the screen";
    EXPECT_EQ(dialog->picPreview.Picture().Width(), 40);
    EXPECT_FALSE(FirePreview()) << "nothing changed";
    for (int position = 400; position < 440; ++position) SliderOf(Angle).UserSetValue(position);
    EXPECT_TRUE(FirePreview());
    EXPECT_EQ(shownAngles, (std::vector<double>{10, 79}));
    Number(Angle).UserType("x");
    EXPECT_FALSE(FirePreview());
    Number(Sigma).UserType("3");
    EXPECT_TRUE(FirePreview());
    EXPECT_EQ(shownAngles.size(), 2U) << "the last picture stays until all numbers are allowed";
    EXPECT_EQ(dialog->picPreview.Picture().Width(), 40);
    Number(Angle).UserType("78");
    EXPECT_TRUE(FirePreview());
    EXPECT_EQ(shownAngles.back(), 78);
    EXPECT_EQ(rooms.size(), 1U);
    SliderOf(Angle).UserSetValue(0);
  }));
  EXPECT_FALSE(FirePreview()) << "the dialog is left";
}

TEST_F(ParameterDialogTest, AFailedPreviewIsNone) {
  ShowPreviews();
  EXPECT_TRUE(Ask([&] {
    FirePreview();
    Number(Angle).UserType("66");
    EXPECT_EQ(ErrorOf([&] { FirePreview(); }), static_cast<std::int32_t>(ErrorNumber::OutOfMemory));
    EXPECT_TRUE(dialog->picPreview.Picture().IsEmpty());
    EXPECT_EQ(dialog->form.Pointer(), MousePointer::Default);
    Number(Angle).UserType("55");
    EXPECT_TRUE(FirePreview());
    EXPECT_EQ(dialog->picPreview.Picture().Width(), 40);
  }));
  EXPECT_EQ(values[Angle], 55);
}

TEST_F(ParameterDialogTest, TheHourglassIsShownForTheFirstPreviewAndAfterASlowOne) {
  ShowPreviews();
  EXPECT_TRUE(Ask([&] {
    for (const char* angle : {"11", "50", "12", "13"}) {
      Number(Angle).UserType(angle);
      FirePreview();
      EXPECT_EQ(dialog->form.Pointer(), MousePointer::Default);
    }
  }));
  EXPECT_EQ(pointers, (std::vector<MousePointer>{MousePointer::Hourglass, MousePointer::Default,
                                                 MousePointer::Hourglass, MousePointer::Default}));
}

// Left, top, width and height in pixels of the form.
std::vector<float> PlaceOf(const Control& control) {
  return {control.Left(), control.Top(), control.Width(), control.Height()};
}
using Place = std::vector<float>;

TEST_F(ParameterDialogTest, IsDesignedWithAPreview) {
  ShowPreviews();
  const ParameterDialog made(desktop, question, values);
  EXPECT_EQ(PlaceOf(made.form), (Place{0, 0, ToTwips(516), ToTwips(318)}));
  EXPECT_EQ(PlaceOf(made.picPreview), (Place{12, 12, 240, 240}));
  EXPECT_EQ(PlaceOf(made.fields[Sigma]->label), (Place{264, 64, 104, 18}));
  EXPECT_EQ(PlaceOf(made.fields[Sigma]->number), (Place{368, 64, 72, 21}));
  EXPECT_EQ(PlaceOf(made.fields[Sigma]->unit), (Place{446, 64, 58, 18}));
  EXPECT_EQ(PlaceOf(made.fields[Sigma]->slider), (Place{264, 90, 240, 26}));
  EXPECT_EQ(PlaceOf(made.fields[Kernel]->choice), (Place{368, 168, 136, 21}));
  EXPECT_EQ(PlaceOf(made.message), (Place{12, 258, 492, 18}));
  EXPECT_EQ(PlaceOf(made.defaults), (Place{12, 282, 76, 24}));
  EXPECT_EQ(PlaceOf(made.ok), (Place{346, 282, 76, 24}));
  EXPECT_EQ(PlaceOf(made.cancel), (Place{428, 282, 76, 24}));
  EXPECT_TRUE(made.picPreview.IsPreview());
  EXPECT_FALSE(made.picPreview.Enabled());
  EXPECT_EQ(made.picPreview.BackColor(), MakeColour(128, 128, 128));
}

TEST_F(ParameterDialogTest, IsDesignedWithoutAPreview) {
  const ParameterDialog made(desktop, question, values);
  EXPECT_EQ(PlaceOf(made.form), (Place{0, 0, ToTwips(434), ToTwips(182)}));
  EXPECT_EQ(PlaceOf(made.fields[Sigma]->label), (Place{12, 38, 104, 18}));
  EXPECT_EQ(PlaceOf(made.fields[Sigma]->slider), (Place{252, 38, 170, 21}));
  EXPECT_EQ(PlaceOf(made.message), (Place{12, 122, 410, 18}));
  EXPECT_FALSE(made.form.KeyPreview());
  EXPECT_EQ(made.ok.Caption(), "OK");
  EXPECT_TRUE(made.ok.IsDefault());
  EXPECT_EQ(made.cancel.Caption(), "Cancel");
  EXPECT_FALSE(made.cancel.IsDefault());
  EXPECT_EQ(made.defaults.Caption(), "&Defaults");
  EXPECT_EQ(made.fields[Angle]->unit.Caption(), "degrees");
  EXPECT_FALSE(made.fields[Angle]->slider.HasTicks());
  EXPECT_EQ(made.fields[Angle]->slider.LargeChange(), 72);
  EXPECT_EQ(made.fields[Level]->slider.LargeChange(), 25);
  EXPECT_EQ(made.fields[Kernel]->choice.ItemCount(), 3);
}

TEST_F(ParameterDialogTest, NoControlsOverlapAndAllAreInside) {
  for (const bool hasPicture : {false, true}) {
    if (hasPicture) ShowPreviews();
    EXPECT_TRUE(Ask([&] {
      const auto& children = dialog->form.Children();
      for (const Control* one : children) {
        EXPECT_GE(one->Left(), 12);
        EXPECT_GE(one->Top(), 12);
        EXPECT_LE(one->Left() + one->Width(), ToPixels(dialog->form.Width()) - 12);
        EXPECT_LE(one->Top() + one->Height(), ToPixels(dialog->form.Height()) - 12);
        for (const Control* other : children) {
          const bool isApart =
              one->Left() + one->Width() <= other->Left() || other->Left() + other->Width() <= one->Left() ||
              one->Top() + one->Height() <= other->Top() || other->Top() + other->Height() <= one->Top();
          EXPECT_TRUE(one == other || isApart) << one->Name() << " and " << other->Name();
        }
      }
    }));
  }
}

TEST_F(ParameterDialogTest, ManyFieldsFitOnASmallScreen) {
  const std::vector<Parameter> many(14, question.fields[Sigma]);
  std::vector<double> ones(14, 1);
  question.fields = many;
  ParameterDialog asked(desktop, question, ones);
  constexpr float captionAndFrame = 32;
  EXPECT_LE(ToPixels(asked.form.Height()), 480 - captionAndFrame);
  EXPECT_LE(ToPixels(asked.form.Width()), 640 - captionAndFrame);
}

TEST_F(ParameterDialogTest, NothingToAskIsAccepted) {
  question.fields = {};
  EXPECT_TRUE(ParameterDialog(desktop, question, {}).ShowModal());
}

TEST_F(ParameterDialogTest, ADesktopWithoutAWindowLeavesTheValues) {
  desktop.onParameters = [](DialogForm&) { Raise(ErrorNumber::OutOfMemory); };
  EXPECT_EQ(ErrorOf([&] { ParameterDialog(desktop, question, values).ShowModal(); }),
            static_cast<std::int32_t>(ErrorNumber::OutOfMemory));
  EXPECT_EQ(values, start);
}

}  // namespace
}  // namespace kw::test
