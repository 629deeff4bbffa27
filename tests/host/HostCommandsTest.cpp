// What the demonstration host shows how to do: keep the annotated page, keep the control, go on after an error.

#include <windows.h>

#include <gtest/gtest.h>

#include <dlgs.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <functional>

#include "Resource.h"
#include "tests/host/Program.h"
#include "tests/support/TemporaryFolder.h"

namespace kw::host {
namespace {

using kw::test::Exists;
using kw::test::TemporaryFolder;
using kw::test::WriteWhole;
using test::ChooseFromMenu;
using test::LinesOfListIn;
using test::Program;
using test::PromptOf;
using test::Wide;

class HostCommands : public testing::Test {
protected:
  HostCommands() {
    std::filesystem::create_directories(folder.Native() / "work");
    WriteWhole(folder.File("page.bmp"), test::SmallBmp());
  }

  std::wstring Quoted(const std::string& name) const { return L"\"" + Wide(folder.File(name)) + L"\""; }
  std::wstring Work() const { return L" --appdir " + Quoted("work"); }
  static HWND WindowOf(const Program& host) { return host.WindowOf(L"KwHost"); }
  // Waits until the control has opened the page and its notices are answered.
  static void AwaitThePage(const Program& host) {
    ASSERT_TRUE(host.IsStarted());
    ASSERT_TRUE(host.AnswerUntil([&] { return !LinesOf(host).empty(); }));
    ASSERT_TRUE(host.AnswerUntil([&] { return host.WindowOf(L"#32770") == nullptr; }));
  }
  static std::vector<std::wstring> LinesOf(const Program& host) {
    const HWND window = WindowOf(host);
    return window == nullptr ? std::vector<std::wstring>{} : LinesOfListIn(window);
  }
  static bool Lists(const Program& host, const std::wstring& beginning) {
    const auto lines = LinesOf(host);
    return std::any_of(lines.begin(), lines.end(), [&](const std::wstring& l) { return l.starts_with(beginning); });
  }
  // The check box of a property.
  static HWND SwitchOf(const Program& host, const wchar_t* property) {
    const HWND panel = FindWindowExW(WindowOf(host), nullptr, L"KwHostPanel", nullptr);
    return FindWindowExW(panel, nullptr, L"Button", property);
  }
  // A file that a dialog of the emulated system can name: it does not know the folder of devices, in which the test has
  // its own folder.
  std::filesystem::path VisibleFile(const char* extension) const {
    return std::filesystem::temp_directory_path() / folder.Native().filename().replace_extension(extension);
  }
  // Names a file in the dialog that comes up, and presses OK.
  static void NameInDialog(
      const Program& host, const std::filesystem::path& path, const std::function<void()>& beforeOk = [] {}) {
    HWND dialog = nullptr;
    for (int i = 0; i < 1000 && dialog == nullptr; ++i) {
      Sleep(10);
      dialog = host.WindowOf(L"#32770");
    }
    ASSERT_NE(dialog, nullptr);
    Sleep(500);  // until the dialog is filled
    HWND field = GetDlgItem(dialog, edt1);
    if (field == nullptr) field = GetDlgItem(dialog, cmb13);
    ASSERT_NE(field, nullptr);
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
    beforeOk();
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  }
  static void Close(const Program& host) {
    PostMessageW(WindowOf(host), WM_CLOSE, 0, 0);
    EXPECT_EQ(host.ExitCode(20000), 0U);
  }

