// The least host, as a user starts it.

#include <windows.h>

#include <gtest/gtest.h>

#include "tests/host/Program.h"
#include "tests/support/TemporaryFolder.h"

namespace kw::host {
namespace {

using kw::test::Exists;
using kw::test::ReadWhole;
using kw::test::WriteWhole;
using test::Program;
using test::Wide;

class MinimalHost : public testing::Test {
protected:
  MinimalHost() { WriteWhole(folder.File("page.bmp"), test::SmallBmp()); }

  std::wstring Arguments() const {
    return L"\"" + Wide(folder.File("page.bmp")) + L"\" \"" + Wide(folder.File("kept.dat")) + L"\"";
  }
  static std::wstring TitleOf(const Program& host) {
    wchar_t title[100] = {};
    GetWindowTextW(host.WindowOf(L"KwMinimal"), title, 100);
    return title;
  }
  // Runs it until it shows the page, then closes it.
  void ShowThePage() const {
    const Program host(L"KwMinimal.exe", Arguments(), Wide(folder.Path()));
    ASSERT_TRUE(host.IsStarted());
    EXPECT_TRUE(host.AnswerUntil([&] { return TitleOf(host) == L"Page 0"; }));
    EXPECT_TRUE(host.AnswerUntil([&] { return host.WindowOf(L"#32770") == nullptr; }));
    Sleep(300);
    PostMessageW(host.WindowOf(L"KwMinimal"), WM_CLOSE, 0, 0);
    EXPECT_EQ(host.ExitCode(20000), 0U);
  }

  kw::test::TemporaryFolder folder;
};

TEST_F(MinimalHost, HearsTheEventAndKeepsTheControl) {
  ShowThePage();
  ASSERT_TRUE(Exists(folder.File("kept.dat")));
  const std::string kept = ReadWhole(folder.File("kept.dat"));
  EXPECT_GT(kept.size(), 20U);
  ShowThePage();
  EXPECT_EQ(ReadWhole(folder.File("kept.dat")), kept) << "it was loaded and saved again";
}

TEST_F(MinimalHost, SaysThatItCannotLoadTheControl) {
  WriteWhole(folder.File("kept.dat"), "damaged");
  const Program host(L"KwMinimal.exe", Arguments(), Wide(folder.Path()));
  ASSERT_TRUE(host.IsStarted());
  EXPECT_TRUE(host.AnswerUntil([&] { return host.ExitCode(0) != STILL_ACTIVE; }));
  EXPECT_EQ(host.ExitCode(10000), 1U);
}

TEST_F(MinimalHost, NeedsItsTwoArguments) {
  const Program host(L"KwMinimal.exe", L"", Wide(folder.Path()));
  ASSERT_TRUE(host.IsStarted());
  EXPECT_EQ(host.ExitCode(20000), 2U);
}

}  // namespace
}  // namespace kw::host
