#include "windows/WindowsDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <fstream>
#include <vector>

#include "components/base/RunTimeError.h"
#include "components/controls/Timer.h"
#include "tests/support/win32/Answerer.h"
#include "tests/windows/OwnedDesktop.h"
#include "tests/windows/TestForm.h"
#include "windows/base/ClipboardFormats.h"
#include "windows/base/Text.h"
#include "windows/base/TextDrawing.h"

namespace kw::test {
namespace {

using windows::WindowsDesktop;

TEST(Desktop, AMessageBoxBelongsToTheTopLevelWindowAndReturnsTheAnswer) {
  TestForm form;
  OwnedDesktop desktop(form.window->Handle());
  MessageAnswer answer = MessageAnswer::Ok;
  {
    const Answerer user(L"Kw question", IDNO);
    answer = desktop.ShowMessageBox("Save?", "Kw question", MessageButtons::YesNoCancel);
    TestForm::Pump();
    EXPECT_EQ(user.owner, form.host);
    EXPECT_TRUE(user.hasCancel);
  }
  EXPECT_EQ(answer, MessageAnswer::No);
}

TEST(Desktop, ABoxWithoutATitleShowsTheApplicationsName) {
  WindowsDesktop desktop;
  const Answerer user(L"test_windows", IDOK);
  EXPECT_EQ(desktop.ShowMessageBox("Done", "", MessageButtons::Ok), MessageAnswer::Ok);
}

TEST(Desktop, TheWindowMayGoWhileABoxIsUp) {
  TestForm form;
  OwnedDesktop desktop(form.window->Handle());
  form.bar.ButtonClick.Connect([&](const std::string&) { desktop.ShowMessageBox("Up", "Kw box", MessageButtons::Ok); });
  Timer timer("closer", desktop);
  timer.Tick.Connect([&] {
    timer.SetEnabled(false);
    form.window.reset();
  });
  timer.SetInterval(10);
  timer.SetEnabled(true);
  const Answerer user(L"Kw box", IDOK);
  ClickAt(WindowOf(form.bar), 8, 8);
  EXPECT_TRUE(TestForm::PumpUntil([&] { return form.window == nullptr; }));
}

TEST(Desktop, TimersFireThroughTheMessageLoopUntilTheyAreStopped) {
  WindowsDesktop desktop;
  Timer timer("timer", desktop);
  int ticks = 0;
  timer.Tick.Connect([&] { ++ticks; });
  timer.SetInterval(10);
  TestForm::Pump();
  EXPECT_EQ(ticks, 0) << "not enabled yet";
  timer.SetEnabled(true);
  EXPECT_TRUE(TestForm::PumpUntil([&] { return ticks >= 3; }));
  timer.SetEnabled(false);
  const int before = ticks;
  Sleep(50);
  TestForm::Pump();
  EXPECT_EQ(ticks, before);
}

TEST(Desktop, ATimerMayBeDestroyedInItsOwnTick) {
  WindowsDesktop desktop;
  auto timer = std::make_unique<Timer>("timer", desktop);
  bool fired = false;
  timer->Tick.Connect([&] {
    fired = true;
    timer.reset();
  });
  timer->SetInterval(10);
  timer->SetEnabled(true);
  EXPECT_TRUE(TestForm::PumpUntil([&] { return fired; }));
  Sleep(30);
  TestForm::Pump();
}

TEST(Desktop, TheClipboardIsAskedForItsFormats) {
  WindowsDesktop desktop;
  ASSERT_TRUE(OpenClipboard(nullptr));
  EmptyClipboard();
  CloseClipboard();
  EXPECT_FALSE(desktop.ClipboardHasFormat(ClipboardDib));
  const HGLOBAL data = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(BITMAPINFOHEADER) + 4);
  auto* header = static_cast<BITMAPINFOHEADER*>(GlobalLock(data));
  *header = {sizeof *header, 1, 1, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  GlobalUnlock(data);
  ASSERT_TRUE(OpenClipboard(nullptr));
  SetClipboardData(CF_DIB, data);
  CloseClipboard();
  EXPECT_TRUE(desktop.ClipboardHasFormat(ClipboardDib));
  EXPECT_THROW(desktop.ClipboardHasFormat(-1), RunTimeError);
}

TEST(Desktop, AnImageIsNoDeviceIndependentBitmapWhereOnlyTheSystemMakesOneOfIt) {
  WindowsDesktop desktop;
  const auto leave = [](const std::vector<UINT>& formats) {
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    for (const UINT format : formats) {
      HANDLE data = CreateBitmap(4, 4, 1, 32, nullptr);
      if (format != CF_BITMAP) {
        data = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(BITMAPV5HEADER) + 4);
        auto* header = static_cast<BITMAPINFOHEADER*>(GlobalLock(data));
        const std::size_t size = format == CF_DIB ? sizeof(BITMAPINFOHEADER) : sizeof(BITMAPV5HEADER);
        *header = {static_cast<DWORD>(size), 1, 1, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        GlobalUnlock(data);
      }
      EXPECT_NE(SetClipboardData(format, data), nullptr) << format;
    }
    CloseClipboard();
  };
  leave({CF_BITMAP});
  EXPECT_NE(IsClipboardFormatAvailable(CF_DIB), FALSE) << "the system makes one";
  EXPECT_FALSE(desktop.ClipboardHasFormat(ClipboardDib));
  EXPECT_TRUE(desktop.ClipboardHasFormat(CF_BITMAP));
  leave({CF_DIB, CF_BITMAP});
  EXPECT_TRUE(desktop.ClipboardHasFormat(ClipboardDib));
  leave({CF_DIBV5});
  EXPECT_TRUE(desktop.ClipboardHasFormat(ClipboardDib)) << "a newer one is one, too";
  leave({});
  EXPECT_FALSE(desktop.ClipboardHasFormat(ClipboardDib));
}

TEST(Desktop, TheOrderOfTheClipboardsFormatsTellsWhatTheSystemMade) {
  const auto holds = [](const std::vector<UINT>& formats) { return windows::HoldDeviceIndependentBitmap(formats); };
  EXPECT_FALSE(holds({}));
  EXPECT_FALSE(holds({CF_UNICODETEXT, CF_LOCALE, CF_TEXT, CF_OEMTEXT}));
  EXPECT_TRUE(holds({CF_DIB, CF_BITMAP, CF_DIBV5}));
  EXPECT_TRUE(holds({CF_UNICODETEXT, CF_DIB, CF_LOCALE, CF_BITMAP}));
  EXPECT_FALSE(holds({CF_BITMAP, CF_DIB, CF_DIBV5}));
  EXPECT_FALSE(holds({CF_UNICODETEXT, CF_BITMAP, CF_LOCALE, CF_DIB, CF_DIBV5}));
  EXPECT_FALSE(holds({CF_PALETTE, CF_BITMAP, CF_DIB, CF_DIBV5})) << "an old bitmap with its palette";
  EXPECT_TRUE(holds({CF_BITMAP, CF_DIB, CF_PALETTE, CF_DIBV5})) << "a palette is made of the new kind only";
  EXPECT_TRUE(holds({CF_DIBV5, CF_BITMAP, CF_DIB, CF_PALETTE}));
}

TEST(Desktop, FilesAreFoundAndRemovedUnderAnyUnicodeName) {
  WindowsDesktop desktop;
  wchar_t folder[MAX_PATH] = {};
  GetTempPathW(MAX_PATH, folder);
  const std::wstring path = std::wstring(folder) + L"kw-Gr\u00F6\u00DFe-\u4E2D.txt";
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  CloseHandle(file);
  const std::string name = windows::FromWide(path);
  EXPECT_EQ(desktop.DirectoryLookUp(name), windows::FromWide(L"kw-Gr\u00F6\u00DFe-\u4E2D.txt"));
  desktop.RemoveFile(name);
  EXPECT_EQ(desktop.DirectoryLookUp(name), "");
  EXPECT_THROW(desktop.RemoveFile(name), RunTimeError);
}

TEST(Desktop, TheScreenTheClockAndTheApplicationAreTheSystems) {
  const WindowsDesktop desktop;
  EXPECT_EQ(desktop.TwipsPerPixelX(), 15) << "a screen of 96 pixels to the inch";
  const std::time_t now = std::time(nullptr);
  EXPECT_EQ(desktop.Date().year, std::localtime(&now)->tm_year + 1900);
  EXPECT_LT(desktop.Time().hour, 24);
  EXPECT_FALSE(desktop.ApplicationFolder().empty());
  EXPECT_NE(desktop.ApplicationFolder().back(), '\\');
  EXPECT_FALSE(desktop.MachineName().empty());
  EXPECT_EQ(desktop.ProcessNumber(), GetCurrentProcessId());
  EXPECT_TRUE(desktop.IsProcessRunning(desktop.ProcessNumber()));
  EXPECT_FALSE(desktop.IsProcessRunning(3)) << "numbers are multiples of 4";
}

TEST(Desktop, ATextIsMeasuredWithItsLinesAndItsFont) {
  WindowsDesktop desktop;
  const Font font{.name = "Liberation Sans", .size = 12};
  const TextExtent word = desktop.MeasureText("Approved", font, 0);
  EXPECT_GT(word.width, 40);
  EXPECT_NEAR(word.height, 18, 4);
  EXPECT_EQ(desktop.MeasureText("Approved\r\nApproved", font, 0), (TextExtent{word.width, 2 * word.height}));
  EXPECT_EQ(desktop.MeasureText("Approved\r\n", font, 0).height, 2 * word.height) << "the new line is there to type";
  EXPECT_EQ(desktop.MeasureText("Approved Approved", font, word.width + 10).height, 2 * word.height);
  EXPECT_EQ(desktop.MeasureText("", font, 0), (TextExtent{0, word.height}));
  Font large = font;
  large.size = 24;
  EXPECT_NEAR(desktop.MeasureText("Approved", large, 0).width, 2 * word.width, 4);
}

TEST(Desktop, ATextInAFontThatIsNotInstalledHasAnotherOne) {
  WindowsDesktop desktop;
  const TextExtent word = desktop.MeasureText("Approved", {.name = "No Such Font", .size = 12}, 0);
  EXPECT_GT(word.width, 40);
  EXPECT_NEAR(word.height, 18, 6);
  const PixelRect area{0, 0, 100, 30};
  CoverageMask mask{area, std::vector<std::uint8_t>(3000)};
  windows::GdiTextRenderer().Render({"Approved", {.name = "No Such Font", .size = 12}}, area, mask);
  EXPECT_GT(std::ranges::count(mask.coverage, 255), 20);
}

}  // namespace
}  // namespace kw::test
