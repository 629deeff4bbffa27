#include "tests/torture/Scenarios.h"

#include <iterator>
#include <new>

#include "components/base/RunTimeError.h"
#include "tests/torture/Stages.h"

namespace kw::test {

Outcome Stage::Run() {
  Outcome outcome;
  try {
    Act(outcome);
  } catch (const RunTimeError& error) {
    outcome.Add(error.Number());
  } catch (const std::bad_alloc&) {
    outcome.Add(static_cast<std::int32_t>(ErrorNumber::OutOfMemory));
  } catch (...) {
    outcome.isForeign = true;
  }
  return outcome;
}

const std::vector<Scenario>& Scenarios() {
  static const std::vector<Scenario> all = [] {
    std::vector<Scenario> rows = LibraryScenarios();
    for (auto* const more : {DocumentScenarios, DrawingScenarios, HostScenarios}) {
      std::vector<Scenario> others = more();
      rows.insert(rows.end(), std::make_move_iterator(others.begin()), std::make_move_iterator(others.end()));
    }
    return rows;
  }();
  return all;
}

std::vector<std::string> NeitherOldNorNew(const Scenario& scenario, const State& before, const State& expected,
                                          const State& now) {
  static const std::string absent = "absent";
  const auto in = [](const State& state, const std::string& what) {
    const auto found = state.find(what);
    return found == state.end() ? absent : found->second;
  };
  std::set<std::string> names;
  for (const State* const state : {&before, &expected, &now}) {
    for (const auto& [what, value] : *state) names.insert(what);
  }
  std::vector<std::string> findings;
  for (const std::string& what : names) {
    const std::string value = in(now, what);
    if (value == in(before, what) || value == in(expected, what)) continue;
    const auto between = scenario.between.find(what);
    if (between != scenario.between.end() && between->second.contains(value)) continue;
    std::string finding = what;
    finding.append(" is ").append(value).append(", was ").append(in(before, what));
    findings.push_back(finding.append(", ought to be ").append(in(expected, what)));
  }
  return findings;
}

}  // namespace kw::test
