// Each call to the file system fails once, or all fail from one on, in everything that the library and the editor do:
// the outcome is an error that was told, every file is the old one or the new one, nothing is left that the next
// process would not remove, and the same action succeeds behind it. KW_TORTURE=all tries every call with every trouble;
// else some of each scenario are tried, which KW_TORTURE_SEED draws.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>
#include <memory>
#include <random>
#include <set>

#include "components/base/FilePath.h"
#include "components/base/RunTimeError.h"
#include "components/base/TemporaryFiles.h"
#include "tests/support/Documents.h"
#include "tests/support/FailingFiles.h"
#include "tests/support/Watched.h"
#include "tests/torture/FileScenarios.h"
#include "tests/torture/Stages.h"

namespace kw::test {
namespace {

std::string TextOfVariable(const char* variable, const char* otherwise) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? otherwise : text;
}

std::ptrdiff_t CountOfOpenedFiles() {
  std::error_code error;
  const std::filesystem::directory_iterator entries("/proc/self/fd", error);
  return error ? 0 : std::distance(begin(entries), end(entries));
}

// What a call to the file system that fails may come to.
bool IsOfFiles(std::int32_t number) {
  static const std::set<ErrorNumber> numbers = {ErrorNumber::FileNotFound,     ErrorNumber::DiskFull,
                                                ErrorNumber::PermissionDenied, ErrorNumber::PathFileAccessError,
                                                ErrorNumber::PathNotFound,     ErrorNumber::InvalidPicture};
  return numbers.contains(static_cast<ErrorNumber>(number));
}

const TemporaryFolder& FolderOf(Stage& stage) {
  if (auto* const library = dynamic_cast<LibraryStage*>(&stage)) return library->files.Folder();
  return dynamic_cast<EditorStage&>(stage).files.Folder();
}

// The pages of each document in the folder, by its name; no entry for what cannot be read.
std::map<std::string, std::string> PagesIn(const TemporaryFolder& folder) {
  std::map<std::string, std::string> told;
  for (const auto& entry : std::filesystem::directory_iterator(folder.Native())) {
    const std::string name = FromFilesystemPath(entry.path().filename());
    if (name.starts_with("tmp")) continue;  // a scratch bitmap
    PictureDocument document;
    if (!document.Load(folder.File(name))) continue;
    try {
      for (int page = 1; page <= document.PageCount(); ++page) {
        document.SelectPage(page);
        told[name] += Told(document.Current()) + document.Warning() + ", ";
      }
    } catch (const RunTimeError& error) {
      told[name] += "error " + std::to_string(error.Number());
    }
  }
  return told;
}

// Names the process that made it, so that the next one removes it.
bool IsMarked(const std::string& name) {
  const std::string own = FromFilesystemPath(TemporaryBeside("x").filename());
  return name.size() == own.size() && name.substr(0, 18) == own.substr(0, 18) && name.ends_with(".tmp");
}

using Call = FailingFiles::Call;

// How a call fails.
struct Failure {
  std::size_t call = 0;
  FileTrouble trouble;
  bool stays = false;
};

std::ostream& operator<<(std::ostream& to, const Failure& failure) {
  return to << "call " << failure.call << (failure.stays ? " and all behind it: " : ": ") << failure.trouble.name;
}

class FailingDisk : public testing::TestWithParam<const Scenario*> {
protected:
  FailingDisk() {
    for (int time = 1; time <= 2; ++time) {  // what is made once in a process is there behind the first time
      const auto stage = scenario.prepare();
      before = stage->Look();
      pagesBefore = PagesIn(FolderOf(*stage));
      {
        FailingFiles files;
        stage->Run();
        calls = files.Calls();
        unflushed = files.namedUnflushed;
      }
      expected = stage->Look();
      pagesExpected = PagesIn(FolderOf(*stage));
    }
    openedFiles = CountOfOpenedFiles();
  }

  std::vector<Failure> Chosen() const {
    std::vector<Failure> all;
    for (std::size_t call = 1; call <= calls; ++call) {
      for (const FileTrouble& trouble : FileTroubles) {
        for (const bool stays : {false, true}) all.push_back({call, trouble, stays});
      }
    }
    if (TextOfVariable("KW_TORTURE", "some") == "all") return all;
    std::mt19937 random(static_cast<unsigned>(std::stoul(TextOfVariable("KW_TORTURE_SEED", "20261122"))));
    std::vector<Failure> some;
    std::ranges::sample(all, std::back_inserter(some), Amount(24, 6), random);
    return some;
  }

