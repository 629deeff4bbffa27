#include <windows.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "components/base/Unicode.h"
#include "tests/support/TemporaryFolder.h"

namespace kw::host {
namespace {

using test::TemporaryFolder;

std::wstring Wide(const std::string& text) {
  const std::u16string utf16 = Utf16FromUtf8(text);
  return {utf16.begin(), utf16.end()};
}

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
  const CommandLine line = ParseCommandLine({L"C:\\a b\\scan.tif", L"--appdir", appDir, L"--background",
                                             L"C:\\back.bmp", L"--signature", L"C:\\sign.bmp", L"--editable", L"no"});
  EXPECT_EQ(line.file, L"C:\\a b\\scan.tif");
  EXPECT_EQ(line.appDir, appDir);
  EXPECT_EQ(line.background, L"C:\\back.bmp");
  EXPECT_EQ(line.signature, L"C:\\sign.bmp");
  EXPECT_FALSE(line.isEditable);
}

TEST(CommandLine, NeedsNothing) {
  const CommandLine line = ParseCommandLine({});
  EXPECT_TRUE(line.file.empty());
  EXPECT_TRUE(line.isEditable);
}

TEST(CommandLine, SaysWhatMakesNoSense) {
  EXPECT_FALSE(ErrorOf({L"--unknown"}).empty());
  EXPECT_FALSE(ErrorOf({L"--appdir"}).empty());
  EXPECT_FALSE(ErrorOf({L"--appdir", L"C:\\no such folder"}).empty());
  EXPECT_FALSE(ErrorOf({L"--editable", L"perhaps"}).empty());
  EXPECT_FALSE(ErrorOf({L"one.tif", L"two.tif"}).empty());
}

struct Search {
  DWORD process;
  const wchar_t* className;
  HWND found;
};

std::wstring ClassOf(HWND window) {
  wchar_t name[64] = {};
  GetClassNameW(window, name, 64);
  return name;
}

BOOL CALLBACK IsWanted(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner != search.process || IsWindowVisible(window) == FALSE || ClassOf(window) != search.className) return TRUE;
  search.found = window;
  return FALSE;
}

BOOL CALLBACK IsList(HWND child, LPARAM parameter) {
  if (ClassOf(child) != L"ListBox") return TRUE;
  *reinterpret_cast<HWND*>(parameter) = child;
  return FALSE;
}

// The program as a user starts it, beside this test's folder.
class Program {
public:
  explicit Program(const std::wstring& arguments) {
    std::vector<wchar_t> own(32768);
    GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size()));
    std::wstring folder = own.data();
    for (int level = 0; level < 2; ++level) folder.erase(folder.find_last_of(L'\\'));
    std::wstring command = L"\"" + folder + L"\\KwHost.exe\" " + arguments;
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    isStarted = CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                               &process) != FALSE;
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    if (!isStarted) return;
    TerminateProcess(process.hProcess, 99);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
  }

  bool IsStarted() const { return isStarted; }

  // The program's visible top-level window of that class; null if there is none.
  HWND WindowOf(const wchar_t* className) const {
    Search search = {process.dwProcessId, className, nullptr};
    EnumWindows(&IsWanted, reinterpret_cast<LPARAM>(&search));
    return search.found;
  }

  // Presses OK in every box until `isDone`; false when that has not come within a minute.
  bool AnswerUntil(const std::function<bool()>& isDone) const {
    for (int i = 0; i < 6000; ++i) {
      if (isDone()) return true;
      if (const HWND box = WindowOf(L"#32770")) PostMessageW(box, WM_COMMAND, IDOK, 0);
      Sleep(10);
    }
    return false;
  }

  // The exit code; STILL_ACTIVE if it does not end within the time.
  DWORD ExitCode(DWORD milliseconds) const {
    WaitForSingleObject(process.hProcess, milliseconds);
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(process.hProcess, &code);
    return code;
  }

