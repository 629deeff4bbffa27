// A disabled control and its user.

#include <windows.h>

#include <commctrl.h>
#include <olectl.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/InputFixture.h"

namespace kw::test {
namespace {

class Disabled : public InputTest {
protected:
  void TearDown() override {
    container.uiDead = false;
    container.As<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_UIDEAD);
    control->put_Enabled(VARIANT_TRUE);
    InputTest::TearDown();
  }
  // The procedures traced since the trace was forgotten, without those that the clock and the screen start.
  std::set<std::string> Done() const {
    std::ifstream trace(std::filesystem::path(scratch.File(L"FunctionsInExecution.txt")), std::ios::binary);
    std::set<std::string> names;
    for (std::string line; std::getline(trace, line);) names.insert(line.substr(0, line.find('\r')));
    for (const char* name :
         {"UserControl_Paint", "tmrWatchClipBoard_Timer", "tmrDefaultToolsSelection_Timer", "Get IsEditable"})
      names.erase(name);
    return names;
  }
  void Notify(const wchar_t* className, UINT message, WPARAM wParam) const {
    for (const HWND window : ChildWindows(editor, className))
      SendMessageW(GetParent(window), message, wParam, reinterpret_cast<LPARAM>(window));
  }
  // Everything that a user can do, as the system says it to each window.
  void DoEverything() {
    std::vector<HWND> windows = {editor};
    for (const wchar_t* className : {L"KwEditorView", TOOLBARCLASSNAMEW, WC_COMBOBOXW, TRACKBAR_CLASSW, WC_SCROLLBARW,
                                     UPDOWN_CLASSW, WC_BUTTONW}) {
      const auto found = ChildWindows(editor, className);
      windows.insert(windows.end(), found.begin(), found.end());
    }
    for (const HWND window : windows) {
      for (const WPARAM key :
           {WPARAM{VK_DELETE}, WPARAM{VK_ESCAPE}, WPARAM{VK_RETURN}, WPARAM{VK_SPACE}, WPARAM{VK_DOWN}}) {
        SendMessageW(window, WM_KEYDOWN, key, 1);
        SendMessageW(window, WM_CHAR, key, 1);
        SendMessageW(window, WM_KEYUP, key, 1);
      }
      SendMessageW(window, WM_CHAR, 1, 1);  // Ctrl+A
      SendMessageW(window, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
      for (const UINT message : {WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_MOUSEMOVE, WM_LBUTTONUP, WM_LBUTTONDBLCLK,
                                 WM_LBUTTONUP, WM_RBUTTONDOWN, WM_RBUTTONUP})
        SendMessageW(window, message, 0, MAKELPARAM(8, 8));
      EXPECT_NE(GetCapture(), window);
    }
    for (WORD id = 1; id <= 20; ++id) Notify(TOOLBARCLASSNAMEW, WM_COMMAND, MAKEWPARAM(id, 0));
    Notify(WC_BUTTONW, WM_COMMAND, MAKEWPARAM(0, BN_CLICKED));
    Notify(WC_COMBOBOXW, WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE));
    Notify(WC_COMBOBOXW, WM_COMMAND, MAKEWPARAM(0, CBN_EDITCHANGE));
    Notify(WC_SCROLLBARW, WM_VSCROLL, SB_LINEDOWN);
    Notify(TRACKBAR_CLASSW, WM_HSCROLL, TB_LINEDOWN);
    for (const HWND spinner : ChildWindows(editor, UPDOWN_CLASSW)) {
      NMUPDOWN step = {};
      step.hdr.hwndFrom = spinner;
      step.hdr.code = UDN_DELTAPOS;
      step.iDelta = 1;
      SendMessageW(GetParent(spinner), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&step));
    }
    MSG key = {editor, WM_KEYDOWN, VK_DELETE, 1, 0, {}};
    if (container.ActiveObject() != nullptr) container.ActiveObject()->TranslateAccelerator(&key);
    hand.ClickAt(OnCanvas(100, 100));
    hand.ClickAt(ButtonOf(L"Rectangle").Middle());
    PumpMessages(30);
  }
  void ExpectNothingDone() {
    PumpMessages(30);
    ForgetTrace();
    DoEverything();
    EXPECT_EQ(Done(), std::set<std::string>());
  }
};

TEST_F(Disabled, TakesNoInput) {
  control->put_Enabled(VARIANT_FALSE);
  EXPECT_FALSE(IsChild(editor, GetFocus())) << "something kept the keyboard";
  ExpectNothingDone();
}

TEST_F(Disabled, TakesNoInputAfterAnotherActivation) {
  control->put_Enabled(VARIANT_FALSE);
  EXPECT_EQ(container.As<IOleInPlaceObject>()->InPlaceDeactivate(), S_OK);
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  editor = container.ControlWindow();
  canvas = CanvasOf(editor);
  ExpectNothingDone();
}

TEST_F(Disabled, TakesNoInputAfterAnAmbientChange) {
  control->put_Enabled(VARIANT_FALSE);
  for (const DISPID property : {DISPID_UNKNOWN, DISPID_AMBIENT_UIDEAD, DISPID_AMBIENT_FONT})
    container.As<IOleControl>()->OnAmbientPropertyChange(property);
  ExpectNothingDone();
}

TEST_F(Disabled, TakesNoInputWhileTheContainerWantsNone) {
  container.uiDead = true;
  container.As<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_UIDEAD);
  EXPECT_FALSE(IsChild(editor, GetFocus())) << "something kept the keyboard";
  ExpectNothingDone();
  control->put_Enabled(VARIANT_FALSE);
  control->put_Enabled(VARIANT_TRUE);
  ExpectNothingDone();
}

TEST_F(Disabled, TakesItAgainWhenItIsEnabled) {
  control->put_Enabled(VARIANT_FALSE);
  control->put_Enabled(VARIANT_TRUE);
  ForgetTrace();
  Choose(L"Rectangle");
  EXPECT_TRUE(HasTraced("tbrEditingTools_ButtonClick"));
}

TEST_F(Disabled, EndsTheDragThatIsUnderWay) {
  Choose(L"Rectangle");
  hand.MoveTo(OnCanvas(100, 100));
  hand.Press();
  hand.GlideTo(OnCanvas(150, 150));
  ASSERT_EQ(GetCapture(), canvas);
  container.uiDead = true;
  container.As<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_UIDEAD);
  EXPECT_EQ(GetCapture(), nullptr);
  hand.Release();
  PumpMessages(20);
}

}  // namespace
}  // namespace kw::test
