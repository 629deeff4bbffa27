// Two processes that write to one file at the same time.

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/win32/Process.h"
#include "windows/WindowsDesktop.h"
#include "windows/base/Text.h"

namespace kw::test {
namespace {

class TwoProcesses : public testing::Test {
protected:
  // Names that the system's code page has, and has not.
  const std::vector<std::string> names = {"plain ", "\u627F\u8A8D "};

  void Write(const std::string& what, const std::string& path, int count) const {
    const SharedEvent start(L"Start");
    const HANDLE areReady = CreateSemaphoreW(nullptr, 0, 2, (start.Name() + L"Ready").c_str());
    const auto argumentsOf = [&](const std::string& name) {
      return start.Name() + L" " + windows::ToWide(what + " \"" + path + "\" \"" + name + "\" ") +
             std::to_wstring(count);
    };
    const Process one(L"FileWriter.exe", argumentsOf(names[0]));
    const Process other(L"FileWriter.exe", argumentsOf(names[1]));
    for (int ready = 0; ready < 2; ++ready) {
      constexpr DWORD deadline = 30000;
      EXPECT_EQ(WaitForSingleObject(areReady, deadline), WAIT_OBJECT_0);
    }
    CloseHandle(areReady);
    start.Set();
    EXPECT_EQ(one.ExitCode(), 0U);
    EXPECT_EQ(other.ExitCode(), 0U);
  }
  std::vector<std::string> Sorted(int count) const {
    std::vector<std::string> all;
    for (const std::string& name : names) {
      for (int i = 0; i < count; ++i) all.push_back(name + std::to_string(i));
    }
    std::ranges::sort(all);
    return all;
  }

  TemporaryFolder folder;
};

TEST_F(TwoProcesses, MixNoLinesOfAFile) {
  constexpr int count = 2000;
  Write("lines", folder.File("trace.txt"), count);
  std::vector<std::string> lines;
  std::istringstream text(ReadWhole(folder.File("trace.txt")));
  for (std::string line; std::getline(text, line);) {
    EXPECT_TRUE(line.ends_with('\r')) << line;
    lines.push_back(line.substr(0, line.find('\r')));
  }
  int turns = 0;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (lines[i].starts_with(names[0]) != lines[i - 1].starts_with(names[0])) ++turns;
  }
  EXPECT_GT(turns, 1) << "one wrote after the other: nothing was tried";
  std::ranges::sort(lines);
  EXPECT_EQ(lines, Sorted(count));
}

TEST_F(TwoProcesses, LoseNoStampOfOneList) {
  constexpr int count = 40;
  Write("stamps", folder.Path() + "\\", count);
  windows::WindowsDesktop desktop;
  std::vector<std::string> stamps;
  for (int key = 1; key <= 2 * count + 1; ++key) {
    const std::string stamp = desktop.ReadProfileString("Stamps", std::to_string(key), "", folder.File("stamps.lst"));
    if (!stamp.empty()) stamps.push_back(stamp);
  }
  std::ranges::sort(stamps);
  EXPECT_EQ(stamps, Sorted(count));
  EXPECT_FALSE(Exists(folder.File("stamps.lst.lock")));
}

}  // namespace
}  // namespace kw::test
