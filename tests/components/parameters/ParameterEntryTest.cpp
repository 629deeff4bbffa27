#include "components/parameters/ParameterEntry.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "tests/support/Numbers.h"

namespace kw::test {
namespace {

constexpr std::array<double, 4> Start{10, 2.5, 7, 2};

class Entry : public testing::Test, protected Numbers {
protected:
  Entry() {
    entry.OnChange([this] { ++changes; });
  }
  void ExpectValues(const std::vector<double>& values) const { EXPECT_EQ(entry.Values(), values); }

  ParameterEntry entry{Fields, Start, "."};
  int changes = 0;
};

TEST_F(Entry, ShowsTheValuesItStartsWith) {
  EXPECT_EQ(entry.Count(), 4U);
  EXPECT_EQ(entry.Text(Angle), "10");
  EXPECT_EQ(entry.Text(Sigma), "2.5");
  EXPECT_EQ(entry.Position(Angle), 370);
  EXPECT_EQ(entry.LastPosition(Angle), 720);
  EXPECT_EQ(entry.Position(Sigma), 22);
  EXPECT_EQ(entry.LastPosition(Sigma), 497);
  EXPECT_EQ(entry.LastPosition(Level), 255);
  EXPECT_TRUE(entry.IsChoice(Kernel));
  EXPECT_FALSE(entry.IsChoice(Level));
  EXPECT_EQ(entry.Choice(Kernel), 1U);
  EXPECT_EQ(entry.Range(Level), "Level: 0 to 255; 0: found; default 0");
  EXPECT_EQ(entry.FirstInvalid(), std::nullopt);
  ExpectValues({10, 2.5, 7, 2});
  EXPECT_EQ(changes, 0);
}

TEST_F(Entry, TakesWhatIsTypedAndTellsOfItOnce) {
  entry.Type(Angle, "-45.25");
  EXPECT_EQ(changes, 1);
  entry.Type(Angle, " -45,25");
  EXPECT_EQ(changes, 1) << "the same number";
  EXPECT_EQ(entry.Position(Angle), 315);
  ExpectValues({-45.25, 2.5, 7, 2});
}

TEST_F(Entry, HasNoValueWhileATextIsNotAllowed) {
  entry.Type(Level, "1.5");
  entry.Type(Sigma, "");
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(entry.FirstInvalid(), Sigma);
  EXPECT_EQ(entry.Position(Sigma), std::nullopt);
  EXPECT_EQ(entry.Values(), std::nullopt);
  entry.Type(Sigma, "50");
  EXPECT_EQ(entry.FirstInvalid(), Level);
  entry.Type(Level, "7");
  EXPECT_EQ(entry.FirstInvalid(), std::nullopt);
  EXPECT_EQ(changes, 2) << "a value that comes back is a change";
}

TEST_F(Entry, StepsStayWithinTheRangeAndLeaveNoDust) {
  entry.Step(Sigma, -1);
  EXPECT_EQ(entry.Text(Sigma), "2.4");
  for (int i = 0; i < 30; ++i) entry.Step(Sigma, -1);
  EXPECT_EQ(entry.Text(Sigma), "0.3");
  entry.Step(Level, 1000);
  EXPECT_EQ(entry.Text(Level), "255");
  entry.Type(Sigma, "2.25");
  entry.Step(Sigma, 1);
  EXPECT_EQ(entry.Text(Sigma), "2.35");
}

TEST_F(Entry, AStepFromATextThatIsNoNumberLeadsToTheDefault) {
  entry.Type(Angle, "nonsense");
  entry.Step(Angle, -1);
  EXPECT_EQ(entry.Text(Angle), "90");
}

TEST_F(Entry, TheSliderReachesBothEndsAndNoFurther) {
  for (const std::size_t field : {Angle, Sigma, Level}) {
    entry.SlideTo(field, 0);
    EXPECT_EQ(entry.Position(field), 0);
    entry.SlideTo(field, -5);
    EXPECT_EQ(entry.Position(field), 0);
    entry.SlideTo(field, entry.LastPosition(field));
    EXPECT_EQ(entry.Position(field), entry.LastPosition(field));
    EXPECT_EQ((*entry.Values())[field], Fields[field].greatest);
  }
  entry.SlideTo(Sigma, 21);
  EXPECT_EQ((*entry.Values())[Sigma], 2.4) << "exactly";
  const Parameter uneven[] = {{"Uneven", 0, 60.55, 0}};
  const double start[] = {0};
  ParameterEntry other(uneven, start, ".");
  other.SlideTo(0, other.LastPosition(0));
  EXPECT_EQ(other.Text(0), "60.55") << "the last step is a shorter one";
}

TEST_F(Entry, ChoicesCountFromTheLeastNumber) {
  entry.Choose(Kernel, 2);
  EXPECT_EQ(entry.Choice(Kernel), 2U);
  ExpectValues({10, 2.5, 7, 3});
  EXPECT_EQ(changes, 1);
  entry.Choose(Kernel, 3);
  entry.Choose(Kernel, static_cast<std::size_t>(-1));
  ExpectValues({10, 2.5, 7, 3});
  EXPECT_EQ(changes, 1);
}

TEST_F(Entry, DefaultsBringBackTheStandardValuesOfAllFields) {
  entry.Type(Angle, "nonsense");
  entry.SetDefaults();
  ExpectValues({90, 1.5, 0, 1});
  EXPECT_EQ(entry.Choice(Kernel), 0U);
  changes = 0;
  entry.SetDefaults();
  EXPECT_EQ(changes, 0);
}

TEST(ParameterEntry, WithoutFieldsIsValid) {
  const ParameterEntry entry({}, {}, ".");
  EXPECT_EQ(entry.FirstInvalid(), std::nullopt);
  EXPECT_EQ(entry.Values(), std::vector<double>{});
}

}  // namespace
}  // namespace kw::test
