// What processes that were ended left beside the files that they wrote.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "components/base/SystemFile.h"
#include "components/base/TemporaryFiles.h"
#include "picture/PictureDocument.h"
#include "tests/picture/Scratch.h"

namespace kw {
namespace {

// No system gives a process this number.
constexpr const char* GoneProcess = "7ffffff0";
constexpr std::chrono::hours MoreThanADay{25};

class Leftovers : public ScratchTest {
protected:
  // The name that this process would choose now.
  std::string OwnName() const { return TemporaryBeside(folder / "page.tif").filename().string(); }
  std::string OfMachineAndProcess(const std::string& machine, const std::string& process) const {
    std::string name = OwnName();
    if (!machine.empty()) name.replace(2, 8, machine);
    if (!process.empty()) name.replace(10, 8, process);
    return name;
  }
  void PutOld(const std::string& name) {
    Put(name, {1});
    std::filesystem::last_write_time(folder / name, std::filesystem::file_time_type::clock::now() - MoreThanADay);
  }
  // Visits the folder for the first time in this process.
  void Save() const {
    PictureDocument engine;
    engine.Replace(Noise(5, 4, 24));
    engine.Save(At("page.tif"));
  }
};

TEST_F(Leftovers, OfAProcessOfThisMachineThatIsGoneGoAtOnce) {
  const std::string left = OfMachineAndProcess("", GoneProcess);
  Put(left, {1});
  Save();
  EXPECT_EQ(std::vector<std::string>{"page.tif"}, Names());
}

TEST_F(Leftovers, OfOthersGoAfterADay) {
  const std::string other = OfMachineAndProcess("00000000", GoneProcess);
  const std::string own = OwnName();
  PutOld(OfMachineAndProcess("00000001", GoneProcess));
  PutOld(OwnName());
  Put(other, {1});
  Put(own, {1});
  Save();
  std::vector<std::string> expected{other, own, "page.tif"};
  std::ranges::sort(expected);
  EXPECT_EQ(expected, Names());
}

TEST_F(Leftovers, NothingElseIsRemovedHoweverOldItIs) {
  const std::string left = OfMachineAndProcess("", GoneProcess);
  std::string upper = left;
  std::ranges::transform(upper, upper.begin(), [](char one) { return static_cast<char>(std::toupper(one)); });
  std::vector<std::string> names{left.substr(0, left.size() - 1),
                                 left + "p",
                                 "k" + left.substr(2),
                                 "a" + left,
                                 left + ".bak",
                                 "notes.tmp",
                                 "kw0123456789abcdef.tmp",
                                 "kw.tmp",
                                 left.substr(0, 10) + "g" + left.substr(11)};
#ifndef _WIN32
  names.push_back(upper);
#endif
  for (const std::string& name : names) PutOld(name);
  std::filesystem::create_directory(folder / left);
  Save();
  names.push_back(left);
  names.emplace_back("page.tif");
  std::ranges::sort(names);
  EXPECT_EQ(names, Names());
}

TEST_F(Leftovers, OneThatIsStillWrittenStays) {
  const std::string left = OfMachineAndProcess("", GoneProcess);
  PutOld(left);
  OpenedFile writer;
  ASSERT_EQ(0, FileSystem::Current().Open(folder / left, FileUse::Change, writer));
  Save();
  EXPECT_TRUE(std::filesystem::exists(folder / left));
}

TEST_F(Leftovers, EachFolderIsSearchedOnceByAProcess) {
  Save();
  const std::string left = OfMachineAndProcess("", GoneProcess);
  Put(left, {1});
  Save();
  EXPECT_TRUE(std::filesystem::exists(folder / left)) << "a split does not search its own page files again and again";
}

}  // namespace
}  // namespace kw
