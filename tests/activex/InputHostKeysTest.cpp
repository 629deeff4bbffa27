// Which keys the control leaves to its host, and what it says of Enter and Escape.

#include <windows.h>

#include <commctrl.h>
#include <olectl.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/activex/EditorWindows.h"
#include "tests/activex/InputFixture.h"
#include "tests/support/win32/BoxAnswerer.h"
#include "tests/support/win32/Soon.h"

namespace kw::test {
namespace {

constexpr WORD Navigation[] = {VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN, VK_HOME, VK_END, VK_PRIOR, VK_NEXT};
constexpr DWORD Both = CTRLINFO_EATS_RETURN | CTRLINFO_EATS_ESCAPE;

// The commands that accelerators sent to the container's window: the key, and 1000 for each of its modifiers.
std::vector<WORD> hostCommands;

LRESULT CALLBACK TakeHostCommands(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_COMMAND && HIWORD(wParam) == 1) hostCommands.push_back(LOWORD(wParam));
  return DefWindowProcW(window, message, wParam, lParam);
}

class InputHostKeys : public InputTest {
protected:
  void SetUp() override {
    InputTest::SetUp();
    SetWindowLongPtrW(container.Window(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&TakeHostCommands));
    std::vector<ACCEL> keys;
    const auto add = [&](WORD key, BYTE modifiers, WORD command) {
      keys.push_back({static_cast<BYTE>(FVIRTKEY | modifiers), key, command});
    };
    for (const WORD key : Navigation) {
      add(key, 0, key);
      add(key, FSHIFT, 1000 + key);
      add(key, FCONTROL, 2000 + key);
    }
    for (const WORD key : {WORD{VK_RETURN}, WORD{VK_ESCAPE}, WORD{VK_DELETE}, WORD{VK_BACK}, WORD{VK_F5}}) {
      add(key, 0, key);
    }
    for (const WORD letter : {WORD{'C'}, WORD{'F'}, WORD{'S'}}) add(letter, FCONTROL, 2000 + letter);
    table = CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
    hand.Use(table);
    Choose(L"Rectangle");
    hand.ClickAt(OnCanvas(300, 250));
    ASSERT_TRUE(hand.Await([&] { return GetFocus() == canvas; }));
    hand.Pump();
    hostCommands.clear();
  }
  void TearDown() override {
    DestroyAcceleratorTable(table);
    InputTest::TearDown();
  }

  // The messages of the key that the host got.
  std::vector<WORD> HostsShareOf(WORD key, WORD held = 0) const {
    hostCommands.clear();
    hand.Strike(key, held);
    hand.Pump();
    return hostCommands;
  }
  bool IsHosts(WORD key, WORD held = 0) const { return !HostsShareOf(key, held).empty(); }
  // The keys among Enter and Escape that the control claims; the container was told if they changed.
  DWORD EatenKeys() {
    hand.Pump();
    CONTROLINFO info = {};
    info.cb = sizeof info;
    EXPECT_EQ(container.As<IOleControl>()->GetControlInfo(&info), S_OK);
    EXPECT_EQ(info.hAccel, nullptr);
    EXPECT_EQ(info.cAccel, 0);
    EXPECT_EQ(container.keyChanges, toldBefore + (info.dwFlags == eatenBefore ? 0 : 1)) << "told once if it changes";
    toldBefore = container.keyChanges;
    eatenBefore = info.dwFlags;
    return info.dwFlags;
  }
  // From here on the notices are counted.
  void ForgetNotices() {
    hand.Pump();
    CONTROLINFO info = {};
    info.cb = sizeof info;
    container.As<IOleControl>()->GetControlInfo(&info);
    toldBefore = container.keyChanges;
    eatenBefore = info.dwFlags;
  }
  HWND ComboWithText() const {
    const auto combos = ChildWindows(editor, WC_COMBOBOXW);
    return combos.empty() ? nullptr : combos[0];
  }

