// A control whose trace cannot be written: it is created, closed and let go of all the same.

#include <windows.h>

#include <commctrl.h>
#include <olectl.h>

#include <filesystem>

#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class TraceFolder : public ControlTest {
protected:
  void TearDown() override {
    Restore();
    ControlTest::TearDown();
  }
  // The host's temporary folder, which it removes too early.
  void LoseTheFolder() {
    const std::wstring folder = scratch.File(L"work");
    std::filesystem::create_directory(folder);
    ASSERT_EQ(control->put_AppDir(Text(folder + L"\\")), S_OK);
    std::filesystem::remove_all(folder);
  }
  // A control that lives on after it has the folder again.
  void Restore() {
    std::filesystem::create_directory(scratch.File(L"work"));
    if (control != nullptr) control->put_AppDir(Text(scratch.Path()));
  }
  static void ExpectOneReport(const BoxAnswerer& user) {
    const std::vector<std::string> boxes = user.Boxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_TRUE(boxes[0].starts_with("Critical Error: Error Number : 76")) << boxes[0];
  }
  bool IsEnabled() {
    VARIANT_BOOL isEnabled = VARIANT_FALSE;
    EXPECT_EQ(control->get_Enabled(&isEnabled), S_OK);
    return isEnabled != VARIANT_FALSE;
  }
};

TEST_F(TraceFolder, MayBeGoneWhenTheControlIsLetGoOf) {
  LoseTheFolder();
  const BoxAnswerer user({Once("Critical Error: Error Number : 76/")});
  control.Reset();
  ExpectOneReport(user);
  EXPECT_TRUE(Ocx::CanUnload());
}

TEST_F(TraceFolder, MayRefuseTheTraceWhenTheControlIsLetGoOf) {
  ASSERT_EQ(control->put_AppDir(Text(scratch.File(L"x"))), S_OK);
  DeleteFileW(scratch.File(L"xFunctionsInExecution.txt").c_str());
  std::filesystem::create_directory(scratch.File(L"xFunctionsInExecution.txt"));
  {
    const BoxAnswerer user({Once("Critical Error: ")});
    control.Reset();
    EXPECT_EQ(user.Boxes().size(), 1U);
  }
  EXPECT_TRUE(Ocx::CanUnload());
  std::filesystem::remove(scratch.File(L"xFunctionsInExecution.txt"));
}

TEST_F(TraceFolder, MayBeGoneWhenTheContainerClosesTheControl) {
  StrictContainer container;
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  LoseTheFolder();
  const BoxAnswerer user({Once("Critical Error: Error Number : 76/")});
  container.LetGo();
  control.Reset();
  ExpectOneReport(user);
  PumpMessages(20);
  EXPECT_TRUE(Ocx::CanUnload());
}

TEST_F(TraceFolder, MayBeGoneWhenTheContainerDestroysItsWindow) {
  StrictContainer container;
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  LoseTheFolder();
  const BoxAnswerer user({Once("Critical Error: ")});
  container.DestroyWindowNow();
  container.LetGo();
  control.Reset();
  EXPECT_EQ(user.Boxes().size(), 1U);
  PumpMessages(20);
  EXPECT_TRUE(Ocx::CanUnload());
}

TEST_F(TraceFolder, MayBeGoneAtEveryMessageOfTheSystem) {
  StrictContainer container;
  container.Take(control.Get());
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  const HWND window = container.ControlWindow();
  constexpr UINT ScreenScaleChanged = 0x02E3;
  struct Row {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
  };
  for (const Row& row : {Row{ScreenScaleChanged, 0, 0}, Row{WM_PAINT, 0, 0}, Row{WM_KEYDOWN, VK_DELETE, 1},
                         Row{WM_KEYUP, VK_DELETE, 1}, Row{WM_CHAR, 'a', 1}, Row{WM_MOUSEWHEEL, MAKEWPARAM(0, 120), 0},
                         Row{WM_MOUSEACTIVATE, 0, MAKELPARAM(HTCLIENT, WM_LBUTTONDOWN)}, Row{WM_SIZE, 0, 0}}) {
    LoseTheFolder();
    const BoxAnswerer user({Perhaps("Critical Error: ")});
    // The new scale finds the window at another size.
    SetWindowPos(window, nullptr, 0, 0, 300, 200, SWP_NOMOVE | SWP_NOZORDER);
    InvalidateRect(window, nullptr, FALSE);
    SendMessageW(window, row.message, row.wParam, row.lParam);
    EXPECT_LE(user.Boxes().size(), 1U) << row.message;
    Restore();
    control->put_Enabled(VARIANT_TRUE);
    SetWindowPos(window, nullptr, 0, 0, 400, 300, SWP_NOMOVE | SWP_NOZORDER);
    SendMessageW(window, ScreenScaleChanged, 0, 0);
  }
  container.LetGo();
}

