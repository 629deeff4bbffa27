#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace kw::test {

// What the library and the editor do, one row an action, for tests that let something fail while it is done. Nothing
// here knows what fails.

// What an action may change, each thing by its name: "page", "layers", "file scan.tif" ...
using State = std::map<std::string, std::string>;

// What came of an action. It needs no memory.
class Outcome {
public:
  // An error that was thrown or reported by the trap, in their order; those beyond the first few are not kept.
  void Add(std::int32_t number) {
    if (count < numbers.size()) numbers[count++] = number;
  }
  std::span<const std::int32_t> Errors() const { return {numbers.data(), count}; }
  // A file was refused: Load returned false, or the box "File Error" was shown.
  bool isRefused = false;
  // The editor is disabled, as an error leaves it, even one whose report failed.
  bool isDisabled = false;
  // An exception left the action that is neither a run-time error nor lack of memory.
  bool isForeign = false;

private:
  std::array<std::int32_t, 8> numbers{};
  std::size_t count = 0;
};

// Where an action is done, with everything that it needs. After the constructor and in all calls but Run nothing may
// fail.
class Stage {
public:
  Stage() = default;
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;
  virtual ~Stage() = default;

  // Does the action; no error leaves it. May be called again after Recover.
  Outcome Run();
  virtual State Look() = 0;
  // What always holds and does not now, as sentences.
  virtual std::vector<std::string> Broken() { return {}; }
  // What a host does after an error: Enabled is True again.
  virtual void Recover() {}

protected:
  virtual void Act(Outcome& outcome) = 0;
};

struct Scenario {
  std::string name;
  std::function<std::unique_ptr<Stage>()> prepare;
  // What a thing may be after an action that failed, beside what it was before and what the action makes of it.
  std::map<std::string, std::set<std::string>> between{};
  // A file that cannot be read is no error of this action, and is not told.
  bool isSilent = false;
  // Threads make calls to the file system: how many, differs from time to time.
  bool isOfThreads = false;
};

// Every scenario, the library's first.
const std::vector<Scenario>& Scenarios();

// After an action that failed: which things are neither as they were before nor as the action makes them. A thing that
// has no entry is absent.
std::vector<std::string> NeitherOldNorNew(const Scenario& scenario, const State& before, const State& expected,
                                          const State& now);

}  // namespace kw::test