  HACCEL table = nullptr;
  int toldBefore = 0;
  DWORD eatenBefore = 0;
};

TEST_F(InputHostKeys, ArrowsAndTheLikeAreTheHostsWithEveryModifier) {
  for (const HWND window : {canvas, editor}) {
    SetFocus(window);
    hand.Pump();
    for (const WORD key : Navigation) {
      EXPECT_EQ(HostsShareOf(key), std::vector<WORD>{key});
      EXPECT_EQ(HostsShareOf(key, VK_SHIFT), (std::vector<WORD>{static_cast<WORD>(1000 + key)}));
      EXPECT_EQ(HostsShareOf(key, VK_CONTROL), (std::vector<WORD>{static_cast<WORD>(2000 + key)}));
    }
    EXPECT_TRUE(IsHosts(VK_F5));
    EXPECT_TRUE(IsHosts('S', VK_CONTROL));
    EXPECT_TRUE(IsHosts(VK_BACK));
  }
}

TEST_F(InputHostKeys, WhatThePageHasAUseForIsTheControls) {
  for (const HWND window : {canvas, editor}) {
    SetFocus(window);
    hand.Pump();
    const BoxAnswerer user({Once(": clear"), Once(": copy")});
    for (const WORD key : {WORD{VK_RETURN}, WORD{VK_ESCAPE}, WORD{VK_DELETE}}) EXPECT_FALSE(IsHosts(key)) << key;
    for (const WORD letter : {WORD{'C'}, WORD{'F'}}) EXPECT_FALSE(IsHosts(letter, VK_CONTROL)) << letter;
  }
  EXPECT_TRUE(HasTraced("mnuMergeDown_Click"));
}

TEST_F(InputHostKeys, WithoutAPageEveryKeyIsTheHosts) {
  container.LetGo();
  control = Ocx::Create();
  container.Take(control.Get());
  ASSERT_HRESULT_SUCCEEDED(container.DoVerb(OLEIVERB_UIACTIVATE));
  editor = container.ControlWindow();
  ASSERT_TRUE(hand.Await([&] { return IsChild(container.Window(), GetFocus()) != FALSE; }));
  ForgetNotices();
  EXPECT_EQ(EatenKeys(), 0U);
  for (const WORD key : Navigation) EXPECT_TRUE(IsHosts(key)) << key;
  for (const WORD key : {WORD{VK_RETURN}, WORD{VK_ESCAPE}, WORD{VK_DELETE}}) EXPECT_TRUE(IsHosts(key)) << key;
  for (const WORD letter : {WORD{'C'}, WORD{'F'}}) EXPECT_TRUE(IsHosts(letter, VK_CONTROL)) << letter;
  // With the first page they change hands.
  control->put_AppDir(Text(scratch.Path()));
  ForgetNotices();
  {
    const BoxAnswerer user({Once(ListOfPendingWork)});
    control->OpenFile(Text(scratch.WriteTiff(L"one.tif", 1)));
  }
  EXPECT_EQ(EatenKeys(), Both);
  EXPECT_FALSE(IsHosts(VK_RETURN));
}

TEST_F(InputHostKeys, EnterAndEscapeAreTheControlsWhileItsPageHasTheKeyboard) {
  ForgetNotices();
  EXPECT_EQ(EatenKeys(), Both);
  SetFocus(container.Window());
  EXPECT_EQ(EatenKeys(), 0U);
  SetFocus(editor);
  EXPECT_EQ(EatenKeys(), Both);
  SetFocus(canvas);
  EXPECT_EQ(EatenKeys(), Both);
  const auto slider = ChildWindows(editor, TRACKBAR_CLASSW);
  ASSERT_EQ(slider.size(), 1U);
  SetFocus(slider[0]);
  EXPECT_EQ(EatenKeys(), 0U) << "a slider has no use for them";
  SetFocus(canvas);
  EXPECT_EQ(EatenKeys(), Both);
  control->put_Enabled(VARIANT_FALSE);
  EXPECT_EQ(EatenKeys(), 0U);
  control->put_Enabled(VARIANT_TRUE);
  SetFocus(canvas);
  EXPECT_EQ(EatenKeys(), Both);
  control->put_IsEditable(VARIANT_FALSE);
  EXPECT_EQ(EatenKeys(), 0U) << "the canvas is disabled";
  control->put_IsEditable(VARIANT_TRUE);
  SetFocus(canvas);
  EXPECT_EQ(EatenKeys(), Both);
  container.uiDead = true;
  EXPECT_EQ(container.As<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_UIDEAD), S_OK);
  EXPECT_EQ(EatenKeys(), 0U);
  container.uiDead = false;
  EXPECT_EQ(container.As<IOleControl>()->OnAmbientPropertyChange(DISPID_AMBIENT_UIDEAD), S_OK);
  SetFocus(canvas);
  EXPECT_EQ(EatenKeys(), Both);
  EXPECT_HRESULT_SUCCEEDED(container.As<IOleInPlaceObject>()->InPlaceDeactivate());
  EXPECT_EQ(EatenKeys(), 0U) << "without a window";
}

