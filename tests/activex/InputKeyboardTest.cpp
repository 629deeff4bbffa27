// Keys of a user that reach the real control through the loop of its container.

#include <algorithm>
#include <string>
#include <vector>

#include "tests/activex/InputFixture.h"
#include "tests/activex/OtherProgram.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

constexpr WORD SaveCommand = 101;
constexpr WORD CopyCommand = 102;
constexpr WORD RefreshCommand = 103;

// The commands that accelerators sent to the container's window.
std::vector<WORD> commands;

LRESULT CALLBACK TakeCommands(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_COMMAND && HIWORD(wParam) == 1) commands.push_back(LOWORD(wParam));
  return DefWindowProcW(window, message, wParam, lParam);
}

class InputKeyboard : public InputTest {
protected:
  void SetUp() override {
    OtherProgram::LeaveOnTheClipboard(L"empty");
    InputTest::SetUp();
    commands.clear();
    SetWindowLongPtrW(container.Window(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&TakeCommands));
    ACCEL keys[] = {{FVIRTKEY | FCONTROL, 'S', SaveCommand},
                    {FVIRTKEY | FCONTROL, 'C', CopyCommand},
                    {FVIRTKEY, VK_F5, RefreshCommand}};
    table = CreateAcceleratorTableW(static_cast<ACCEL*>(keys), 3);
    hand.Use(table);
    // The keyboard goes where the user clicks.
    Choose(L"Rectangle");
    hand.ClickAt(OnCanvas(300, 250));
    ASSERT_TRUE(hand.Await([&] { return GetFocus() == canvas; }));
    ForgetTrace();
  }
  void TearDown() override {
    DestroyAcceleratorTable(table);
    InputTest::TearDown();
  }
  // The prompt of the box that a key brings up, or nothing.
  std::string BoxOf(WORD key, WORD held = 0) {
    const BoxAnswerer user({AnyBox()});
    hand.Strike(key, held);
    // The key after it has been handled: the one to look at has been, too.
    hand.Pump();
    const std::vector<std::string> boxes = user.Boxes();
    if (boxes.empty()) return {};
    EXPECT_EQ(boxes.size(), 1U);
    return boxes[0].substr(boxes[0].find(": ") + 2);
  }

  HACCEL table = nullptr;
};

TEST_F(InputKeyboard, ShortcutsRunTheCommandsOfTheirButtonsWhileTheseAreEnabled) {
  EXPECT_EQ(BoxOf('C', VK_CONTROL), "copy");
  EXPECT_TRUE(HasTraced("tbrBasicTools_ButtonClick")) << "as a click on the button";
  EXPECT_EQ(BoxOf('X', VK_CONTROL), "cut");
  EXPECT_EQ(BoxOf(VK_DELETE), "clear");
  EXPECT_EQ(BoxOf('Z', VK_CONTROL), "") << "undo is disabled";
  EXPECT_EQ(BoxOf('Y', VK_CONTROL), "") << "redo is disabled";
  EXPECT_EQ(BoxOf('V', VK_CONTROL), "") << "the clipboard is empty";
  OtherProgram::LeaveOnTheClipboard(L"image");
  RedrawWindow(editor, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
  EXPECT_EQ(BoxOf('V', VK_CONTROL), "mnuPasteSelectedArea_Click");
  OtherProgram::LeaveOnTheClipboard(L"empty");
}

TEST_F(InputKeyboard, DeleteActsWhenTheKeyComesUp) {
  const BoxAnswerer user({Once(": clear")});
  hand.Hold(VK_DELETE);
  EXPECT_TRUE(hand.Await([&] { return HasTraced("picCanvas_KeyDown"); }));
  EXPECT_TRUE(user.Boxes().empty());
  hand.LetGo(VK_DELETE);
  EXPECT_TRUE(hand.Await([&] { return user.Boxes().size() == 1; }));
  for (const std::string& box : user.Boxes()) EXPECT_TRUE(box.ends_with(": clear")) << box;
}

TEST_F(InputKeyboard, EnterAndCtrlMMergeAndCtrlASelectsAll) {
  hand.Strike(VK_RETURN);
  EXPECT_TRUE(hand.Await([&] { return HasTraced("mnuMergeDown_Click"); }));
  ForgetTrace();
  hand.Strike('M', VK_CONTROL);
  EXPECT_TRUE(hand.Await([&] { return HasTraced("mnuMergeDown_Click"); }));
  hand.Strike('A', VK_CONTROL);
  EXPECT_TRUE(hand.Await([&] { return HasTraced("mnuSelectAll_Click"); }));
}

TEST_F(InputKeyboard, EscapeRebuildsTheView) {
  hand.Strike(VK_ESCAPE);
  EXPECT_TRUE(hand.Await([&] { return HasTraced("UpdateAndZoom"); }));
}

TEST_F(InputKeyboard, TheControlIsAskedBeforeTheContainersAcceleratorsForItsOwnKeysOnly) {
  hand.Strike('S', VK_CONTROL);
  hand.Strike(VK_F5);
  EXPECT_EQ(BoxOf('C', VK_CONTROL), "copy");
  EXPECT_EQ(commands, (std::vector<WORD>{SaveCommand, RefreshCommand}));
  EXPECT_TRUE(HasTraced("picCanvas_KeyPress"));
}

TEST_F(InputKeyboard, TheContainerGetsTheTabKeyAfterTheLastControl) {
  SetFocus(editor);  // before the first one
  // The container is asked for the release of the key in any case, and for the press if the control does not take
  // it.
  bool isContainersTurn = false;
  std::vector<HWND> visited;
  while (!isContainersTurn && visited.size() < 50) {
    visited.push_back(GetFocus());
    container.calls.clear();
    hand.Strike(VK_TAB);
    isContainersTurn = std::ranges::count(container.calls, "TranslateAccelerator 0") > 1;
  }
  EXPECT_TRUE(isContainersTurn);
  EXPECT_GT(visited.size(), 2U);
  std::ranges::sort(visited);
  EXPECT_EQ(std::ranges::adjacent_find(visited), visited.end()) << "the keyboard went round";
}

TEST_F(InputKeyboard, WithoutAPageEveryKeyIsIgnored) {
  container.LetGo();
  control = Ocx::Create();
  container.Take(control.Get());
  ASSERT_HRESULT_SUCCEEDED(container.DoVerb(OLEIVERB_UIACTIVATE));
  editor = container.ControlWindow();
  ASSERT_TRUE(hand.Await([&] { return IsChild(container.Window(), GetFocus()) != FALSE; }));
  ForgetTrace();
  for (const char key : std::string("ABCFMVXYZ")) EXPECT_EQ(BoxOf(static_cast<WORD>(key), VK_CONTROL), "") << key;
  for (const WORD key : {WORD{VK_ESCAPE}, WORD{VK_RETURN}, WORD{VK_DELETE}}) EXPECT_EQ(BoxOf(key), "");
  EXPECT_TRUE(HasTraced("picCanvas_KeyPress")) << "they did come";
  EXPECT_FALSE(HasTraced("UpdateAndZoom"));
  EXPECT_FALSE(HasTraced("mnuMergeDown_Click"));
  EXPECT_FALSE(HasTraced("mnuSelectAll_Click"));
  EXPECT_FALSE(HasTraced("BringForward"));
  EXPECT_FALSE(HasTraced("SendBackward"));
}

}  // namespace
}  // namespace kw::test