  TemporaryFolder folder;
};

TEST_F(HostCommands, SavesTheAnnotatedPage) {
  const Program host(L"KwHost.exe", Quoted("page.bmp") + Work());
  AwaitThePage(host);
  ChooseFromMenu(WindowOf(host), L'f', 'S');
  const auto path = VisibleFile(".tif");
  NameInDialog(host, path);
  EXPECT_TRUE(host.AnswerUntil([&] { return Lists(host, L"Saved - "); }));
  std::string head(4, ' ');
  std::ifstream(path, std::ios::binary).read(head.data(), std::ssize(head));
  EXPECT_EQ(head, std::string("II*\0", 4));
  EXPECT_FALSE(std::filesystem::exists(path.wstring() + L".part"));
  std::filesystem::remove(path);
  Close(host);
}

TEST_F(HostCommands, CopiesTheAnnotatedPage) {
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  CloseClipboard();
  const Program host(L"KwHost.exe", Quoted("page.bmp") + Work());
  AwaitThePage(host);
  PostMessageW(WindowOf(host), WM_COMMAND, COMMAND_COPY_PAGE, 0);
  ASSERT_TRUE(host.AnswerUntil([&] { return Lists(host, L"Copied - "); }));
  Close(host);
  EXPECT_TRUE(IsClipboardFormatAvailable(CF_DIB));
  EXPECT_TRUE(IsClipboardFormatAvailable(CF_TIFF));
  ASSERT_TRUE(OpenClipboard(nullptr));
  const HANDLE block = GetClipboardData(CF_DIB);
  EXPECT_NE(block, nullptr) << "it stays when the host has ended";
  BITMAPINFOHEADER head = {};
  if (block != nullptr) std::memcpy(&head, GlobalLock(block), sizeof head);
  if (block != nullptr) GlobalUnlock(block);
  CloseClipboard();
  EXPECT_EQ(head.biWidth, 8);
  EXPECT_EQ(head.biHeight, 8);
}

TEST_F(HostCommands, SaysThatThereIsNoPageToCopy) {
  const Program host(L"KwHost.exe", Work().substr(1));
  ASSERT_TRUE(host.IsStarted());
  ASSERT_TRUE(host.AnswerUntil([&] { return WindowOf(host) != nullptr; }));
  Sleep(1500);  // until the control has been set up
  PostMessageW(WindowOf(host), WM_COMMAND, COMMAND_COPY_PAGE, 0);
  EXPECT_TRUE(host.AnswerUntil([&] { return Lists(host, L"Copying the annotated page failed - "); }));
  Close(host);
}

TEST_F(HostCommands, KeepsTheControlInItsSettings) {
  const std::wstring arguments = Quoted("page.bmp") + L" --settings " + Quoted("kept.dat");
  {
    const Program host(L"KwHost.exe", arguments + Work());
    AwaitThePage(host);
    const HWND lightened = SwitchOf(host, L"IsToLightenBackImage");
    ASSERT_NE(lightened, nullptr);
    EXPECT_EQ(SendMessageW(lightened, BM_GETCHECK, 0, 0), BST_UNCHECKED);
    SendMessageW(lightened, BM_CLICK, 0, 0);
    EXPECT_EQ(SendMessageW(lightened, BM_GETCHECK, 0, 0), BST_CHECKED);
    Close(host);
  }
  ASSERT_TRUE(Exists(folder.File("kept.dat")));
  const Program host(L"KwHost.exe", arguments);
  AwaitThePage(host);
  EXPECT_EQ(SendMessageW(SwitchOf(host, L"IsToLightenBackImage"), BM_GETCHECK, 0, 0), BST_CHECKED);
  EXPECT_EQ(SendMessageW(SwitchOf(host, L"IsOpenButtonVisible"), BM_GETCHECK, 0, 0), BST_CHECKED);
  Close(host);
  EXPECT_TRUE(Exists(folder.File("work\\FunctionsInExecution.txt"))) << "the folder is kept, too";
}

TEST_F(HostCommands, TakesChangesOfTheSystem) {
  const Program host(L"KwHost.exe", Quoted("page.bmp") + Work());
  AwaitThePage(host);
  for (const UINT message : {WM_SYSCOLORCHANGE, WM_SETTINGCHANGE, WM_THEMECHANGED}) {
    DWORD_PTR answer = 1;
    EXPECT_NE(SendMessageTimeoutW(WindowOf(host), message, 0, 0, SMTO_NORMAL, 10000, &answer), 0) << message;
    EXPECT_EQ(answer, 0U) << message;
  }
  EXPECT_EQ(LinesOf(host).size(), 1U) << "nothing has failed";
  Close(host);
}

TEST_F(HostCommands, SaysThatItsSettingsAreDamaged) {
  WriteWhole(folder.File("kept.dat"), "no control at all, but more than sixteen bytes");
  const Program host(L"KwHost.exe", L"--settings " + Quoted("kept.dat"));
  ASSERT_TRUE(host.IsStarted());
  std::wstring prompt;
  for (int i = 0; i < 1000 && prompt.empty(); ++i) {
    Sleep(10);
    if (const HWND box = host.WindowOf(L"#32770")) prompt = PromptOf(box);
  }
  EXPECT_TRUE(prompt.starts_with(L"Reading the file of settings failed."));
  host.AnswerUntil([&] { return host.ExitCode(0) != STILL_ACTIVE; });
  EXPECT_EQ(host.ExitCode(10000), 1U);
}

TEST_F(HostCommands, SaysWhatTheControlSaysAboutAFailure) {
  const Program host(L"KwHost.exe", Quoted("page.bmp") + Work());
  AwaitThePage(host);
  const auto page = VisibleFile(".bmp");
  std::filesystem::copy_file(folder.Native() / "page.bmp", page);
  Sleep(2500);  // until the control's timers rest
  ChooseFromMenu(WindowOf(host), L'f', 'O');
  NameInDialog(host, page, [&] {
    // From now on the trace cannot be written, and that is the error that a procedure hands on to the host.
    std::filesystem::remove(folder.Native() / "work" / "FunctionsInExecution.txt");
    std::filesystem::create_directories(folder.Native() / "work" / "FunctionsInExecution.txt");
  });
  EXPECT_TRUE(host.AnswerUntil([&] { return Lists(host, L"Opening the file failed - "); }));
  std::filesystem::remove(page);
  EXPECT_TRUE(Lists(host, L"Opening the file failed - Permission denied")) << testing::PrintToString(LinesOf(host));
}

TEST_F(HostCommands, EnablesTheControlAfterAnError) {
  // A document of several pages without a dot in its name cannot be split.
  std::string tiff("II*\0\x08\0\0\0", 8);
  for (int page = 0; page < 2; ++page) {
    const auto put = [&tiff](std::uint32_t number, int bytes) {
      for (int i = 0; i < bytes; ++i) tiff.push_back(static_cast<char>((number >> (8 * i)) & 0xFFU));
    };
    const auto start = static_cast<std::uint32_t>(tiff.size());
    const std::uint32_t pixels = start + 2 + 8 * 12 + 4;
    const std::uint32_t entries[8][2] = {{256, 8}, {257, 8},      {258, 1}, {259, 1},
                                         {262, 1}, {273, pixels}, {278, 8}, {279, 8}};
    put(8, 2);
    for (const auto& [tag, value] : entries) {
      put(tag, 2);
      put(4, 2);
      put(1, 4);
      put(value, 4);
    }
    put(page == 0 ? pixels + 8 : 0, 4);
    tiff.append(8, '\x55');
  }
  WriteWhole(folder.File("nodot"), tiff);
  const Program host(L"KwHost.exe", Quoted("nodot") + Work());
  ASSERT_TRUE(host.IsStarted());
  ASSERT_TRUE(host.AnswerUntil([&] { return Lists(host, L"Enabled - "); }));
  const auto lines = LinesOf(host);
  const auto error =
      std::find_if(lines.begin(), lines.end(), [](const std::wstring& l) { return l.starts_with(L"ErrorOccured: "); });
  ASSERT_NE(error, lines.end());
  EXPECT_NE(error->find(L"ErrorMsg = "), std::wstring::npos);
  EXPECT_EQ(error->find_first_of(L"\r\n"), std::wstring::npos) << "the handler has changed the argument";
  EXPECT_TRUE(
      host.AnswerUntil([&] { return SendMessageW(SwitchOf(host, L"Enabled"), BM_GETCHECK, 0, 0) == BST_CHECKED; }));
  host.AnswerUntil([&] { return host.WindowOf(L"#32770") == nullptr; });
  Close(host);
}

}  // namespace
}  // namespace kw::host
