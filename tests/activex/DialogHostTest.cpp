// The control in a dialog whose keys the system handles (IsDialogMessage): a host that knows nothing of active objects.

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/Fixture.h"
#include "tests/activex/StrictContainer.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

int defaultPresses = 0;

INT_PTR CALLBACK DialogProcedure(HWND /*dialog*/, UINT message, WPARAM wParam, LPARAM /*lParam*/) {
  if (message == WM_COMMAND && LOWORD(wParam) == IDOK) ++defaultPresses;
  return FALSE;
}

HWND NewDialog() {
  // No items, no menu, class or caption.
  alignas(DWORD) static const struct {
    DLGTEMPLATE fields;
    std::array<WORD, 3> none;
  } description = {{WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 0, 0, 400, 300}, {}};
  return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &description.fields, nullptr, &DialogProcedure, 0);
}

class DialogHost : public ControlTest {
protected:
  void SetUp() override {
    ControlTest::SetUp();
    OpenPage();  // before there is a dialog that looks like a box
    dialog = NewDialog();
    ASSERT_NE(dialog, nullptr);
    container.emplace(dialog);
    before = AddItem(WC_EDITW, 0, 0);
    after = AddItem(WC_EDITW, 0, 0);
    AddItem(WC_BUTTONW, BS_DEFPUSHBUTTON, IDOK);
    container->place = {0, 30, 650, 450};
    container->Take(control.Get());
    ASSERT_EQ(container->DoVerb(OLEIVERB_INPLACEACTIVATE), S_OK);
    editor = container->ControlWindow();
    // In its place among the items: the order of the Tab key.
    SetWindowPos(editor, before, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SetForegroundWindow(dialog);
    SetFocus(before);
    Loop(20);
    defaultPresses = 0;
  }
  void TearDown() override {
    Hold({});
    if (container) container->LetGo();
    container.reset();
    ControlTest::TearDown();
  }
  void OpenPage() {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    const auto white = [](int, int) { return RGB(255, 255, 255); };
    ASSERT_EQ(control->OpenFile(Text(scratch.WriteBitmap(L"page.bmp", 300, 200, white))), S_OK);
  }
  HWND AddItem(const wchar_t* className, DWORD style, INT_PTR id) const {
    return CreateWindowExW(0, className, L"item", WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, 0, 0, 60, 24, dialog,
                           reinterpret_cast<HMENU>(id), nullptr, nullptr);
  }
  // The host's loop.
  void Loop(DWORD milliseconds = 0) const {
    const DWORD start = GetTickCount();
    do {
      MSG message = {};
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        if (IsDialogMessageW(dialog, &message) != FALSE) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
      }
      if (milliseconds > 0) MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    } while (GetTickCount() - start < milliseconds);
  }
  // The keys that are down, as those of a user who goes on with the Tab key.
  static void Hold(std::initializer_list<int> held) {
    std::array<BYTE, 256> keys = {};
    for (const int key : held) keys.at(static_cast<std::size_t>(key)) = 0x80;
    SetKeyboardState(keys.data());
  }
  void Strike(WPARAM key) const {
    PostMessageW(GetFocus(), WM_KEYDOWN, key, 1);
    Loop();
    PostMessageW(GetFocus(), WM_KEYUP, key, static_cast<LPARAM>(0xC0000001));
    Loop();
  }
  // The field of a text layer that the user drags open.
  HWND NewTextField(HWND canvas) const {
    Loop(1300);  // until the text tool is chosen
    SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(20, 20));
    for (const int at : {60, 120, 200}) SendMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(at, at / 2));
    SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(200, 100));
    Loop(50);
    return GetFocus();
  }
  // The windows that had the focus on the way from one item to another one.
  std::vector<HWND> WayTo(HWND end, bool isBackward) const {
    std::vector<HWND> way;
    if (isBackward) {
      Hold({VK_TAB, VK_SHIFT});
    } else {
      Hold({VK_TAB});
    }
    for (int i = 0; i < 60; ++i) {
      Strike(VK_TAB);
      if (GetFocus() == end) return way;
      way.push_back(GetFocus());
    }
    ADD_FAILURE() << "the focus does not leave the control";
    return way;
  }

  HWND dialog = nullptr;
  std::optional<StrictContainer> container;
  HWND before = nullptr;
  HWND after = nullptr;
  HWND editor = nullptr;
};

TEST_F(DialogHost, TabGoesThroughTheControlAndBack) {
  const std::vector<HWND> way = WayTo(after, false);
  EXPECT_GT(way.size(), 2U);
  for (const HWND window : way) EXPECT_TRUE(IsChild(editor, window)) << "the focus is elsewhere";
  EXPECT_NE(container->ActiveObject(), nullptr) << "the control did not hear that it has the focus";
  std::vector<HWND> back = WayTo(before, true);
  std::ranges::reverse(back);
  EXPECT_EQ(back, way);
  // In the order in which a container of active objects goes on.
  Hold({});
  SetFocus(way[0]);
  for (std::size_t i = 1; i < way.size(); ++i) {
    MSG tab = {GetFocus(), WM_KEYDOWN, VK_TAB, 1, 0, {}};
    EXPECT_EQ(container->As<IOleInPlaceActiveObject>()->TranslateAccelerator(&tab), S_OK);
    EXPECT_EQ(GetFocus(), way[i]);
  }
}

TEST_F(DialogHost, EnterTypesALineIntoATextLayer) {
  const HWND canvas = CanvasOf(editor);
  const HWND field = NewTextField(canvas);
  ASSERT_EQ(GetParent(field), canvas) << "no field to type into";
  for (const WPARAM key : {WPARAM{'A'}, WPARAM{VK_RETURN}, WPARAM{'B'}}) Strike(key);
  wchar_t text[20] = {};
  GetWindowTextW(field, static_cast<wchar_t*>(text), 20);
  EXPECT_STREQ(static_cast<const wchar_t*>(text), L"a\r\nb");
  EXPECT_EQ(defaultPresses, 0);
  // Escape ends the typing and closes no dialog.
  Strike(VK_ESCAPE);
  EXPECT_EQ(GetFocus(), canvas);
  EXPECT_NE(IsWindowVisible(dialog), FALSE);
}

TEST_F(DialogHost, TabLeavesATextLayer) {
  const HWND canvas = CanvasOf(editor);
  const HWND field = NewTextField(canvas);
  ASSERT_EQ(GetParent(field), canvas) << "no field to type into";
  Strike(VK_TAB);
  EXPECT_NE(GetFocus(), field);
  EXPECT_NE(GetFocus(), canvas);
}

TEST_F(DialogHost, EnterOnAnItemOfTheHostPressesItsDefaultButton) {
  Strike(VK_RETURN);
  EXPECT_EQ(defaultPresses, 1);
  SetFocus(CanvasOf(editor));
  Loop(20);
  Strike(VK_RETURN);
  EXPECT_EQ(defaultPresses, 1) << "the page has a use for it";
}

}  // namespace
}  // namespace kw::test
