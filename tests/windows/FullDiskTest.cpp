// A disk that takes no more bytes, for programs of their own: the system below lets them write files of a certain size
// only.

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "components/base/FilePath.h"
#include "picture/PictureDocument.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/windows/UnixHost.h"

namespace kw::test {
namespace {

class FullDisk : public testing::Test {
protected:
  // Runs a program of the build with this room for each file; what it says, and behind it its exit code.
  std::string Run(const std::string& program, const std::string& arguments) const {
    constexpr int blocks = 60;  // of 512 bytes
    const std::string output = folder.File("output.txt");
    const std::string command = "trap '' XFSZ; ulimit -f " + std::to_string(blocks) + "; cd " +
                                UnixHost::PathOf(folder.Path()) + "; wine " + UnixHost::PathOf(Beside(program)) + " " +
                                arguments + " >output.txt 2>&1; echo code $? >>output.txt";
    EXPECT_TRUE(UnixHost::Run(command, folder.File("done"))) << command;
    std::filesystem::remove(folder.Native() / "done");
    std::string text = ReadWhole(output);
    std::filesystem::remove(folder.Native() / "output.txt");
    return text;
  }
  // A program of the build folder, in which the tests have a folder of their own.
  static std::string Beside(const std::string& program) {
    std::wstring own(32768, L'\0');
    own.resize(GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size())));
    return FromFilesystemPath(std::filesystem::path(own).parent_path().parent_path() / program);
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Native())) {
      names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
  }
  // Page 3 and page 1 fit.
  void WriteDocument() const {
    std::mt19937 random(1);
    PictureDocument engine;
    for (const std::int32_t side : {10, 200, 20}) {
      Bitmap page(side, side, 24);
      for (std::int32_t y = 0; y < side; ++y) {
        for (std::uint8_t& byte : page.MutableRow(y)) byte = static_cast<std::uint8_t>(random());
      }
      engine.Replace(page);
      engine.Append(folder.File("D.tif"));
    }
  }

  TemporaryFolder folder;
};

TEST_F(FullDisk, LeavesNoPartOfAPageFileAndSaysThatItIsFull) {
  WriteDocument();
  const std::string said = Run("kwpic.exe", "split D.tif");
  EXPECT_EQ(said, "kwpic: D.tif, page 2 to D_Page_2.tif: Disk full\r\ncode 1\n");
  EXPECT_EQ(Names(), (std::vector<std::string>{"D.tif", "D_Page_1.tif"}));
}

TEST_F(FullDisk, LeavesTheFileThatWasToBeReplacedAsItIs) {
  WriteDocument();
  WriteWhole(folder.File("D_Page_2.tif"), "old");
  Run("kwpic.exe", "split D.tif");
  EXPECT_EQ(ReadWhole(folder.File("D_Page_2.tif")), "old");
}

TEST_F(FullDisk, EndsTheSplitOfAHostsDocument) {
  WriteDocument();
  const std::string said = Run("tests/Client.exe", "'" + Beside("KwEditor.ocx") + "' '" + folder.Path() + "' open '" +
                                                       folder.File("D.tif") + "'");
  EXPECT_NE(said.find("Critical Error: Error Number : 61"), std::string::npos) << said;
  EXPECT_TRUE(said.ends_with("code 7\n")) << said;
  EXPECT_TRUE(Exists(folder.File("D_Page_3.tif")));
  EXPECT_FALSE(Exists(folder.File("D_Page_2.tif")));
  EXPECT_FALSE(Exists(folder.File("D_Page_1.tif"))) << "no other page is tried";
  for (const std::string& name : Names()) EXPECT_FALSE(name.ends_with(".tmp")) << name;
}

}  // namespace
}  // namespace kw::test