private:
  PROCESS_INFORMATION process = {};
  bool isStarted = false;
};

// The lines of the only list box below a window.
std::vector<std::wstring> LinesOfListIn(HWND window) {
  HWND list = nullptr;
  EnumChildWindows(window, &IsList, reinterpret_cast<LPARAM>(&list));
  std::vector<std::wstring> lines;
  const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    std::vector<wchar_t> text(static_cast<std::size_t>(SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(i), 0)) +
                              1);
    SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text.data()));
    lines.emplace_back(text.data());
  }
  return lines;
}

// A black page of 8 x 8 pixels.
std::string SmallBmp() {
  std::string bytes("BM\x7e\0\0\0\0\0\0\0\x3e\0\0\0\x28\0\0\0\x08\0\0\0\x08\0\0\0\x01\0\x01\0", 30);
  bytes.append(32, '\0');                     // no compression, the rest by default, black
  bytes += std::string("\xff\xff\xff\0", 4);  // and white
  bytes.resize(0x3e, '\0');
  bytes.append(std::size_t{8} * 4, '\0');
  return bytes;
}

TEST(HostProgram, OpensTheDocumentOfTheCommandLineListsTheEventAndEndsCleanly) {
  const TemporaryFolder folder;
  test::WriteWhole(folder.File("page.bmp"), SmallBmp());
  std::filesystem::create_directories(folder.Native() / "work");
  const Program host(L"\"" + Wide(folder.File("page.bmp")) + L"\" --appdir \"" + Wide(folder.File("work")) + L"\"");
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
  EXPECT_TRUE(test::Exists(folder.File("work\\FunctionsInExecution.txt")));
}

// Besides the text a box may have an icon, which has none.
std::wstring PromptOf(HWND box) {
  std::wstring prompt;
  for (HWND label = nullptr; (label = FindWindowExW(box, label, L"Static", nullptr)) != nullptr;) {
    std::vector<wchar_t> text(200);
    SendMessageW(label, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    prompt += text.data();
  }
  return prompt;
}

// As the keyboard does it: opens a menu by its letter, then chooses an entry by its own.
void ChooseFromMenu(HWND window, wchar_t menu, WPARAM entry) {
  PostMessageW(window, WM_SYSCOMMAND, SC_KEYMENU, menu);
  Sleep(500);
  PostMessageW(window, WM_KEYDOWN, entry, 1);
}

TEST(HostProgram, RunsTheControlsCommandsFromTheMenuImage) {
  const TemporaryFolder folder;
  test::WriteWhole(folder.File("page.bmp"), SmallBmp());
  std::filesystem::create_directories(folder.Native() / "work");
  const Program host(L"\"" + Wide(folder.File("page.bmp")) + L"\" --appdir \"" + Wide(folder.File("work")) + L"\"");
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
  const Program host(L"--appdir \"" + Wide(folder.File("work")) + L"\"");
  ASSERT_TRUE(host.IsStarted());
  const auto window = [&] { return host.WindowOf(L"KwHost"); };
  ASSERT_TRUE(host.AnswerUntil([&] { return window() != nullptr; }));
  Sleep(1500);  // until the control has been set up
  ChooseFromMenu(window(), L'i', 'E');
  EXPECT_TRUE(host.AnswerUntil([&] { return !LinesOfListIn(window()).empty(); }));
  EXPECT_EQ(LinesOfListIn(window()), std::vector<std::wstring>{L"Refused - the control cannot run this command now"});
}

TEST(HostProgram, ComplainsAboutAnOptionThatItDoesNotKnow) {
  const Program host(L"--unknown");
  ASSERT_TRUE(host.IsStarted());
  host.AnswerUntil([&] { return host.ExitCode(0) != STILL_ACTIVE; });
  EXPECT_EQ(host.ExitCode(10000), 2U);
}

}  // namespace
}  // namespace kw::host
