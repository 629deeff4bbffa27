#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <semaphore>
#include <string>
#include <thread>

#include "components/base/RunTimeError.h"
#include "components/controls/Scanner.h"
#include "components/controls/Timer.h"
#include "tests/support/Errors.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/programs/twain/TestScanner.h"
#include "tests/support/programs/twain/TestSheet.h"
#include "tests/windows/TestForm.h"
#include "windows/WindowsDesktop.h"

namespace kw::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A scanner on the system's own source manager with the test source as its one driver.
class SystemScanner : public testing::Test {
protected:
  SystemScanner() {
    EmptyTheClipboard();
    scanner.SwitchOn(true);
  }

  TestScanner source;
  windows::WindowsDesktop desktop;
  Scanner scanner{"KWScannerCtl1", desktop};
};

TEST_F(SystemScanner, PutsTheImageOnTheClipboardPixelForPixel) {
  for (const int depth : {1, 8, 24}) {
    TestScanner::Order("DEPTH", std::to_string(depth));
    EmptyTheClipboard();
    EXPECT_TRUE(scanner.Acquire()) << depth;
    EXPECT_EQ(BytesOnTheClipboard(), TestSheet(1, depth)) << depth;
  }
}

// Another one of that name lies where programs look first.
TEST_F(SystemScanner, LoadsItsManagerFromTheSystemsFoldersOnly) {
  constexpr const wchar_t* manager = L"TWAINDSM.dll";
  if (const HMODULE ofTheSystem = LoadLibraryExW(manager, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32)) {
    FreeLibrary(ofTheSystem);
    GTEST_SKIP() << "this system has a manager of that name";
  }
  const TemporaryFolder folder;
  const std::filesystem::path former = std::filesystem::current_path();
  std::filesystem::copy_file(source.DriverFile(), folder.Native() / manager);
  std::filesystem::current_path(folder.Native());
  EXPECT_TRUE(scanner.Acquire());
  EXPECT_EQ(GetModuleHandleW(manager), nullptr);
  const HMODULE planted = LoadLibraryW(manager);
  EXPECT_NE(planted, nullptr) << "a careless search does not find it either";
  if (planted != nullptr) FreeLibrary(planted);
  std::filesystem::current_path(former);
}

TEST_F(SystemScanner, AsksTheSourceStepByStepAndClosesIt) {
  EXPECT_TRUE(scanner.Acquire());
  EXPECT_EQ(TestScanner::Trace(), "OETNDC");
}

TEST_F(SystemScanner, TakesASourceThatCannotHideOrShowItsInterface) {
  TestScanner::Order("FAILS", "hidden interface");
  EXPECT_TRUE(scanner.Acquire());
}

// A step of the source that goes wrong, and what it is asked all the same.
struct Failing {
  const char* step;
  const char* trace;
};

TEST_F(SystemScanner, AFailureInAnyStateAcquiresNothingAndGoesBackToTheStart) {
  for (const auto& [step, trace] :
       {Failing{"open", "O"}, Failing{"enable", "OEC"}, Failing{"transfer", "OETRDC"}, Failing{"image", "OETNDC"},
        Failing{"user cancels", "OETNDC"}, Failing{"user closes", "OEDC"}}) {
    TestScanner::Order("FAILS", step);
    EXPECT_FALSE(scanner.Acquire()) << step;
    EXPECT_EQ(TestScanner::Trace(), trace) << step;
    EXPECT_TRUE(BytesOnTheClipboard().empty()) << step;
  }
  TestScanner::Order("FAILS", "");
  EXPECT_TRUE(scanner.Acquire()) << "the scanner is usable after all that";
}

TEST_F(SystemScanner, AnImageThatWasTakenCountsEvenIfTheSourceFailsAtClosing) {
  for (const char* step : {"end", "disable", "close"}) {
    TestScanner::Order("FAILS", step);
    EmptyTheClipboard();
    EXPECT_TRUE(scanner.Acquire()) << step;
    EXPECT_EQ(BytesOnTheClipboard(), TestSheet(1, 24)) << step;
  }
}

TEST_F(SystemScanner, AFailedAcquisitionLeavesTheClipboardAsItWas) {
  ASSERT_TRUE(scanner.Acquire());
  TestScanner::Order("FAILS", "transfer");
  EXPECT_FALSE(scanner.Acquire());
  EXPECT_EQ(BytesOnTheClipboard(), TestSheet(1, 24));
}

// The pixels of the joined pages, as the system shows them.
void ExpectPages(const Bytes& joined, int pages, int bitsOfFirst, int bitsOfOthers) {
  ASSERT_FALSE(joined.empty());
  int top = 0;
  for (int page = 1; page <= pages; ++page) {
    const Bytes sheet = TestSheet(page, page == 1 ? bitsOfFirst : bitsOfOthers);
    const SIZE size = SizeOfDib(sheet);
    EXPECT_EQ(PixelsOfDib(joined, {0, top, size.cx, top + size.cy}), PixelsOfDib(sheet, {0, 0, size.cx, size.cy}));
    const SIZE whole = SizeOfDib(joined);
    const auto beside = PixelsOfDib(joined, {size.cx, top, whole.cx, top + size.cy});
    EXPECT_EQ(beside, std::vector<COLORREF>(beside.size(), RGB(255, 255, 255))) << page;
    top += size.cy;
  }
  EXPECT_EQ(SizeOfDib(joined).cy, top);
}