TEST_F(InputHostKeys, EnterAndEscapeAreAToolBarsAndAPalettes) {
  ForgetNotices();
  SetFocus(container.Window());
  EXPECT_EQ(EatenKeys(), 0U);
  SetFocus(ButtonOf(L"Save File").bar);
  EXPECT_EQ(EatenKeys(), Both);
  EXPECT_FALSE(IsHosts(VK_ESCAPE)) << "it gives the keyboard back to the form";
  SetFocus(container.Window());
  EXPECT_EQ(EatenKeys(), 0U);
  // The palette of the foreground colour has the keyboard once it is open.
  const std::vector<HWND> before = VisibleWindows(editor);
  const auto sample = std::ranges::find_if(before, [](HWND window) {
    wchar_t text[40] = {};
    GetWindowTextW(window, static_cast<wchar_t*>(text), 40);
    return std::wstring(static_cast<const wchar_t*>(text)) == L"Foreground Color";
  });
  ASSERT_NE(sample, before.end());
  POINT inside = {3, 3};
  ClientToScreen(*sample, &inside);
  hand.ClickAt(inside);
  HWND palette = nullptr;
  EXPECT_TRUE(hand.Await([&] {
    palette = GetFocus();
    return palette != canvas && palette != editor && IsChild(editor, palette) != FALSE;
  }));
  EXPECT_EQ(std::ranges::count(before, palette), 0) << "a window that was not there before";
  EXPECT_EQ(EatenKeys(), Both);
  EXPECT_FALSE(IsHosts(VK_RETURN));
  EXPECT_FALSE(IsHosts(VK_ESCAPE));
  SetFocus(container.Window());
  EXPECT_EQ(EatenKeys(), 0U);
}

TEST_F(InputHostKeys, EnterAndEscapeAreADroppedDownListsOnly) {
  const HWND combo = ComboWithText();
  ASSERT_NE(combo, nullptr);
  SetFocus(combo);
  ForgetNotices();
  EXPECT_EQ(EatenKeys(), 0U);
  EXPECT_TRUE(IsHosts(VK_ESCAPE));
  SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
  EXPECT_EQ(EatenKeys(), Both);
  EXPECT_FALSE(IsHosts(VK_ESCAPE)) << "it closes the list";
  SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
  EXPECT_EQ(EatenKeys(), 0U);
}

