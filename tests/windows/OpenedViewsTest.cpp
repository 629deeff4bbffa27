// What the windows of a form are like when it has been opened.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <string>
#include <vector>

#include "scene/CanvasItems.h"
#include "tests/windows/FailingMemory.h"
#include "tests/windows/TestForm.h"
#include "tests/windows/WholeEditor.h"
#include "windows/base/Gdi.h"
#include "windows/base/Text.h"
#include "windows/views/ControlView.h"

namespace kw::test {
namespace {

using windows::ToRect;
using windows::ToWide;

// The windows of a control's children, from back to front, as the models say and as the system does.
std::vector<HWND> WindowsIn(const Control& holder) {
  std::vector<HWND> windows;
  for (const Control* child : holder.Children()) {
    if (const HWND window = WindowOf(*child)) windows.push_back(window);
  }
  return windows;
}

std::vector<HWND> OrderOf(const std::vector<HWND>& windows) {
  std::vector<HWND> order;
  if (windows.empty()) return order;
  for (HWND one = GetWindow(windows[0], GW_HWNDLAST); one != nullptr; one = GetWindow(one, GW_HWNDPREV)) {
    if (std::ranges::find(windows, one) != windows.end()) order.push_back(one);
  }
  return order;
}

int ExpectOrder(const Control& holder) {
  const std::vector<HWND> windows = WindowsIn(holder);
  EXPECT_EQ(OrderOf(windows), windows) << holder.Name();
  int count = windows.size() > 1 ? 1 : 0;
  for (const Control* child : holder.Children()) count += ExpectOrder(*child);
  return count;
}

class OpenedViews : public WholeEditor {};

TEST_F(OpenedViews, WindowsLieInTheOrderOfTheirControls) {
  ExpectOrder(Form().editor);
  ShowAll();
  EXPECT_GT(ExpectOrder(Form().editor), 6);
  Form().picFrame.ZOrder();
  ExpectOrder(Form().editor);
}

TEST_F(OpenedViews, EachWindowIsWhereItsControlIsAndShowsWhetherItIsEnabled) {
  Form().kwraTools.SetEnabled(false);
  Form().cmbZoomFactor.SetEnabled(false);
  ShowAll();
  window = nullptr;
  window = std::make_unique<windows::EditorWindow>(control->Root(), host, RECT{0, 0, 860, 640});
  int count = 0;
  for (const Control* one : Form().Controls()) {
    const HWND shown = WindowOf(*one);
    if (shown == nullptr) continue;
    ++count;
    EXPECT_EQ(IsWindowEnabled(shown) != FALSE, windows::ControlView::IsEffectivelyEnabled(*one)) << one->Name();
    EXPECT_EQ((GetWindowLongW(shown, GWL_STYLE) & WS_VISIBLE) != 0, one->Visible()) << one->Name();
    const RECT place = PlaceOf(shown);
    const RECT wanted = ToRect(Scale().ToDevice(BoundsOf(*one)));
    EXPECT_EQ(place.left, wanted.left) << one->Name();
    EXPECT_EQ(place.top, wanted.top) << one->Name();
    EXPECT_EQ(place.right, wanted.right) << one->Name();
  }
  EXPECT_GT(count, 40);
}

TEST(OpenedView, AControlThatComesLaterLiesInFront) {
  TestForm form;
  RaisedArea& later = form.panels.Load(1);
  later.SetContainer(&form.root);
  later.SetVisible(true);
  const HWND window = WindowOf(later);
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(GetWindow(window, GW_HWNDFIRST), window);
  ExpectOrder(form.root);
}

BOOL CALLBACK CountWindow(HWND /*window*/, LPARAM count) {
  ++*reinterpret_cast<int*>(count);
  return TRUE;
}

// The form's windows and those in them.
int CountOfWindows(HWND form) {
  int count = 0;
  EnumChildWindows(form, &CountWindow, reinterpret_cast<LPARAM>(&count));
  return count;
}

TEST_F(OpenedViews, WhatIsHiddenHasNoWindowsUntilItIsShown) {
  const RaisedArea& panel = Form().kwraScanningStatus;
  EXPECT_EQ(WindowOf(panel), nullptr);
  EXPECT_EQ(WindowOf(Form().chkCancelScanning), nullptr);
  const int before = CountOfWindows(window->Handle());
  Form().kwraScanningStatus.SetEnabled(true);
  Form().kwraScanningStatus.Move(310, 260, 260, 88);
  Form().lblScanningStatus.SetCaption("Scanning 7");
  Form().chkCancelScanning.SetEnabled(false);
  Form().kwraScanningStatus.SetVisible(true);
  EXPECT_EQ(CountOfWindows(window->Handle()), before + 3);
  EXPECT_EQ(PlaceOf(WindowOf(panel)).left, 310);
  EXPECT_TRUE(IsWindowVisible(WindowOf(Form().chkCancelScanning)));
  EXPECT_FALSE(IsWindowEnabled(WindowOf(Form().chkCancelScanning)));
  EXPECT_EQ(GetParent(WindowOf(Form().chkCancelScanning)), WindowOf(panel));
  ExpectOrder(Form().editor);
  const HWND shown = WindowOf(panel);
  Form().kwraScanningStatus.SetVisible(false);
  EXPECT_EQ(WindowOf(panel), shown);
  EXPECT_FALSE(IsWindowVisible(shown));
}

TEST_F(OpenedViews, WhatCannotBeShownForLackOfMemoryIsShownTheNextTime) {
  const int before = CountOfWindows(window->Handle());
  long failures = 0;
  for (bool isShown = false; !isShown;) {
    {
      const FailingMemory memory(failures + 1);
      try {
        Form().kwraScanningStatus.SetVisible(true);
        isShown = true;
      } catch (const std::bad_alloc&) {
        EXPECT_TRUE(memory.HasFailed());
      }
    }
    if (isShown) break;
    ++failures;
    EXPECT_EQ(CountOfWindows(window->Handle()), before) << failures;
    EXPECT_EQ(WindowOf(Form().kwraScanningStatus), nullptr) << failures;
    EXPECT_EQ(WindowOf(Form().lblScanningStatus), nullptr) << failures;
    Form().kwraScanningStatus.SetVisible(false);
    TestForm::Pump();
  }
  EXPECT_GT(failures, 10);
  EXPECT_EQ(CountOfWindows(window->Handle()), before + 3);
  EXPECT_TRUE(IsWindowVisible(WindowOf(Form().chkCancelScanning)));
  ExpectOrder(Form().editor);
}

// The text of the tool tip that the thread shows.
struct ShownTip {
  std::wstring text;
  static BOOL CALLBACK Look(HWND window, LPARAM self) {
    wchar_t name[40] = {};
    GetClassNameW(window, name, 40);
    if (std::wstring(name) != TOOLTIPS_CLASSW || IsWindowVisible(window) == FALSE) return TRUE;
    wchar_t text[80] = {};
    GetWindowTextW(window, text, 80);
    reinterpret_cast<ShownTip*>(self)->text = text;
    return FALSE;
  }
  static std::wstring Text() {
    ShownTip shown;
    EnumThreadWindows(GetCurrentThreadId(), &Look, reinterpret_cast<LPARAM>(&shown));
    return shown.text;
  }
};

TEST_F(OpenedViews, AControlThatThePointerRestsOnShowsItsTip) {
  Form().kwraTools.SetVisible(true);
  Form().kwraTools.SetEnabled(true);
  // The last one's press opens the colours, which hide the slider.
  for (const Control* one :
       {static_cast<const Control*>(&Form().cmbZoomFactor), static_cast<const Control*>(&Form().sldLineHeight),
        static_cast<const Control*>(&Form().SampleForeGroundColor)}) {
    const HWND shown = WindowOf(*one);
    ASSERT_TRUE(IsWindowVisible(shown) && IsWindowEnabled(shown)) << one->Name();
    POINT at = {4, 4};
    ClientToScreen(shown, &at);
    SetCursorPos(at.x, at.y);
    SendMessageW(shown, WM_MOUSEMOVE, 0, MAKELPARAM(4, 4));
    EXPECT_TRUE(TestForm::PumpUntil([] { return !ShownTip::Text().empty(); })) << one->Name();
    EXPECT_EQ(ShownTip::Text(), ToWide(one->ToolTip())) << one->Name();
    SendMessageW(shown, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(4, 4));
    EXPECT_EQ(ShownTip::Text(), L"") << "a press ends the tip of " << one->Name();
    SendMessageW(shown, WM_LBUTTONUP, 0, MAKELPARAM(4, 4));
    TestForm::Pump();
  }
}

}  // namespace
}  // namespace kw::test
