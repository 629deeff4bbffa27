#include "components/parameters/ParameterText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace kw::test {
namespace {

constexpr Parameter AngleField{"Angle", -360, 360, 90, false, "degrees"};
constexpr Parameter LevelField{"Level", 0, 255, 0, true, "", "found"};

TEST(ParameterText, LabelsAreWordsWithALetterEach) {
  EXPECT_EQ(LabelOf("BlurSigma"), "Blur sigma");
  EXPECT_EQ(LabelOf(""), "");
  const std::vector<Parameter> fields{{"Angle"}, {"Area"}, {"Ra"}, {"Ar"}, {"ToDo"}};
  EXPECT_EQ(WithMnemonics(fields, "d"), (std::vector<std::string>{"&Angle", "A&rea", "Ra", "Ar", "&To do"}));
  const std::vector<Parameter> taken{{"Ddd"}};
  EXPECT_EQ(WithMnemonics(taken, "d"), std::vector<std::string>{"Ddd"});
}

TEST(ParameterText, NumbersHaveNoMoreDigitsThanTheyNeed) {
  EXPECT_EQ(NumberText(90, "."), "90");
  EXPECT_EQ(NumberText(-0.3, "."), "-0.3");
  EXPECT_EQ(NumberText(0.1 + 0.2, "."), "0.3");
  EXPECT_EQ(NumberText(1.23449, "."), "1.234");
  EXPECT_EQ(NumberText(100000, "."), "100000");
  EXPECT_EQ(NumberText(-20.05, "."), "-20.05");
  EXPECT_EQ(NumberText(7.005, "."), "7.005");
  EXPECT_EQ(NumberText(1.9996, "."), "2");
  EXPECT_EQ(NumberText(-0.0004, "."), "0");
  EXPECT_EQ(NumberText(9007199254740.5, "."), "9007199254740.5");
  EXPECT_EQ(NumberText(1e15, ","), "1000000000000000");
  EXPECT_EQ(NumberText(2.5, ","), "2,5");
  EXPECT_EQ(NumberText(2.5, "\xD9\xAB"),
            "2\xD9\xAB"
            "5");
  EXPECT_EQ(NumberText(std::numeric_limits<double>::max() / 1e6, ".").size(), 303U);
}

TEST(ParameterText, ReadsWhatItWritesWithAnySeparator) {
  for (const char* separator : {".", ",", "\xD9\xAB"}) {
    for (const double value : {-360.0, -0.125, 0.0, 2.5, 90.0, 359.999}) {
      EXPECT_EQ(NumberOf(NumberText(value, separator), AngleField, separator), value) << separator;
    }
  }
  EXPECT_EQ(NumberOf(" 0,75 ", AngleField, "."), 0.75);
  EXPECT_EQ(NumberOf("0.75", AngleField, ","), 0.75);
  EXPECT_EQ(NumberOf("+4", AngleField, "."), 4);
  EXPECT_EQ(NumberOf(".5", AngleField, "."), 0.5);
  EXPECT_EQ(NumberOf("5.", AngleField, ""), 5);
}

TEST(ParameterText, ReadsNoTextThatIsNoNumberOfTheField) {
  for (const char* text : {"",
                           " ",
                           "361",
                           "-360.001",
                           "1e2",
                           "nan",
                           "inf",
                           "-inf",
                           "3 4",
                           "--1",
                           "+-1",
                           "++1",
                           "0x10",
                           "1.2.3",
                           "1,2,3",
                           "1\n",
                           "\xD9\xA1",
                           "\xFF",
                           "4\xE2\x82\xAC",
                           "99999999999999999999999999999999999999999999999999999999999999999999999999"})
    EXPECT_EQ(NumberOf(text, AngleField, "."), std::nullopt) << text;
  EXPECT_EQ(NumberOf(std::string_view("5\0", 2), AngleField, "."), std::nullopt);
  EXPECT_EQ(NumberOf("1.5", LevelField, "."), std::nullopt);
  EXPECT_EQ(NumberOf("1.0", LevelField, "."), 1);
  EXPECT_EQ(NumberOf("256", LevelField, "."), std::nullopt);
}

TEST(ParameterText, TellsTheRangeInALine) {
  EXPECT_EQ(RangeText(AngleField, "."), "Angle: -360 to 360 degrees; default 90");
  EXPECT_EQ(RangeText(LevelField, "."), "Level: 0 to 255; 0: found; default 0");
  EXPECT_EQ(RangeText({"BlurSigma", 0.3, 50, 1.5, false, "pixels"}, ","), "Blur sigma: 0,3 to 50 pixels; default 1,5");
  static constexpr std::string_view choices[] = {"First", "Second"};
  EXPECT_EQ(RangeText({"Kernel", 3, 4, 4, true, "", "", choices}, "."), "Kernel: default Second");
}

}  // namespace
}  // namespace kw::test
