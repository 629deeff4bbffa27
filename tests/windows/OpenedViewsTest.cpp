// What the windows of a form are like when it has been opened.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "scene/CanvasItems.h"
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
  EXPECT_GT(ExpectOrder(Form().editor), 6);
  Form().picFrame.ZOrder();
  ExpectOrder(Form().editor);
}

TEST_F(OpenedViews, EachWindowIsWhereItsControlIsAndShowsWhetherItIsEnabled) {
  Form().kwraTools.SetEnabled(false);
  Form().cmbZoomFactor.SetEnabled(false);
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
