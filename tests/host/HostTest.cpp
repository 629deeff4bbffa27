#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CommandLine.h"
#include "tests/host/Program.h"
#include "tests/support/TemporaryFolder.h"

namespace kw::host {
namespace {

using kw::test::TemporaryFolder;
using test::ChooseFromMenu;
using test::LinesOfListIn;
using test::Program;
using test::PromptOf;
using test::SmallBmp;
using test::Wide;

std::wstring ErrorOf(const std::vector<std::wstring>& arguments) {
  try {
    ParseCommandLine(arguments);
  } catch (const UsageError& error) {
    return error.message;
  }
  return {};
}

TEST(CommandLine, TakesAFileAndEveryOption) {
  const TemporaryFolder folder;
  const std::wstring appDir = Wide(folder.Path());
  const CommandLine line =
      ParseCommandLine({L"C:\\a b\\scan.tif", L"--appdir", appDir, L"--background", L"C:\\back.bmp", L"--signature",
                        L"C:\\sign.bmp", L"--editable", L"no", L"--settings", L"C:\\kept.dat"});
  EXPECT_EQ(line.file, L"C:\\a b\\scan.tif");
  EXPECT_EQ(line.appDir, appDir);
  EXPECT_EQ(line.background, L"C:\\back.bmp");
  EXPECT_EQ(line.signature, L"C:\\sign.bmp");
  EXPECT_EQ(line.isEditable, false);
  EXPECT_EQ(line.settings, L"C:\\kept.dat");
}

TEST(CommandLine, NeedsNothing) {
  const CommandLine line = ParseCommandLine({});
  EXPECT_TRUE(line.file.empty());
  EXPECT_FALSE(line.isEditable.has_value());
  EXPECT_TRUE(line.settings.empty());
}

TEST(CommandLine, SaysWhatMakesNoSense) {
  EXPECT_FALSE(ErrorOf({L"--unknown"}).empty());
  EXPECT_FALSE(ErrorOf({L"--appdir"}).empty());
  EXPECT_FALSE(ErrorOf({L"--appdir", L"C:\\no such folder"}).empty());
  EXPECT_FALSE(ErrorOf({L"--editable", L"perhaps"}).empty());
  EXPECT_FALSE(ErrorOf({L"one.tif", L"two.tif"}).empty());
}

TEST(HostProgram, OpensTheDocumentOfTheCommandLineListsTheEventAndEndsCleanly) {
  const TemporaryFolder folder;
  kw::test::WriteWhole(folder.File("page.bmp"), SmallBmp());
  std::filesystem::create_directories(folder.Native() / "work");
  const Program host(L"KwHost.exe",
                     L"\"" + Wide(folder.File("page.bmp")) + L"\" --appdir \"" + Wide(folder.File("work")) + L"\"");
  ASSERT_TRUE(host.IsStarted());
  std::vector<std::wstring> lines;
  const bool isListed = host.AnswerUntil([&] {
    const HWND window = host.WindowOf(L"KwHost");
    if (window != nullptr) lines = LinesOfListIn(window);
    return !lines.empty();
  });
  ASSERT_TRUE(isListed);
  EXPECT_EQ(lines, std::vector<std::wstring>{L"PageChanged: PageNo = 0"});
  PostMessageW(host.WindowOf(L"KwHost"), WM_CLOSE, 0, 0);
  EXPECT_EQ(host.ExitCode(20000), 0U);
  EXPECT_TRUE(kw::test::Exists(folder.File("work\\FunctionsInExecution.txt")));
}

TEST(HostProgram, RunsTheControlsCommandsFromTheMenuImage) {
  const TemporaryFolder folder;
  kw::test::WriteWhole(folder.File("page.bmp"), SmallBmp());
  std::filesystem::create_directories(folder.Native() / "work");
  const Program host(L"KwHost.exe",
                     L"\"" + Wide(folder.File("page.bmp")) + L"\" --appdir \"" + Wide(folder.File("work")) + L"\"");
  ASSERT_TRUE(host.IsStarted());
  const auto window = [&] { return host.WindowOf(L"KwHost"); };
  const auto box = [&] { return host.WindowOf(L"#32770"); };
  ASSERT_TRUE(host.AnswerUntil([&] { return window() != nullptr && !LinesOfListIn(window()).empty(); }));
  ASSERT_TRUE(host.AnswerUntil([&] { return box() == nullptr; }));
  ChooseFromMenu(window(), L'i', 'C');
  for (int i = 0; i < 1000 && box() == nullptr; ++i) Sleep(10);
  ASSERT_NE(box(), nullptr);
  EXPECT_EQ(PromptOf(box()), L"Capture");
  EXPECT_TRUE(host.AnswerUntil([&] { return box() == nullptr; }));
  EXPECT_EQ(LinesOfListIn(window()).size(), 1U) << "nothing was refused";
}

TEST(HostProgram, SaysThatTheControlRefusesACommand) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder.Native() / "work");
  const Program host(L"KwHost.exe", L"--appdir \"" + Wide(folder.File("work")) + L"\"");
  ASSERT_TRUE(host.IsStarted());
  const auto window = [&] { return host.WindowOf(L"KwHost"); };
  ASSERT_TRUE(host.AnswerUntil([&] { return window() != nullptr; }));
  Sleep(1500);  // until the control has been set up
  ChooseFromMenu(window(), L'i', 'E');
  EXPECT_TRUE(host.AnswerUntil([&] { return !LinesOfListIn(window()).empty(); }));
  EXPECT_EQ(LinesOfListIn(window()), std::vector<std::wstring>{L"Refused - the control cannot run this command now"});
}

TEST(HostProgram, ComplainsAboutAnOptionThatItDoesNotKnow) {
  const Program host(L"KwHost.exe", L"--unknown");
  ASSERT_TRUE(host.IsStarted());
  host.AnswerUntil([&] { return host.ExitCode(0) != STILL_ACTIVE; });
  EXPECT_EQ(host.ExitCode(10000), 2U);
}

}  // namespace
}  // namespace kw::host
