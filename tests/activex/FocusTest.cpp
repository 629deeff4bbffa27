// The focus that comes to the control without a click, as containers and the system give it.

#include <windows.h>

#include <olectl.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class Focus : public ControlTest {
protected:
  void SetUp() override {
    ControlTest::SetUp();
    SetForegroundWindow(container.Window());
    SetFocus(container.Window());
    container.place = {0, 0, 650, 450};
    container.Take(control.Get());
    ASSERT_EQ(container.DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
    editor = container.ControlWindow();
    PumpMessages(20);
    container.calls.clear();
  }
  void OpenPage() {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    ASSERT_EQ(control->OpenFile(
                  Text(scratch.WriteBitmap(L"page.bmp", 300, 200, [](int, int) { return RGB(255, 255, 255); }))),
              S_OK);
  }
  bool IsInside() const { return GetFocus() == editor || IsChild(editor, GetFocus()) != FALSE; }

  StrictContainer container;
  HWND editor = nullptr;
};

const std::vector<std::string> UiActivation = {"OnUIActivate", "SetActiveObject", "OnFocus"};

TEST_F(Focus, OnTheControlsWindowMakesItTheActiveObjectAtOnce) {
  SetFocus(editor);
  EXPECT_EQ(container.calls, UiActivation);
  EXPECT_NE(container.ActiveObject(), nullptr);
  EXPECT_EQ(GetFocus(), editor);
  PumpMessages(20);
  EXPECT_EQ(container.calls, UiActivation);
  container.LetGo();
}

TEST_F(Focus, OnAWindowWithinItDoesSoThroughTheMessageLoop) {
  OpenPage();
  container.calls.clear();
  const HWND canvas = CanvasOf(editor);
  ASSERT_NE(canvas, nullptr);
  SetFocus(canvas);
  PumpMessages(20);
  EXPECT_EQ(container.calls, UiActivation);
  EXPECT_EQ(GetFocus(), canvas) << "it stays where it was given";
  container.LetGo();
}

TEST_F(Focus, ThatLeftAgainActivatesNothing) {
  OpenPage();
  container.calls.clear();
  SetFocus(CanvasOf(editor));
  SetFocus(container.Window());
  PumpMessages(20);
  EXPECT_EQ(container.calls, std::vector<std::string>());
  container.LetGo();
}

// A container may deactivate the control and leave the focus where it is.
TEST_F(Focus, ThatStaysDoesNotActivateItAgain) {
  OpenPage();
  ASSERT_EQ(container.DoVerb(OLEIVERB_UIACTIVATE), S_OK);
  EXPECT_TRUE(IsInside());
  EXPECT_EQ(container.As<IOleInPlaceObject>()->UIDeactivate(), S_OK);
  container.calls.clear();
  control->put_IsEditable(VARIANT_FALSE);
  control->put_IsEditable(VARIANT_TRUE);
  PumpMessages(50);
  EXPECT_EQ(container.calls, std::vector<std::string>());
  // It comes back after another window had it.
  SetFocus(container.Window());
  PumpMessages(20);
  SetFocus(editor);
  EXPECT_EQ(container.calls, UiActivation);
  container.LetGo();
}

TEST_F(Focus, GoesToTheFirstStopOrTheLastOneIfTheContainerHandsOverTheTabKey) {
  OpenPage();
  RECT place = {0, 0, 650, 450};
  MSG tab = {container.Window(), WM_KEYDOWN, VK_TAB, 1, 0, {}};
  std::array<BYTE, 256> keys = {};
  std::vector<HWND> entered;
  for (const bool isBackward : {false, true}) {
    keys[VK_SHIFT] = isBackward ? 0x80 : 0;
    SetKeyboardState(keys.data());
    SetFocus(container.Window());
    EXPECT_EQ(container.As<IOleInPlaceObject>()->UIDeactivate(), S_OK);
    EXPECT_EQ(container.As<IOleObject>()->DoVerb(OLEIVERB_UIACTIVATE, &tab, &container, 0, container.Window(), &place),
              S_OK);
    EXPECT_TRUE(IsInside());
    EXPECT_NE(GetFocus(), editor);
    entered.push_back(GetFocus());
  }
  EXPECT_NE(entered[0], entered[1]);
  // From there the key leads out.
  MSG further = {GetFocus(), WM_KEYDOWN, VK_TAB, 1, 0, {}};
  keys[VK_SHIFT] = 0;
  SetKeyboardState(keys.data());
  EXPECT_EQ(container.ActiveObject()->TranslateAccelerator(&further), S_FALSE);
  // The control is the active object still, and the container moves the focus back into it.
  SetFocus(container.Window());
  EXPECT_EQ(container.As<IOleObject>()->DoVerb(OLEIVERB_UIACTIVATE, &tab, &container, 0, container.Window(), &place),
            S_OK);
  EXPECT_EQ(GetFocus(), entered[0]);
  container.LetGo();
}

TEST_F(Focus, IsRefusedByAContainerThatWantsNoActiveObject) {
  container.onUiActivate = [] { return E_FAIL; };
  SetFocus(editor);
  PumpMessages(20);
  EXPECT_EQ(container.ActiveObject(), nullptr);
  EXPECT_EQ(GetFocus(), editor);
  container.onUiActivate = {};
  container.LetGo();
}

TEST_F(Focus, MayCostTheControlItsWindow) {
  container.onUiActivate = [&] {
    container.DestroyWindowNow();
    return S_OK;
  };
  SetFocus(editor);
  EXPECT_EQ(IsWindow(editor), FALSE);
  PumpMessages(20);
  container.onUiActivate = {};
  container.LetGo();
}

TEST_F(Focus, MayCostTheControlItsLife) {
  container.onUiActivate = [&] {
    container.LetGo();
    control.Reset();
    return E_FAIL;
  };
  SetFocus(editor);
  EXPECT_EQ(IsWindow(editor), FALSE);
  PumpMessages(20);
  EXPECT_TRUE(Ocx::CanUnload());
}

}  // namespace
}  // namespace kw::test
