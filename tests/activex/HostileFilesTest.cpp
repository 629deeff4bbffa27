// Files that claim or repeat more than any sound one, opened by a host: each in time and in little memory.

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/data/TestData.h"
#include "tests/data/hostile/HostileFiles.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

constexpr double LongestOpening = 5;
constexpr std::size_t MostMemory = std::size_t{1536} << 20U;

bool IsToBeOpened(const HostileFile& file) {
  const char* const asked = std::getenv("KW_HOSTILE");
  if (asked == nullptr) return !file.isSlow;
  return std::string(asked) == "all" || asked == file.name;
}

// Of the processor, by all threads: it does not grow with what else the machine does.
double SecondsOfProcess() {
  FILETIME created;
  FILETIME ended;
  FILETIME kernel;
  FILETIME user;
  GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
  const auto ticks = [](const FILETIME& time) {
    return static_cast<double>(time.dwHighDateTime) * 4294967296.0 + static_cast<double>(time.dwLowDateTime);
  };
  return (ticks(kernel) + ticks(user)) / 1e7;
}

std::size_t PeakMemory() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.PeakWorkingSetSize;
}

class HostileFilesTest : public ControlTest {
protected:
  std::wstring Write(const std::vector<std::uint8_t>& bytes) const {
    std::wstring path = scratch.File(L"D.dat");
    std::ofstream(std::filesystem::path(path), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes));
    return path;
  }
};

TEST_F(HostileFilesTest, AreOpenedInTimeAndInLittleMemory) {
  StrictContainer container;
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_SHOW), S_OK);
  ASSERT_GT(PeakMemory(), std::size_t{1} << 20U) << "the system does not tell";
  std::vector<HostileFile> files = HostileFiles();
  std::ranges::move(FuzzedFiles(TestData("../../fuzz/corpus")), std::back_inserter(files));
  int opened = 0;
  for (const HostileFile& file : files) {
    if (!IsToBeOpened(file)) continue;
    const std::wstring path = Write(file.make());
    const double began = SecondsOfProcess();
    {
      const BoxAnswerer user({Once(ListOfPendingWork), Perhaps("File Error"), Perhaps("Critical Error")});
      EXPECT_EQ(control->OpenFile(Text(path)), S_OK) << file.name;
      for (const std::string& box : user.Boxes()) {
        EXPECT_TRUE(box == "File Error: Invalid file format.." || box.find("Yet to implement") != std::string::npos ||
                    box.find("Critical Error") != std::string::npos)
            << file.name << ": " << box;
      }
    }
    control->put_Enabled(VARIANT_TRUE);
    const double seconds = SecondsOfProcess() - began;
    std::cout << file.name << ": " << seconds << " s, at most " << (PeakMemory() >> 20U) << " MiB so far" << std::endl;
    EXPECT_LE(seconds, LongestOpening) << file.name;
    EXPECT_LE(PeakMemory(), MostMemory) << file.name << ", or one before it";
    ++opened;
  }
  EXPECT_GT(opened, 0) << "KW_HOSTILE names no file";
  // The next sound file is shown.
  const BoxAnswerer user({Once(ListOfPendingWork)});
  EXPECT_EQ(control->OpenFile(Text(scratch.WriteTiff(L"good.tif", 1))), S_OK);
  container.LetGo();
  container.Forget();
}

}  // namespace
}  // namespace kw::test