// Timers run from the message loop.
TEST_F(TraceFolder, MayBeGoneWhenATimerRuns) {
  LoseTheFolder();
  const BoxAnswerer user({Once("Critical Error: Error Number : 76/")});
  EXPECT_TRUE(PumpUntil([&] { return !user.Boxes().empty(); }));
  PumpMessages(100);
  ExpectOneReport(user);
}

// A folder in the place of the file: nobody can write there, whatever his rights are.
class UnwritableStart : public TraceFolder {
protected:
  void SetUp() override {
    TraceFolder::SetUp();
    control->put_AppDir(nullptr);
    control.Reset();
    DeleteFileW(scratch.File(L"FunctionsInExecution.txt").c_str());
    std::filesystem::create_directory(scratch.File(L"FunctionsInExecution.txt"));
    const BoxAnswerer user({Once("Critical Error: ")});
    control = Ocx::Create();
    ASSERT_NE(control, nullptr);
    EXPECT_TRUE(user.Boxes().empty()) << "nobody has used it yet";
    EXPECT_FALSE(IsEnabled());
    EXPECT_EQ(user.Boxes().size(), 1U);
    std::filesystem::create_directory(scratch.File(L"work"));
  }
  void TearDown() override {
    std::filesystem::remove(scratch.File(L"FunctionsInExecution.txt"));
    TraceFolder::TearDown();
  }
  std::wstring Work() const { return scratch.File(L"work\\"); }
};

TEST_F(UnwritableStart, GivesADisabledControlThatWorksInAnotherFolder) {
  StrictContainer container;
  container.Take(control.Get());
  const BoxAnswerer user({Once(ListOfPendingWork)});
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  EXPECT_EQ(IsWindowEnabled(container.ControlWindow()), FALSE);
  EXPECT_TRUE(user.Boxes().empty()) << "a disabled control reports nothing";
  EXPECT_EQ(control->put_AppDir(Text(Work())), S_OK);
  EXPECT_EQ(control->put_Enabled(VARIANT_TRUE), S_OK);
  EXPECT_TRUE(IsEnabled());
  EXPECT_NE(IsWindowEnabled(container.ControlWindow()), FALSE);
  EXPECT_EQ(control->OpenFile(Text(scratch.WriteTiff(L"D.tif", 2))), S_OK);
  EXPECT_TRUE(FileExists(scratch.File(L"D_Page_2.tif")));
  EXPECT_EQ(TracedTimes(Work(), "OpenFile"), 1);
  EXPECT_TRUE(PumpUntil([&] { return TracedTimes(Work(), "tbrFillPattern_ButtonClick") != 0; })) << "default tools";
  for (const std::string& box : user.Boxes()) EXPECT_FALSE(box.starts_with("Critical Error")) << box;
  container.LetGo();
}

// Every window of the form as the start-up left it.
std::vector<std::string> LookOf(HWND editor) {
  std::vector<std::string> look;
  for (const wchar_t* className : {TOOLBARCLASSNAMEW, WC_COMBOBOXW, TRACKBAR_CLASSW, WC_SCROLLBARW, L"KwEditorView"}) {
    for (const HWND window : ChildWindows(editor, className)) {
      RECT place = {};
      GetWindowRect(window, &place);
      MapWindowPoints(nullptr, editor, reinterpret_cast<POINT*>(&place), 2);
      std::string line = std::to_string(look.size());
      for (const LONG number : {place.left, place.top, place.right, place.bottom}) line += ' ' + std::to_string(number);
      line += IsWindowVisible(window) != FALSE ? " visible" : " hidden";
      line += IsWindowEnabled(window) != FALSE ? " enabled" : " disabled";
      line += ' ' + std::to_string(SendMessageW(window, CB_GETCOUNT, 0, 0));
      line += ' ' + std::to_string(SendMessageW(window, TBM_GETPOS, 0, 0));
      const auto buttons = static_cast<int>(SendMessageW(window, TB_BUTTONCOUNT, 0, 0));
      const bool isBar = std::wstring(className) == TOOLBARCLASSNAMEW;
      for (int id = 1; isBar && id <= buttons; ++id)
        line += ' ' + std::to_string(SendMessageW(window, TB_GETSTATE, static_cast<WPARAM>(id), 0));
      look.push_back(line);
    }
  }
  return look;
}

TEST_F(UnwritableStart, LeavesEveryControlWithItsValue) {
  const auto lookOf = [](const ComPtr<_KwEditorLayers>& of) {
    StrictContainer container;
    container.Take(of.Get());
    EXPECT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
    auto look = LookOf(container.ControlWindow());
    container.LetGo();
    return look;
  };
  control->put_AppDir(Text(Work()));
  control->put_Enabled(VARIANT_TRUE);
  const auto late = lookOf(control);
  EXPECT_GT(late.size(), 20U);
  EXPECT_EQ(late, lookOf(Ocx::Create()));
}

}  // namespace
}  // namespace kw::test
