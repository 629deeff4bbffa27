// Several controls and several threads, and forms that come late, move or go first.

#include <windows.h>

#include <commctrl.h>
#include <ole2.h>
#include <olectl.h>

#include <algorithm>
#include <array>
#include <optional>
#include <thread>
#include <vector>

#include "tests/activex/DrawnPixels.h"
#include "tests/activex/EditorWindows.h"
#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/ToolBarButtons.h"

namespace kw::test {
namespace {

HWND NewForm(DWORD style = WS_VISIBLE) {
  return CreateWindowExW(0, L"Static", L"Form", WS_POPUP | WS_CLIPCHILDREN | style, 0, 0, 900, 600, nullptr, nullptr,
                         nullptr, nullptr);
}

// A part of a form that holds one control, as the page of a tab or a container's own window.
HWND NewPane(HWND form, int left, DWORD style = WS_VISIBLE) {
  return CreateWindowExW(WS_EX_CONTROLPARENT, L"Static", nullptr, WS_CHILD | WS_CLIPCHILDREN | style, left, 0, 450, 500,
                         form, nullptr, nullptr, nullptr);
}

class Several : public ControlTest {
protected:
  Several() : form(NewForm()) {}
  ~Several() override { DestroyWindow(form); }

  void SetUp() override {
    ControlTest::SetUp();
    SetForegroundWindow(form);
    container.emplace(NewPane(form, 0));
    container->place = {0, 0, 450, 500};
    container->Take(control.Get());
    ASSERT_EQ(container->DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  }
  void TearDown() override {
    if (container && container->As<IOleObject>() != nullptr) container->LetGo();
    container.reset();
    ControlTest::TearDown();
  }
  void Open(const ComPtr<_KwEditorLayers>& in, const wchar_t* name, COLORREF colour) const {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    EXPECT_EQ(in->OpenFile(Text(scratch.WriteBitmap(name, 300, 200, [colour](int, int) { return colour; }))), S_OK);
  }
  static bool Shows(const ComPtr<_KwEditorLayers>& in, COLORREF colour) {
    const auto pixels = DrawnPixels(in.Get(), 450, 500);
    return std::ranges::count(pixels, DWORD{RGB(GetBValue(colour), GetGValue(colour), GetRValue(colour))}) > 20000;
  }

  static constexpr COLORREF Green = RGB(10, 200, 30);
  static constexpr COLORREF Violet = RGB(120, 20, 220);
  HWND form;
  std::optional<StrictContainer> container;
};

TEST_F(Several, TwoControlsInOneFormKeepApart) {
  const auto other = Ocx::Create();
  StrictContainer second(NewPane(form, 450));
  second.place = {0, 0, 450, 500};
  second.Take(other.Get());
  ASSERT_EQ(second.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  Open(control, L"green.bmp", Green);
  Open(other, L"violet.bmp", Violet);
  EXPECT_TRUE(Shows(control, Green));
  EXPECT_TRUE(Shows(other, Violet));
  control->put_MaxUndoLevels(11);
  control->put_IsToolboxVisible(VARIANT_FALSE);
  short levels = 0;
  VARIANT_BOOL isVisible = VARIANT_FALSE;
  other->get_MaxUndoLevels(&levels);
  other->get_IsToolboxVisible(&isVisible);
  EXPECT_EQ(levels, 5);
  EXPECT_EQ(isVisible, VARIANT_TRUE);
  // Each gets the focus, its key and its error.
  SetFocus(CanvasOf(container->ControlWindow()));
  PumpMessages(20);
  EXPECT_NE(container->ActiveObject(), nullptr);
  EXPECT_EQ(second.ActiveObject(), nullptr);
  SetFocus(CanvasOf(second.ControlWindow()));
  PumpMessages(20);
  EXPECT_NE(second.ActiveObject(), nullptr);
  MSG key = {GetFocus(), WM_KEYDOWN, VK_RETURN, 1, 0, {}};
  EXPECT_EQ(second.ActiveObject()->TranslateAccelerator(&key), S_OK);
  EXPECT_EQ(container->ActiveObject()->TranslateAccelerator(&key), S_FALSE) << "it is the other one's window";
  // One goes with its part of the form.
  container->DestroyWindowNow();
  container->LetGo();
  control.Reset();
  PumpMessages(20);
  EXPECT_TRUE(Shows(other, Violet));
  const auto buttons = ToolBarButtons(second.ControlWindow());
  EXPECT_TRUE(PumpUntil([&] { return buttons.at("Text").IsPressed(); }));
  second.LetGo();
}

TEST_F(Several, AControlInATabThatIsOpenedLate) {
  PumpMessages(300);
  const auto late = Ocx::Create();
  StrictContainer tab(NewPane(form, 450, 0));
  tab.place = {0, 0, 0, 0};  // the page has no size yet either
  tab.Take(late.Get());
  ASSERT_EQ(tab.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
  const HWND window = tab.ControlWindow();
  EXPECT_EQ(IsWindowVisible(window), FALSE);
  Open(late, L"violet.bmp", Violet);
  PumpMessages(1200);
  EXPECT_TRUE(ToolBarButtons(window).at("Text").IsPressed()) << "it has lived meanwhile";
  const RECT place = {0, 0, 450, 500};
  EXPECT_EQ(tab.As<IOleInPlaceObject>()->SetObjectRects(&place, &place), S_OK);
  ShowWindow(tab.Window(), SW_SHOW);
  ShowWindow(container->Window(), SW_HIDE);
  PumpMessages(20);
  EXPECT_NE(IsWindowVisible(window), FALSE);
  EXPECT_TRUE(Shows(late, Violet));
  SetFocus(CanvasOf(window));
  PumpMessages(20);
  EXPECT_NE(tab.ActiveObject(), nullptr);
  // Back to the first page of the tab, and here again.
  ShowWindow(tab.Window(), SW_HIDE);
  ShowWindow(container->Window(), SW_SHOW);
  PumpMessages(20);
  EXPECT_EQ(IsWindowVisible(window), FALSE);
  ShowWindow(tab.Window(), SW_SHOW);
  EXPECT_NE(IsWindowVisible(window), FALSE);
  EXPECT_TRUE(Shows(late, Violet));
  tab.LetGo();
}

// The windows of the system's tool tips that this thread has.
BOOL CALLBACK CollectToolTips(HWND window, LPARAM list) {
  wchar_t name[40] = {};
  GetClassNameW(window, static_cast<wchar_t*>(name), 40);
  if (std::wstring(static_cast<const wchar_t*>(name)) == TOOLTIPS_CLASSW)
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

TEST_F(Several, TheParentChangesAndTheFormerOneGoes) {
  Open(control, L"green.bmp", Green);
  const HWND window = container->ControlWindow();
  const HWND otherForm = NewForm();
  // The tips are there since the mouse met a control that has one.
  const std::vector<HWND> combos = ChildWindows(window, WC_COMBOBOXW);
  ASSERT_FALSE(combos.empty());
  SendMessageW(combos[0], WM_MOUSEMOVE, 0, MAKELPARAM(4, 4));
  // First the part of the form that holds it, then the control's own window.
  SetParent(container->Window(), otherForm);
  DestroyWindow(form);
  form = otherForm;
  PumpMessages(20);
  ASSERT_NE(IsWindow(window), FALSE);
  EXPECT_TRUE(Shows(control, Green));
  const HWND pane = NewPane(form, 100);
  EXPECT_NE(SetParent(window, pane), nullptr);
  const RECT place = {0, 0, 400, 450};
  EXPECT_EQ(container->As<IOleInPlaceObject>()->SetObjectRects(&place, &place), S_OK);
  container->DestroyWindowNow();
  PumpMessages(20);
  ASSERT_NE(IsWindow(window), FALSE);
  SetForegroundWindow(form);
  SetFocus(CanvasOf(window));
  EXPECT_EQ(GetAncestor(GetFocus(), GA_ROOT), form);
  std::vector<HWND> toolTips;
  EnumThreadWindows(GetCurrentThreadId(), &CollectToolTips, reinterpret_cast<LPARAM>(&toolTips));
  EXPECT_FALSE(toolTips.empty()) << "they went with the former form";
  // A dialog belongs to the form that it is on now.
  HWND owner = nullptr;
  {
    const BoxAnswerer user({Once(ListOfPendingWork)}, [&](HWND box) { owner = GetWindow(box, GW_OWNER); });
    EXPECT_EQ(control->OpenFile(Text(scratch.File(L"green.bmp"))), S_OK);
  }
  EXPECT_EQ(owner, form);
  EXPECT_TRUE(Shows(control, Green));
}

TEST_F(Several, AHostThatHandlesNoMessagesForAWhile) {
  Open(control, L"green.bmp", Green);
  PumpMessages(20);
  for (int i = 0; i < 20; ++i) {
    control->put_Enabled(i % 2 == 0 ? VARIANT_FALSE : VARIANT_TRUE);
    control->put_IsEditable(i % 2 == 0 ? VARIANT_FALSE : VARIANT_TRUE);
  }
  Sleep(1500);
  // A queue holds ten thousand messages.
  MSG waiting = {};
  std::vector<MSG> posted;
  while (PeekMessageW(&waiting, nullptr, WM_USER, 0xFFFF, PM_REMOVE) != FALSE) posted.push_back(waiting);
  EXPECT_LE(posted.size(), 2U) << "each call left a message";
  for (const MSG& one : posted) DispatchMessageW(&one);
  const int before = TracedTimes(scratch.Path(), "tmrDefaultToolsSelection_Timer");
  EXPECT_EQ(before, 0);
  PumpMessages(100);
  EXPECT_EQ(TracedTimes(scratch.Path(), "tmrDefaultToolsSelection_Timer"), 1);
  EXPECT_TRUE(Shows(control, Green));
}

// A thread of a host that shows and closes controls, one after the other.
void ShowAndClose(const ScratchFolder& folder, int number, int rounds, int& done) {
  ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
  for (int round = 0; round < rounds; ++round) {
    const ComPtr<_KwEditorLayers> control = Ocx::Create();
    ASSERT_NE(control.Get(), nullptr);
    StrictContainer container;
    if ((number + round) % 4 == 0) container.userMode = false;
    container.Take(control.Get());
    control->put_AppDir(Text(folder.Path()));
    ASSERT_EQ(container.DoVerb(round % 2 == 0 ? OLEIVERB_INPLACEACTIVATE : OLEIVERB_UIACTIVATE), S_OK);
    control->put_MaxUndoLevels(static_cast<short>(10 * number + round + 5));
    PumpMessages(2);
    short levels = 0;
    EXPECT_EQ(control->get_MaxUndoLevels(&levels), S_OK);
    EXPECT_EQ(levels, 10 * number + round + 5);
    if (round % 3 == 0) container.DestroyWindowNow();
    container.LetGo();
    ++done;
  }
  PumpMessages(5);
  OleUninitialize();
}

TEST(SeveralApartments, EightShowAndCloseTheirControls) {
  constexpr int rounds = 5;
  const ScratchFolder folder;
  std::array<int, 8> done = {};
  {
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < done.size(); ++i)
      threads.emplace_back([&, i] { ShowAndClose(folder, static_cast<int>(i), rounds, done[i]); });
    for (std::thread& one : threads) one.join();
  }
  for (const int one : done) EXPECT_EQ(one, rounds);
  EXPECT_TRUE(Ocx::CanUnload());
}

}  // namespace
}  // namespace kw::test
