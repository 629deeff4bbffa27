#include "windows/base/WaitPointer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <thread>
#include <vector>

#include "components/base/LongWork.h"
#include "components/controls/Timer.h"
#include "tests/support/win32/Answerer.h"
#include "tests/windows/OwnedDesktop.h"
#include "tests/windows/TestForm.h"
#include "windows/base/Guard.h"

namespace kw::test {
namespace {

namespace WaitPointer = windows::WaitPointer;
using windows::Guard;

HCURSOR SystemPointer(LPCWSTR name) { return LoadCursorW(nullptr, name); }
bool Waits() { return GetCursor() == SystemPointer(IDC_WAIT); }
void SleepLong() { Sleep(static_cast<DWORD>(WaitPointer::Delay) + 40); }

// The mouse lies on no window of the test, whose pointer is the hand.
class WaitPointerTest : public testing::Test {
protected:
  WaitPointerTest() {
    SetCursorPos(GetSystemMetrics(SM_CXSCREEN) - 1, GetSystemMetrics(SM_CYSCREEN) - 1);
    SetCursor(SystemPointer(IDC_HAND));
  }
};

TEST_F(WaitPointerTest, ShowsOnlyAfterTheDelayAndGoesWithTheCallback) {
  Guard([] {
    const ULONGLONG begin = GetTickCount64();
    NoteWork();
    EXPECT_FALSE(Waits()) << "not at once";
    Sleep(static_cast<DWORD>(WaitPointer::Delay) / 2);
    NoteWork();
    const bool isEarly = GetTickCount64() - begin < WaitPointer::Delay;  // a busy machine may sleep longer
    EXPECT_FALSE(isEarly && Waits()) << "not in half the time";
    SleepLong();
    NoteWork();
    EXPECT_TRUE(Waits());
    EXPECT_TRUE(WaitPointer::IsShown());
  });
  EXPECT_EQ(GetCursor(), SystemPointer(IDC_HAND));
  EXPECT_FALSE(WaitPointer::IsShown());
}

TEST_F(WaitPointerTest, GoesAfterAnError) {
  EXPECT_FALSE(Guard([] {
    SleepLong();
    NoteWork();
    EXPECT_TRUE(Waits());
    throw std::runtime_error("damaged");
  }));
  EXPECT_EQ(GetCursor(), SystemPointer(IDC_HAND));
}

TEST_F(WaitPointerTest, StaysUntilTheOutermostCallbackEnds) {
  Guard([] {
    SleepLong();
    Guard([] {
      NoteWork();
      EXPECT_FALSE(Waits()) << "a callback within one has a clock of its own";
    });
    NoteWork();
    EXPECT_TRUE(Waits());
    Guard([] { NoteWork(); });
    EXPECT_TRUE(Waits());
  });
  EXPECT_EQ(GetCursor(), SystemPointer(IDC_HAND));
}

TEST_F(WaitPointerTest, NeverShowsOutsideACallback) {
  Guard([] { NoteWork(); });
  SleepLong();
  NoteWork();
  EXPECT_FALSE(Waits());
}

TEST_F(WaitPointerTest, WorkOnAnotherThreadIsNotThisThreadsWait) {
  Guard([] {
    SleepLong();
    bool showsThere = true;
    std::thread([&] {
      Guard([&] {
        NoteWork();
        showsThere = WaitPointer::IsShown();
      });
    }).join();
    EXPECT_FALSE(showsThere);
    EXPECT_FALSE(Waits());
  });
}

TEST_F(WaitPointerTest, RestsWhileABoxWaitsForTheUser) {
  TestForm form;
  OwnedDesktop desktop(form.window->Handle());
  Timer timer("timer", desktop);
  std::vector<bool> seen;
  timer.Tick.Connect([&] {
    NoteWork();
    seen.push_back(Waits() || WaitPointer::IsShown());
  });
  const Answerer user(L"Kw box", IDOK, [](HWND /*box*/) { SleepLong(); });
  Guard([&] {
    SleepLong();
    NoteWork();
    EXPECT_TRUE(Waits());
    timer.SetInterval(10);
    timer.SetEnabled(true);
    desktop.ShowMessageBox("Up", "Kw box", MessageButtons::Ok);
    timer.SetEnabled(false);
    NoteWork();
    EXPECT_FALSE(Waits()) << "the user's time is not work";
    SleepLong();
    NoteWork();
    EXPECT_TRUE(Waits()) << "but what follows is";
  });
  EXPECT_FALSE(Waits());
  EXPECT_GT(seen.size(), 3U);
  EXPECT_EQ(std::count(seen.begin(), seen.end(), true), 0);
}

TEST_F(WaitPointerTest, ABoxInAnInnerCallbackIsNoWorkOfTheOuterOne) {
  Guard([] {
    Guard([] {
      const WaitPointer::Rest rest;
      SleepLong();
    });
    NoteWork();
    EXPECT_FALSE(Waits());
  });
}

TEST_F(WaitPointerTest, HandledMessagesAreNoWork) {
  windows::WindowsDesktop desktop;
  Guard([&] {
    SleepLong();
    NoteWork();
    EXPECT_TRUE(Waits());
    desktop.DoEvents();
    NoteWork();
    EXPECT_FALSE(Waits());
  });
}

TEST_F(WaitPointerTest, TheModelsPointersStayAndShowAgain) {
  TestForm form;
  form.canvas.SetPointer(MousePointer::Cross);
  RECT place = {};
  GetWindowRect(WindowOf(form.canvas), &place);
  SetCursorPos(place.right - 5, place.bottom - 5);
  TestForm::Pump();
  const HCURSOR before = GetCursor();
  EXPECT_EQ(before, SystemPointer(IDC_CROSS));
  Guard([&] {
    SleepLong();
    NoteWork();
    EXPECT_TRUE(Waits());
    EXPECT_EQ(form.canvas.Pointer(), MousePointer::Cross);
    form.canvas.SetPointer(MousePointer::SizeAll);
    EXPECT_TRUE(Waits()) << "a new pointer of a model shows when the wait is over";
  });
  EXPECT_EQ(form.canvas.Pointer(), MousePointer::SizeAll);
  EXPECT_EQ(GetCursor(), SystemPointer(IDC_SIZEALL));
}

}  // namespace
}  // namespace kw::test
