// What the scenarios promise to the tests that let something fail in them.

#include <gtest/gtest.h>

#include "tests/torture/Scenarios.h"

namespace kw::test {
namespace {

// Each action, when nothing fails.
class EachScenario : public testing::TestWithParam<const Scenario*> {};

TEST_P(EachScenario, SucceedsTwice) {
  const auto stage = GetParam()->prepare();
  for (int time = 1; time <= 2; ++time) {
    const Outcome outcome = stage->Run();
    EXPECT_TRUE(outcome.Errors().empty()) << "error " << outcome.Errors().front();
    EXPECT_FALSE(outcome.isRefused);
    EXPECT_FALSE(outcome.isForeign);
    EXPECT_EQ(stage->Broken(), std::vector<std::string>());
    stage->Recover();
  }
}

TEST_P(EachScenario, HasOneOutcome) {
  State first;
  for (int time = 1; time <= 2; ++time) {
    const auto stage = GetParam()->prepare();
    stage->Run();
    if (time == 1) {
      first = stage->Look();
    } else {
      EXPECT_EQ(stage->Look(), first);
    }
  }
}

std::vector<const Scenario*> Rows() {
  std::vector<const Scenario*> rows;
  for (const Scenario& scenario : Scenarios()) rows.push_back(&scenario);
  return rows;
}

std::string NameOf(const testing::TestParamInfo<const Scenario*>& info) {
  std::string name = info.param->name;
  for (char& letter : name) {
    if (letter == '.') letter = '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, EachScenario, testing::ValuesIn(Rows()), NameOf);

TEST(StatesOfAScenario, AreOldNewOrBetween) {
  const Scenario scenario{.name = "any", .prepare = {}, .between = {{"page", {"none"}}}};
  const State before{{"page", "a"}, {"file x", "1"}};
  const State expected{{"page", "b"}, {"file x", "1"}, {"file y", "2"}};
  EXPECT_TRUE(NeitherOldNorNew(scenario, before, expected, before).empty());
  EXPECT_TRUE(NeitherOldNorNew(scenario, before, expected, expected).empty());
  EXPECT_TRUE(NeitherOldNorNew(scenario, before, expected, {{"page", "none"}, {"file x", "1"}}).empty());
  EXPECT_EQ(NeitherOldNorNew(scenario, before, expected, {{"page", "c"}, {"file y", "3"}, {"file z", "4"}}).size(), 4U);
}

}  // namespace
}  // namespace kw::test
