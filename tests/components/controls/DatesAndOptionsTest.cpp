#include <gtest/gtest.h>

#include "components/base/LocalDate.h"
#include "components/controls/ControlArray.h"
#include "components/controls/DTPicker.h"
#include "components/controls/OptionButton.h"
#include "components/controls/UserControl.h"
#include "tests/support/Errors.h"

namespace kw::test {
namespace {

TEST(LocalDates, DaysAreAddedOverMonthsYearsAndLeapDays) {
  EXPECT_EQ(AddDays({2003, 11, 7}, 90), (LocalDate{2004, 2, 5}));
  EXPECT_EQ(AddDays({2023, 12, 31}, 90), (LocalDate{2024, 3, 30})) << "over a leap day";
  EXPECT_EQ(AddDays({2022, 12, 31}, 90), (LocalDate{2023, 3, 31}));
  EXPECT_EQ(AddDays({2024, 2, 29}, 90), (LocalDate{2024, 5, 29}));
  EXPECT_EQ(AddDays({2024, 2, 28}, 1), (LocalDate{2024, 2, 29}));
  EXPECT_EQ(AddDays({1900, 2, 28}, 1), (LocalDate{1900, 3, 1})) << "a century without a leap day";
  EXPECT_EQ(AddDays({2000, 2, 28}, 1), (LocalDate{2000, 2, 29}));
}

TEST(LocalDates, OnlyDaysOfTheCalendarAreDates) {
  EXPECT_TRUE(IsDate({2024, 2, 29}));
  EXPECT_FALSE(IsDate({2023, 2, 29}));
  EXPECT_FALSE(IsDate({2023, 0, 1}));
  EXPECT_FALSE(IsDate({2023, 13, 1}));
  EXPECT_FALSE(IsDate({2023, 1, 0}));
  EXPECT_FALSE(IsDate({2023, -1, 3}));
}

TEST(DatePicker, HoldsADateAndSaysWhenItIsAnother) {
  DTPicker picker("picker");
  int changes = 0;
  picker.Change.Connect([&] { ++changes; });
  picker.SetValue({2004, 2, 5});
  picker.SetValue({2004, 2, 5});
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(picker.Year(), 2004);
  EXPECT_EQ(picker.Month(), 2);
  EXPECT_EQ(picker.Day(), 5);
}

TEST(DatePicker, RefusesWhatIsNoDateOrOutOfItsRange) {
  DTPicker picker("picker");
  picker.SetValue({2004, 2, 29});
  for (const LocalDate& bad :
       {LocalDate{2005, 2, 29}, LocalDate{1600, 12, 31}, LocalDate{10000, 1, 1}, LocalDate{2005, 0, 1}}) {
    EXPECT_EQ(ErrorOf([&] { picker.SetValue(bad); }), static_cast<std::int32_t>(ErrorNumber::InvalidPropertyValue));
  }
  EXPECT_EQ(picker.Value(), (LocalDate{2004, 2, 29}));
  picker.SetValue(DTPicker::MaxDate);
  picker.SetValue(DTPicker::MinDate);
}

TEST(DatePicker, IgnoresTheUserWhileItIsDisabled) {
  DTPicker picker("picker");
  picker.SetEnabled(false);
  picker.UserChoose({2004, 2, 5});
  EXPECT_EQ(picker.Value(), DTPicker::MinDate);
  picker.SetEnabled(true);
  picker.UserChoose({2004, 2, 5});
  EXPECT_EQ(picker.Day(), 5);
}

TEST(OptionButtons, OneOfAContainerIsChosen) {
  UserControl form("form");
  UserControl other("other");
  ControlArray<OptionButton> options("options", 3);
  OptionButton elsewhere("elsewhere");
  elsewhere.SetContainer(&other);
  elsewhere.SetValue(true);
  std::vector<int> clicks;
  options.ConnectItems([&](OptionButton& option) {
    option.Click.Connect([&clicks, index = option.Index().value_or(-1)] { clicks.push_back(index); });
  });
  for (int i = 0; i < 3; ++i) options(i).SetContainer(&form);
  options(1).UserChoose();
  options(2).SetValue(true);
  options(2).UserChoose();
  EXPECT_EQ(clicks, (std::vector<int>{1, 2}));
  EXPECT_FALSE(options(1).Value());
  EXPECT_TRUE(options(2).Value());
  EXPECT_TRUE(elsewhere.Value());
  options(0).SetEnabled(false);
  options(0).UserChoose();
  EXPECT_FALSE(options(0).Value());
}

}  // namespace
}  // namespace kw::test