TEST_F(InputHostKeys, WhileTextIsTypedItsFieldHasWhatItUses) {
  ForgetNotices();
  Choose(L"Text");
  DrawFrom({50, 100}, {250, 180});
  ASSERT_TRUE(hand.Await([&] { return GetParent(GetFocus()) == canvas; })) << "a field on the canvas";
  EXPECT_EQ(EatenKeys(), Both);
  for (const WORD key : Navigation) {
    EXPECT_FALSE(IsHosts(key)) << key;
    EXPECT_FALSE(IsHosts(key, VK_SHIFT)) << key;
    EXPECT_FALSE(IsHosts(key, VK_CONTROL)) << key;
  }
  for (const WORD key : {WORD{VK_BACK}, WORD{VK_DELETE}, WORD{VK_RETURN}}) EXPECT_FALSE(IsHosts(key)) << key;
  EXPECT_FALSE(IsHosts('C', VK_CONTROL));
  EXPECT_TRUE(IsHosts('F', VK_CONTROL)) << "a shortcut of the canvas";
  EXPECT_TRUE(IsHosts(VK_F5));
  EXPECT_FALSE(IsHosts(VK_ESCAPE));
  EXPECT_TRUE(hand.Await([&] { return GetFocus() == canvas; })) << "it ended the typing";
  EXPECT_EQ(EatenKeys(), Both);
  EXPECT_TRUE(IsHosts(VK_LEFT));
  OpenPage();  // without the layer
}

TEST_F(InputHostKeys, EnterAndEscapeAreAMenus) {
  const RECT narrow = {0, 0, 200, 400};
  SetFocus(container.Window());
  ASSERT_HRESULT_SUCCEEDED(container.As<IOleInPlaceObject>()->SetObjectRects(&narrow, &container.clip));
  ForgetNotices();
  EXPECT_EQ(EatenKeys(), 0U);
  DWORD whileUp = 0;
  const Soon later([&] {
    whileUp = EatenKeys();
    EndMenu();
  });
  hand.ClickAt(ButtonOf(L"More Buttons").Middle());
  EXPECT_TRUE(hand.Await([&] { return whileUp != 0; }));
  EXPECT_EQ(whileUp, Both);
}

// A host may look for messages of its own by number, and finds those for the windows within its window, too.
TEST_F(InputHostKeys, NoMessageOfTheControlLooksLikeOneOfTheHost) {
  hand.Pump();
  SetFocus(container.Window());
  MSG waiting = {};
  EXPECT_EQ(PeekMessageW(&waiting, container.Window(), WM_APP, 0xBFFF, PM_NOREMOVE), FALSE);
  EXPECT_NE(PeekMessageW(&waiting, editor, WM_USER, WM_APP - 1, PM_NOREMOVE), FALSE) << "one of its own class waits";
  hand.Pump();
}

// A host that leaves its keys to the system's handling of dialogs learns the same there.
TEST_F(InputHostKeys, TheSystemsHandlingOfDialogsIsToldTheSame) {
  const auto codeFor = [](HWND window, WPARAM key) {
    MSG message = {window, WM_KEYDOWN, key, 0, 0, {}};
    return SendMessageW(window, WM_GETDLGCODE, key, reinterpret_cast<LPARAM>(&message));
  };
  for (const HWND window : {canvas, editor}) {
    SetFocus(window);
    EXPECT_NE(codeFor(window, VK_RETURN) & DLGC_WANTMESSAGE, 0);
    EXPECT_NE(codeFor(window, VK_ESCAPE) & DLGC_WANTMESSAGE, 0);
    for (const WORD key : Navigation) {
      EXPECT_EQ(codeFor(window, key) & (DLGC_WANTMESSAGE | DLGC_WANTARROWS), 0) << key;
    }
    EXPECT_NE(codeFor(window, 'Q') & DLGC_WANTCHARS, 0);
  }
  const HWND bar = ButtonOf(L"Save File").bar;
  SetFocus(bar);
  EXPECT_NE(codeFor(bar, VK_RETURN) & DLGC_WANTMESSAGE, 0);
  EXPECT_NE(codeFor(bar, VK_LEFT) & DLGC_WANTARROWS, 0);
}

}  // namespace
}  // namespace kw::test
