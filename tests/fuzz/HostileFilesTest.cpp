// Files that claim or repeat more than any sound one: each is opened in time and in little memory, in a process of its
// own. KW_HOSTILE=all takes the slow ones as well, and a name takes that one.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <iterator>

#include <gtest/gtest.h>

#include "fuzz/FuzzedEditor.h"
#include "tests/data/TestData.h"
#include "tests/data/hostile/HostileFiles.h"
#include "tests/support/Watched.h"

namespace kw {
namespace {

using test::HostileFile;

// A sanitizer needs many times the time and several times the memory.
constexpr double MostSeconds = test::Amount(5.0, 60.0);
constexpr auto MostKilobytes = test::Amount(std::int64_t{1536} * 1024, std::int64_t{1} << 40U);
constexpr rlim_t PatienceSeconds = 120;

bool IsAsked(const HostileFile& file) {
  const char* const asked = std::getenv("KW_HOSTILE");
  if (asked == nullptr) return !file.isSlow;
  return std::string(asked) == "all" || asked == file.name;
}

// Opens the file in the control, turns to its last page, and ends the process: with 0 if it was shown, or if the box
// told that it cannot be.
[[noreturn]] void OpenAndEnd(const std::vector<std::uint8_t>& bytes) {
  int status = 2;
  {
    FuzzedEditor editor{PictureDocument::Options()};
    editor.Control().OpenFile(editor.Put("D.dat", bytes));
    const bool isRefused =
        std::ranges::any_of(editor.desktop.boxes, [](const auto& box) { return box.title == "File Error"; });
    if (isRefused || editor.Control().LayerRoom().HasPage()) status = 0;
    if (!isRefused) editor.Form().PageIndex.UserSetValue(editor.Form().PageIndex.Max());
  }
  std::_Exit(status);
}

struct Needed {
  int status = 0;
  double seconds = 0;
  long kilobytes = 0;
};

double SecondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

// The time is that of the processor: it does not grow with what else the machine does.
Needed OpenInAProcess(const std::vector<std::uint8_t>& bytes) {
  const pid_t child = fork();
  if (child == 0) {
    const rlimit patience{PatienceSeconds, PatienceSeconds};
    setrlimit(RLIMIT_CPU, &patience);
    OpenAndEnd(bytes);
  }
  Needed needed;
  rusage usage{};
  if (child < 0 || wait4(child, &needed.status, 0, &usage) != child) needed.status = -1;
  needed.seconds = SecondsOf(usage.ru_utime) + SecondsOf(usage.ru_stime);
  needed.kilobytes = usage.ru_maxrss;
  return needed;
}

TEST(HostileFiles, AreOpenedInTimeAndInLittleMemory) {
  std::vector<HostileFile> files = test::HostileFiles();
  std::ranges::move(test::FuzzedFiles(TestData("../../fuzz/corpus")), std::back_inserter(files));
  int opened = 0;
  for (const HostileFile& file : files) {
    if (!IsAsked(file)) continue;
    const Needed needed = OpenInAProcess(file.make());
    std::cout << file.name << ": " << needed.seconds << " s, " << needed.kilobytes / 1024 << " MiB" << std::endl;
    EXPECT_EQ(needed.status, 0) << file.name << " ended the process or was neither shown nor refused";
    EXPECT_LE(needed.seconds, MostSeconds) << file.name;
    EXPECT_LE(needed.kilobytes, MostKilobytes) << file.name;
    ++opened;
  }
  EXPECT_GT(opened, 0) << "KW_HOSTILE names no file";
}

TEST(HostileFiles, ThatStandInTheTreeAreThoseThatAreMade) {
  const std::filesystem::path folder = TestData("hostile");
  int small = 0;
  for (const HostileFile& file : test::HostileFiles()) {
    const std::string path = FromFilesystemPath(folder / file.name);
    if (!test::Exists(path)) continue;
    ++small;
    EXPECT_TRUE(std::ranges::equal(BytesOf(test::ReadWhole(path)), file.make())) << file.name;
  }
  EXPECT_GT(small, 40);
}

// Of a sound file, all that is there before a place: the fields of the heads come first.
TEST(HostileFiles, CutAtEachFieldOfTheHeadAreOpened) {
  for (const PictureFormat* format : Formats()) {
    Bitmap picture(40, 30, 8);
    MemoryFile file;
    format->write(picture, file, {});
    const std::vector<std::uint8_t> whole(file.Bytes().begin(), file.Bytes().end());
    for (std::size_t length = 0; length < std::min<std::size_t>(whole.size(), 160); length += 2) {
      FuzzedEditor editor;
      editor.Control().OpenFile(editor.Put("D.dat", {whole.data(), length}));
      editor.RequireSound({ErrorNumber::InvalidPicture});
    }
  }
}

}  // namespace
}  // namespace kw