  // Errors behind the first are its consequences: a step that needs what the failed one would have made.
  void ExpectToldByAnError(const Outcome& outcome) const {
    if (!outcome.Errors().empty() && !outcome.isRefused) {
      EXPECT_TRUE(IsOfFiles(outcome.Errors().front())) << "error " << outcome.Errors().front();
    }
  }

  void ExpectWholeFiles(Stage& stage, const State& now, bool mayLeave) const {
    const std::map<std::string, std::string> pages = PagesIn(FolderOf(stage));
    const auto in = [](const auto& map, const std::string& key) {
      const auto found = map.find(key);
      return found == map.end() ? std::string("absent") : found->second;
    };
    for (const auto& [what, content] : now) {
      if (!what.starts_with("file ") || content == in(before, what) || content == in(expected, what)) continue;
      const std::string name = what.substr(5);
      if (mayLeave && IsMarked(name)) continue;
      const std::string told = in(pages, name);
      EXPECT_TRUE(told != "absent" && (told == in(pagesBefore, name) || told == in(pagesExpected, name)))
          << name << " holds " << told << ", held " << in(pagesBefore, name);
    }
    for (const auto& [what, content] : before) {
      const bool stays = what.starts_with("file ") && expected.contains(what);
      EXPECT_TRUE(!stays || now.contains(what)) << what << " is gone";
    }
  }

  static State WithoutFiles(State state) {
    std::erase_if(state, [](const auto& one) { return one.first.starts_with("file "); });
    return state;
  }

  void Try(const Failure& failure) {
    SCOPED_TRACE(testing::Message() << failure);
    const auto stage = scenario.prepare();
    Outcome outcome;
    Call failed{};
    {
      FailingFiles files;
      files.FailFrom(failure.call, failure.trouble.code, failure.stays);
      outcome = stage->Run();
      ASSERT_TRUE(files.HasFailed() || scenario.isOfThreads);
      failed = files.failed;
      EXPECT_EQ(files.namedUnflushed, std::vector<std::string>());
    }
    const State now = stage->Look();
    EXPECT_FALSE(outcome.isForeign);
    ExpectToldByAnError(outcome);
    EXPECT_EQ(stage->Broken(), std::vector<std::string>());
    ExpectWholeFiles(*stage, now, failure.stays || failed == Call::Remove);
    const bool isTold = !outcome.Errors().empty() || outcome.isRefused || outcome.isDisabled;
    if (!isTold && !scenario.isSilent) {
      EXPECT_EQ(WithoutFiles(now), WithoutFiles(expected)) << "nothing was told";
      const auto pages = PagesIn(FolderOf(*stage));
      for (const auto& [name, told] : pagesExpected) {
        EXPECT_EQ(pages.contains(name) ? pages.at(name) : "absent", told) << name << ": nothing was told";
      }
    }
    stage->Recover();
    const Outcome again = stage->Run();
    EXPECT_TRUE(again.Errors().empty()) << "the next time fails, too: " << again.Errors().front();
    EXPECT_FALSE(again.isRefused || again.isForeign) << "the next time fails, too";
    EXPECT_EQ(stage->Broken(), std::vector<std::string>()) << "the next time";
  }

  const Scenario& scenario = *GetParam();
  State before;
  State expected;
  std::map<std::string, std::string> pagesBefore;
  std::map<std::string, std::string> pagesExpected;
  std::size_t calls = 0;
  std::vector<std::string> unflushed;
  std::ptrdiff_t openedFiles = 0;
};

TEST_P(FailingDisk, LeavesOldOrNew) {
  const std::vector<Failure> chosen = Chosen();
  for (const Failure& failure : chosen) Try(failure);
  EXPECT_EQ(CountOfOpenedFiles(), openedFiles);
  RecordProperty("calls", std::to_string(calls));
  RecordProperty("tried", std::to_string(chosen.size()));
}

TEST_P(FailingDisk, HasEveryFileOnTheDiskBeforeItsName) { EXPECT_EQ(unflushed, std::vector<std::string>()); }

std::vector<const Scenario*> RowsOfFiles() {
  static const std::vector<Scenario> own = FileScenarios();
  std::vector<const Scenario*> rows;
  for (const auto* const list : {&Scenarios(), &own}) {
    for (const Scenario& one : *list) rows.push_back(&one);
  }
  return rows;
}

std::string NameOfRow(const testing::TestParamInfo<const Scenario*>& info) {
  std::string name = info.param->name;
  std::ranges::replace(name, '.', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Files, FailingDisk, testing::ValuesIn(RowsOfFiles()), NameOfRow);

}  // namespace
}  // namespace kw::test
