// Each request for memory fails once, in everything that the library and the editor do: the outcome is lack of memory
// that was told, nothing is half done, nothing is left, and the same action succeeds behind it. KW_TORTURE=all tries
// every request; else some of each scenario are tried. KW_TORTURE_SEED chooses other ones.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>

#include "components/base/RunTimeError.h"
#include "tests/support/Watched.h"
#include "tests/torture/FailingMemory.h"
#include "tests/torture/Scenarios.h"

namespace kw::test {
namespace {

using Failing = FailingMemory::Failing;

std::string TextOf(const char* variable, const char* otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : text;
}

long OpenedFiles() {
  std::error_code error;
  const std::filesystem::directory_iterator entries("/proc/self/fd", error);
  return error ? 0 : std::distance(begin(entries), end(entries));
}

bool IsLackOfMemory(std::int32_t number) {
  return number == static_cast<std::int32_t>(ErrorNumber::OutOfMemory) ||
         number == static_cast<std::int32_t>(ErrorNumber::CannotCreateOffScreenImage) ||
         number == static_cast<std::int32_t>(ErrorNumber::InvalidPicture);
}

class ShortOfMemory : public testing::TestWithParam<const Scenario*> {
protected:
  ShortOfMemory() {
    for (int time = 1; time <= 2; ++time) {  // what is made once in a process is there behind the first time
      const auto stage = scenario.prepare();
      before = stage->Look();
      const FailingMemory memory(Failing::Never, 0);
      stage->Run();
      requests = memory.Requests();
      expected = stage->Look();
    }
    openedFiles = OpenedFiles();
  }

  // All, or some that the seed draws; ascending.
  std::vector<long> Chosen(long most) const {
    std::vector<long> all(static_cast<std::size_t>(requests));
    for (long which = 1; which <= requests; ++which) all[static_cast<std::size_t>(which - 1)] = which;
    const std::string wanted = TextOf("KW_TORTURE", "some");
    if (wanted == "all") return all;
    if (wanted != "some") return {std::stol(wanted)};
    std::mt19937 random(static_cast<unsigned>(std::stoul(TextOf("KW_TORTURE_SEED", "20261122"))));
    std::vector<long> some;
    std::ranges::sample(all, std::back_inserter(some), most, random);
    return some;
  }

  void Try(Failing kind, long which) {
    const auto stage = scenario.prepare();
    Outcome outcome;
    bool hasFailed = false;
    {
      const FailingMemory memory(kind, which);
      outcome = stage->Run();
      hasFailed = memory.HasFailed();
    }
    const State now = stage->Look();
    if (!hasFailed) {
      EXPECT_EQ(now, expected);
      return;
    }
    for (const std::int32_t number : outcome.Errors()) {
      // Behind a file that was refused there is no picture to go on with.
      const bool isConsequence =
          outcome.isRefused && number == static_cast<std::int32_t>(ErrorNumber::ObjectVariableNotSet);
      EXPECT_TRUE(isConsequence || IsLackOfMemory(number)) << "error " << number;
    }
    EXPECT_FALSE(outcome.isForeign);
    EXPECT_EQ(stage->Broken(), std::vector<std::string>());
    // A report needs memory, too. If there is none the editor is disabled, and that is all.
    const bool isReportLost = kind == Failing::FromThenOn && outcome.isDisabled;
    const bool isTold = !outcome.Errors().empty() || outcome.isRefused || isReportLost;
    if (isTold) {
      EXPECT_EQ(NeitherOldNorNew(scenario, before, expected, now), std::vector<std::string>());
    } else if (!scenario.isSilent) {
      EXPECT_EQ(now, expected) << "nothing was told";
    }
    stage->Recover();
    const Outcome again = stage->Run();
    EXPECT_TRUE(again.Errors().empty()) << "the next time fails, too: " << again.Errors().front();
    EXPECT_FALSE(again.isRefused || again.isForeign) << "the next time fails, too";
    if (now == before) EXPECT_EQ(stage->Look(), expected) << "the next time";
  }

  void TryEach(Failing kind, long most) {
    long tried = 0;
    for (const long which : Chosen(most)) {
      Try(kind, which);
      ++tried;
      ASSERT_FALSE(HasFailure()) << "request " << which << " of " << requests;
    }
    RecordProperty("tried", std::to_string(tried));
    EXPECT_EQ(OpenedFiles(), openedFiles);
  }

  const Scenario& scenario = *GetParam();
  State before;
  State expected;
  long requests = 0;
  long openedFiles = 0;
};

TEST_P(ShortOfMemory, OneRequestThatFails) { TryEach(Failing::Once, Amount(12L, 6L)); }

TEST_P(ShortOfMemory, AllRequestsFailFromOneOn) { TryEach(Failing::FromThenOn, Amount(4L, 2L)); }

std::vector<const Scenario*> MemoryRows() {
  std::vector<const Scenario*> rows;
  for (const Scenario& one : Scenarios()) rows.push_back(&one);
  return rows;
}

std::string MemoryNameOf(const testing::TestParamInfo<const Scenario*>& info) {
  std::string name = info.param->name;
  std::ranges::replace(name, '.', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Memory, ShortOfMemory, testing::ValuesIn(MemoryRows()), MemoryNameOf);

}  // namespace
}  // namespace kw::test