TEST_F(SystemScanner, EmptiesTheFeederIntoOneImageInItsPagesDepth) {
  TestScanner::Order("PAGES", "3");
  for (const int depth : {1, 8, 24}) {
    TestScanner::Order("DEPTH", std::to_string(depth));
    EXPECT_TRUE(scanner.Acquire());
    EXPECT_EQ(TestScanner::Trace(), "OETNTNTNDC");
    const Bytes joined = BytesOnTheClipboard();
    ExpectPages(joined, 3, depth, depth);
    EXPECT_EQ(reinterpret_cast<const BITMAPINFOHEADER*>(joined.data())->biBitCount, depth);
    EXPECT_EQ(reinterpret_cast<const BITMAPINFOHEADER*>(joined.data())->biXPelsPerMeter, 7874);
  }
}

TEST_F(SystemScanner, PagesOfDifferentDepthsAreJoinedInTrueColour) {
  TestScanner::Order("PAGES", "2");
  TestScanner::Order("DEPTH", "mixed");
  EXPECT_TRUE(scanner.Acquire());
  ExpectPages(BytesOnTheClipboard(), 2, 1, 8);
}

TEST_F(SystemScanner, PagesBeforeAFailingOneAreNotLost) {
  TestScanner::Order("PAGES", "3");
  TestScanner::Order("FAILS", "second transfer");
  EXPECT_TRUE(scanner.Acquire());
  EXPECT_EQ(TestScanner::Trace(), "OETNTRDC");
  EXPECT_EQ(BytesOnTheClipboard(), TestSheet(1, 24));
}

TEST_F(SystemScanner, ASourceThatNeverDeliversIsCancelledFromTheMessageLoop) {
  TestScanner::Order("FAILS", "silent");
  Timer timer("cancel", desktop);
  timer.Tick.Connect([&] { scanner.CancelAcquisition(); });
  timer.SetInterval(50);
  timer.SetEnabled(true);
  EXPECT_FALSE(scanner.Acquire());
  EXPECT_EQ(TestScanner::Trace(), "OEDC");
}

TEST_F(SystemScanner, TheEndOfTheProgramEndsTheAcquisition) {
  TestScanner::Order("FAILS", "silent");
  PostQuitMessage(7);
  EXPECT_FALSE(scanner.Acquire());
  EXPECT_EQ(TestScanner::Trace(), "OEDC");
  MSG message = {};
  EXPECT_EQ(GetMessageW(&message, nullptr, 0, 0), 0) << "the loop that called still learns of it";
  EXPECT_EQ(message.wParam, 7U);
}

TEST_F(SystemScanner, AClipboardThatAnotherProgramHoldsIsAnError) {
  std::binary_semaphore isHeld{0};
  std::binary_semaphore isOver{0};
  std::thread other([&] {
    EXPECT_TRUE(OpenClipboard(nullptr));
    isHeld.release();
    isOver.acquire();
    CloseClipboard();
  });
  isHeld.acquire();
  EXPECT_EQ(ErrorOf([&] { scanner.Acquire(); }), static_cast<std::int32_t>(ErrorNumber::CannotOpenClipboard));
  EXPECT_EQ(TestScanner::Trace(), "OETNDC");
  isOver.release();
  other.join();
  EXPECT_TRUE(scanner.Acquire());
}

TEST_F(SystemScanner, TheUserSelectsASourceInTheManagersDialog) {
  std::wstring shown;
  std::thread user([&] {
    for (int i = 0; i < 300 && shown.empty(); ++i) {
      Sleep(10);
      const HWND dialog = FindWindowW(L"#32770", nullptr);
      if (dialog == nullptr || IsWindowVisible(dialog) == FALSE) continue;
      const HWND list = FindWindowExW(dialog, nullptr, L"ListBox", nullptr);
      wchar_t name[64] = {};
      SendMessageW(list, LB_GETTEXT, 0, reinterpret_cast<LPARAM>(static_cast<wchar_t*>(name)));
      shown = static_cast<const wchar_t*>(name);
      SendMessageW(list, LB_SETCURSEL, 0, 0);
      PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    }
  });
  scanner.SelectSource();
  user.join();
  EXPECT_EQ(shown, L"Kw Test Source");
  EXPECT_TRUE(scanner.Acquire());
}

TEST(WithoutASource, AnAcquisitionHasNoResult) {
  EmptyTheClipboard();
  windows::WindowsDesktop desktop;
  Scanner scanner("KWScannerCtl1", desktop);
  EXPECT_FALSE(scanner.Acquire()) << "not switched on";
  scanner.SwitchOn(true);
  EXPECT_FALSE(scanner.Acquire());
  EXPECT_TRUE(BytesOnTheClipboard().empty());
}

}  // namespace
}  // namespace kw::test
