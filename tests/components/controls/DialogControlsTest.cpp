#include <gtest/gtest.h>

#include <vector>

#include "components/controls/CheckBox.h"
#include "components/controls/CommandButton.h"
#include "components/controls/DialogForm.h"
#include "components/controls/Label.h"
#include "components/controls/NumberField.h"
#include "components/controls/OptionButton.h"
#include "tests/support/Errors.h"

namespace kw::test {
namespace {

TEST(NumberFieldTest, RaisesChangeForWhatIsTypedAndStepForSteps) {
  NumberField field("field");
  int changes = 0;
  std::vector<int> steps;
  field.Change.Connect([&] { ++changes; });
  field.Step.Connect([&](int by) { steps.push_back(by); });
  field.SetText("1");
  field.UserType("1");
  EXPECT_EQ(changes, 0);
  field.UserType("12");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(field.Text(), "12");
  field.UserStep(0);
  field.UserStep(-2);
  EXPECT_EQ(steps, std::vector<int>{-2});
  field.SetEnabled(false);
  field.UserType("3");
  field.UserStep(1);
  EXPECT_EQ(field.Text(), "12");
  EXPECT_EQ(steps.size(), 1U);
  EXPECT_EQ(ErrorOf([&] { field.StartTyping(); }), static_cast<std::int32_t>(ErrorNumber::InvalidProcedureCall));
}

TEST(CommandButtonTest, IsClickedWhileItIsEnabled) {
  CommandButton button("button");
  int clicks = 0;
  button.Click.Connect([&] { ++clicks; });
  button.UserClick();
  button.SetEnabled(false);
  button.UserClick();
  EXPECT_EQ(clicks, 1);
}

class Mnemonics : public testing::Test {
protected:
  Mnemonics() {
    for (Control* control : std::initializer_list<Control*>{&label, &unit, &field, &tick, &option, &button})
      control->SetContainer(&form);
    label.SetHasMnemonic(true);
    label.SetCaption("A && &B");
    unit.SetCaption("&U");
    tick.SetCaption("&Tick");
    option.SetCaption("&Option");
    button.SetCaption("&Go");
    form.SetVisible(true);
  }

  DialogForm form{"form"};
  Label label{"label"};
  Label unit{"unit"};
  NumberField field{"field"};
  CheckBox tick{"tick"};
  OptionButton option{"option"};
  CommandButton button{"button"};
};

TEST_F(Mnemonics, ChooseTheirControl) {
  EXPECT_TRUE(form.UserAltKey(u'T'));
  EXPECT_TRUE(tick.Value());
  EXPECT_EQ(form.ActiveControl(), &tick);
  EXPECT_TRUE(form.UserAltKey(u'o'));
  EXPECT_TRUE(option.Value());
  int clicks = 0;
  button.Click.Connect([&] { ++clicks; });
  EXPECT_TRUE(form.UserAltKey(u'g'));
  EXPECT_EQ(clicks, 1);
}

TEST_F(Mnemonics, OfALabelLeadToTheNextControlThatTakesTheFocus) {
  EXPECT_TRUE(form.UserAltKey(u'b'));
  EXPECT_EQ(form.ActiveControl(), &field);
  field.SetEnabled(false);
  EXPECT_TRUE(form.UserAltKey(u'b'));
  EXPECT_EQ(form.ActiveControl(), &tick);
  for (Control* control : std::initializer_list<Control*>{&tick, &option, &button}) control->SetEnabled(false);
  EXPECT_TRUE(form.UserAltKey(u'b')) << "nobody is there to take it";
}

TEST_F(Mnemonics, AreLettersBehindASingleAmpersandOfWhatCanBeUsed) {
  EXPECT_FALSE(form.UserAltKey(u'&'));
  EXPECT_FALSE(form.UserAltKey(u' '));
  EXPECT_FALSE(form.UserAltKey(0));
  EXPECT_FALSE(form.UserAltKey(u'u')) << "a label without mnemonics shows its ampersand";
  tick.SetEnabled(false);
  EXPECT_FALSE(form.UserAltKey(u't'));
  button.SetVisible(false);
  EXPECT_FALSE(form.UserAltKey(u'g'));
  label.SetCaption("&");
  EXPECT_FALSE(form.UserAltKey(0));
}

}  // namespace
}  // namespace kw::test
