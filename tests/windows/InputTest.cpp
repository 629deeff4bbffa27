// What the user does reaches the models' events.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/windows/TestForm.h"

namespace kw::test {
namespace {

TEST(Input, AButtonOfAToolBarIsClickedByItsKey) {
  TestForm form;
  std::vector<std::string> keys;
  form.bar.ButtonClick.Connect([&](const std::string& key) { keys.push_back(key); });
  RECT place = {};
  SendMessageW(WindowOf(form.bar), TB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&place));
  ClickAt(WindowOf(form.bar), place.left + 5, place.top + 5);
  EXPECT_EQ(keys, std::vector<std::string>{"Save"});
}

TEST(Input, TheRealMouseClicksAButton) {
  TestForm form;
  int clicks = 0;
  form.bar.ButtonClick.Connect([&](const std::string&) { ++clicks; });
  SetForegroundWindow(form.host);
  RECT place = {};
  GetWindowRect(WindowOf(form.bar), &place);
  SetCursorPos(place.left + 10, place.top + 10);
  INPUT press[2] = {};
  press[0].type = press[1].type = INPUT_MOUSE;
  press[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
  press[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
  ASSERT_EQ(SendInput(2, press, sizeof(INPUT)), 2U);
  EXPECT_TRUE(TestForm::PumpUntil([&] { return clicks == 1; }));
}

TEST(Input, ACheckButtonShowsWhatTheModelMadeOfTheClick) {
  TestForm form;
  RECT place = {};
  SendMessageW(WindowOf(form.bar), TB_GETITEMRECT, 4, reinterpret_cast<LPARAM>(&place));
  ClickAt(WindowOf(form.bar), place.left + 5, place.top + 5);
  EXPECT_TRUE(form.bar.ButtonOf("Show").pressed);
  EXPECT_NE(SendMessageW(WindowOf(form.bar), TB_ISBUTTONCHECKED, 5, 0), 0);
  // A handler that takes the press back is obeyed.
  form.bar.ButtonClick.Connect([&](const std::string& key) { form.bar.SetButtonPressed(key, true); });
  ClickAt(WindowOf(form.bar), place.left + 5, place.top + 5);
  EXPECT_NE(SendMessageW(WindowOf(form.bar), TB_ISBUTTONCHECKED, 5, 0), 0);
}

TEST(Input, ACommandWithoutTheMousePressesItsButtonToo) {
  TestForm form;
  for (const int id : {2, 3, 3}) {
    SendMessageW(GetParent(WindowOf(form.tools)), WM_COMMAND, static_cast<WPARAM>(id),
                 reinterpret_cast<LPARAM>(WindowOf(form.tools)));
    for (int button = 1; button <= 8; ++button) {
      EXPECT_EQ(SendMessageW(WindowOf(form.tools), TB_ISBUTTONCHECKED, static_cast<WPARAM>(button), 0) != 0,
                button == id);
    }
  }
}

bool isBarThrough = false;

LRESULT CALLBACK WatchForTheEndOfAClick(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR /*id*/,
                                        DWORD_PTR /*data*/) {
  if (message == WM_NOTIFY && reinterpret_cast<const NMHDR*>(lParam)->code == static_cast<UINT>(NM_CLICK)) {
    isBarThrough = true;
  }
  return DefSubclassProc(window, message, wParam, lParam);
}

// The system tells of the end of a click behind the command, still from within the bar.
TEST(Input, AClickRunsWhenTheBarItselfIsThroughWithIt) {
  TestForm form;
  isBarThrough = false;
  bool wasThrough = false;
  form.bar.ButtonClick.Connect([&](const std::string&) { wasThrough = isBarThrough; });
  const HWND holder = GetParent(WindowOf(form.bar));
  SetWindowSubclass(holder, &WatchForTheEndOfAClick, 77, 0);
  ClickAt(WindowOf(form.bar), 10, 10);
  RemoveWindowSubclass(holder, &WatchForTheEndOfAClick, 77);
  EXPECT_TRUE(isBarThrough);
  EXPECT_TRUE(wasThrough);
}

TEST(Input, ADisabledButtonIsNotPressedByAClick) {
  TestForm form;
  form.tools.SetButtonEnabled("Pen", false);
  RECT place = {};
  SendMessageW(WindowOf(form.tools), TB_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&place));
  ClickAt(WindowOf(form.tools), place.left + 5, place.top + 5);
  EXPECT_FALSE(form.tools.ButtonOf("Pen").pressed);
  EXPECT_EQ(SendMessageW(WindowOf(form.tools), TB_ISBUTTONCHECKED, 2, 0), 0);
}

TEST(Input, APressedGroupButtonStaysPressedWhenItIsClickedAgain) {
  TestForm form;
  RECT place = {};
  SendMessageW(WindowOf(form.tools), TB_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&place));
  for (int i = 0; i < 2; ++i) {
    ClickAt(WindowOf(form.tools), place.left + 5, place.top + 5);
    EXPECT_TRUE(form.tools.ButtonOf("Pen").pressed);
    EXPECT_NE(SendMessageW(WindowOf(form.tools), TB_ISBUTTONCHECKED, 2, 0), 0);
  }
}

TEST(Input, SliderScrollBarSpinnerAndTickMoveTheirModels) {
  TestForm form;
  SendMessageW(WindowOf(form.slider), WM_KEYDOWN, VK_RIGHT, 0);
  EXPECT_EQ(form.slider.Value(), 3);
  const HWND root = form.window->Handle();
  const auto bar = reinterpret_cast<LPARAM>(WindowOf(form.vertical));
  SendMessageW(root, WM_VSCROLL, SB_LINEDOWN, bar);
  EXPECT_EQ(form.vertical.Value(), 1);
  SendMessageW(root, WM_VSCROLL, SB_BOTTOM, bar);
  EXPECT_EQ(form.vertical.Value(), 300);
  SendMessageW(root, WM_VSCROLL, SB_PAGEUP, bar);
  EXPECT_EQ(form.vertical.Value(), 0);
  SendMessageW(WindowOf(form.spinner), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(8, 4));
  SendMessageW(WindowOf(form.spinner), WM_LBUTTONUP, 0, MAKELPARAM(8, 4));
  EXPECT_EQ(form.spinner.Value(), 1);
  ClickAt(WindowOf(form.tick), 6, 8);
  EXPECT_TRUE(form.tick.Value());
  EXPECT_EQ(SendMessageW(WindowOf(form.tick), BM_GETCHECK, 0, 0), BST_CHECKED);
}

TEST(Input, TheWheelScrollsFromAnywhereOnTheForm) {
  TestForm form;
  SendMessageW(WindowOf(form.canvas), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
  EXPECT_EQ(form.vertical.Value(), 48);
  SendMessageW(WindowOf(form.canvas), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
  EXPECT_EQ(form.vertical.Value(), 0);
}

TEST(Input, ChoosingInAComboIsAClickOfTheModel) {
  TestForm form;
  int clicks = 0;
  form.combo.Click.Connect([&] { ++clicks; });
  SendMessageW(WindowOf(form.combo), WM_KEYDOWN, VK_DOWN, 0);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(form.combo.Text(), "200 %");
}

TEST(Input, MousePositionsAreInTheUnitOfTheContainer) {
  TestForm form;
  std::vector<float> seen;
  const auto note = [&](std::int16_t button, std::int16_t, float x, float y) {
    seen = {static_cast<float>(button), x, y};
  };
  form.panel.MouseDown.Connect(note);
  form.close.MouseDown.Connect(note);
  ClickAt(WindowOf(form.panel), 10, 8);
  EXPECT_EQ(seen, (std::vector<float>{1, 10, 8})) << "a child of the form: pixels";
  SendMessageW(WindowOf(form.close), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(3, 2));
  SendMessageW(WindowOf(form.close), WM_RBUTTONUP, 0, MAKELPARAM(3, 2));
  EXPECT_EQ(seen, (std::vector<float>{2, 45, 30})) << "a child of a frame in twips: twips";
}

TEST(Input, ALayerGetsTheMouseInItsOwnCoordinatesUntilTheButtonIsUp) {
  TestForm form;
  TransparentPicture& layer = form.layers.Load(1);
  layer.SetPicture(Plain(20, 20, {200, 10, 10}));
  layer.Move(50, 60, 20, 20);
  layer.SetVisible(true);
  std::vector<std::string> events;
  const auto note = [&](const char* what) {
    return [&events, what](std::int16_t, std::int16_t, float x, float y) {
      events.push_back(what + std::to_string(static_cast<int>(x)) + "," + std::to_string(static_cast<int>(y)));
    };
  };
  layer.MouseDown.Connect(note("down "));
  layer.MouseMove.Connect(note("move "));
  layer.MouseUp.Connect(note("up "));
  form.page.MouseMove.Connect(note("page "));
  const HWND canvas = WindowOf(form.canvas);
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(55, 67));
  SendMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(200, 100));
  SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(200, 100));
  SendMessageW(canvas, WM_MOUSEMOVE, 0, MAKELPARAM(201, 101));
  EXPECT_EQ(events, (std::vector<std::string>{"down 5,7", "move 150,40", "up 150,40", "page 201,101"}));
}

TEST(Input, ABorderSaysHowFarItWasDragged) {
  TestForm form;
  float distance = 0;
  form.border.MouseUp.Connect([&](std::int16_t, std::int16_t, float, float y) { distance = y; });
  const HWND canvas = WindowOf(form.canvas);
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(30, 201));
  SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(30, 191));
  EXPECT_EQ(distance, -150) << "ten pixels in twips";
}

TEST(Input, ADoubleClickIsNoSecondClick) {
  TestForm form;
  int clicks = 0;
  int doubleClicks = 0;
  form.sample.Click.Connect([&] { ++clicks; });
  form.sample.DblClick.Connect([&] { ++doubleClicks; });
  const HWND window = WindowOf(form.sample);
  ClickAt(window, 3, 3);
  SendMessageW(window, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(3, 3));
  SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(doubleClicks, 1);
}

TEST(Input, OnTheCanvasTheSecondPressOfADoubleClickIsAPress) {
  TestForm form;
  int presses = 0;
  form.page.MouseDown.Connect([&](std::int16_t, std::int16_t, float, float) { ++presses; });
  const HWND canvas = WindowOf(form.canvas);
  ClickAt(canvas, 30, 30);
  SendMessageW(canvas, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(30, 30));
  SendMessageW(canvas, WM_LBUTTONUP, 0, MAKELPARAM(30, 30));
  EXPECT_EQ(presses, 2);
}

TEST(Input, TheCanvasLetsGoOfTheMouseWhenAnotherWindowBecomesActive) {
  TestForm form;
  int losses = 0;
  form.canvas.MouseLost.Connect([&] { ++losses; });
  const HWND canvas = WindowOf(form.canvas);
  SetFocus(canvas);
  SendMessageW(canvas, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(30, 30));
  EXPECT_EQ(GetCapture(), canvas);
  SetFocus(WindowOf(form.slider));
  EXPECT_EQ(losses, 0) << "the keyboard stays in the window";
  SetFocus(canvas);
  const HWND other = TestForm::HostWindow();
  SetActiveWindow(other);
  EXPECT_EQ(losses, 1);
  EXPECT_EQ(GetCapture(), nullptr);
  DestroyWindow(other);
}

TEST(Input, AReleaseOutsideIsNoClickAndADisabledControlHearsNothing) {
  TestForm form;
  int events = 0;
  form.sample.Click.Connect([&] { ++events; });
  const HWND window = WindowOf(form.sample);
  SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
  SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(300, 3));
  form.panel.SetEnabled(false);
  ClickAt(window, 3, 3);
  EXPECT_EQ(events, 0);
}

TEST(Input, KeysReachTheCanvasThatHasTheFocus) {
  TestForm form;
  std::vector<int> codes;
  form.canvas.KeyDown.Connect([&](std::int16_t code, std::int16_t) { codes.push_back(code); });
  form.canvas.KeyPress.Connect([&](std::int16_t character) { codes.push_back(character); });
  form.canvas.KeyUp.Connect([&](std::int16_t code, std::int16_t) { codes.push_back(code); });
  form.canvas.KeyUse.Connect([](std::int16_t code, std::int16_t, bool& isInUse) { isInUse = code == VK_DELETE; });
  SetForegroundWindow(form.host);
  ClickAt(WindowOf(form.canvas), 20, 20);
  EXPECT_EQ(form.root.ActiveControl(), &form.canvas);
  MSG key = {WindowOf(form.canvas), WM_KEYDOWN, VK_DELETE, 0, 0, {}};
  EXPECT_TRUE(form.window->TranslateAccelerator(key));
  SendMessageW(WindowOf(form.canvas), WM_CHAR, 3, 0);
  SendMessageW(WindowOf(form.canvas), WM_KEYUP, VK_DELETE, 0);
  EXPECT_EQ(codes, (std::vector<int>{VK_DELETE, 3, VK_DELETE}));
  for (const WPARAM left : {VK_F5, VK_LEFT, VK_RETURN}) {
    MSG other = {WindowOf(form.canvas), WM_KEYDOWN, left, 0, 0, {}};
    EXPECT_FALSE(form.window->TranslateAccelerator(other)) << "left to the host";
  }
  MSG foreign = {form.host, WM_KEYDOWN, VK_DELETE, 0, 0, {}};
  EXPECT_FALSE(form.window->TranslateAccelerator(foreign));
}

TEST(Input, TheFocusFollowsProceduresAndTheTabKey) {
  TestForm form;
  int lost = 0;
  form.canvas.LostFocus.Connect([&] { ++lost; });
  form.canvas.SetFocus();
  EXPECT_EQ(GetFocus(), WindowOf(form.canvas));
  form.slider.SetFocus();
  EXPECT_EQ(GetFocus(), WindowOf(form.slider));
  EXPECT_EQ(lost, 1);
  MSG tab = {GetFocus(), WM_KEYDOWN, VK_TAB, 0, 0, {}};
  EXPECT_TRUE(form.window->TranslateAccelerator(tab));
  EXPECT_EQ(form.root.ActiveControl(), &form.tick);
  EXPECT_EQ(GetFocus(), WindowOf(form.tick));
}

TEST(Input, KeysGoToTheFormWhenWhatHadTheFocusIsHidden) {
  TestForm form;
  std::vector<int> keys;
  int lost = 0;
  form.root.KeyPress.Connect([&](std::int16_t character) { keys.push_back(character); });
  form.slider.LostFocus.Connect([&] { ++lost; });
  for (Control* hidden : {static_cast<Control*>(&form.slider), form.slider.Container()}) {
    form.slider.SetFocus();
    hidden->SetVisible(false);
    EXPECT_EQ(GetFocus(), form.window->Handle());
    EXPECT_NE(form.root.ActiveControl(), &form.slider);
    SendMessageW(GetFocus(), WM_CHAR, 26, 0);
    hidden->SetVisible(true);
  }
  EXPECT_EQ(keys, (std::vector<int>{26, 26}));
  EXPECT_EQ(lost, 2);
}

TEST(Input, AnEntryOfAPopUpMenuIsChosen) {
  TestForm form;
  int chosen = 0;
  form.entry.Click.Connect([&] { ++chosen; });
  const HWND owner = form.window->Handle();
  std::thread user([owner] {
    const auto isUp = [] { return FindWindowW(L"#32768", nullptr) != nullptr; };
    for (int i = 0; i < 300 && !isUp(); ++i) Sleep(10);
    PostMessageW(owner, WM_KEYDOWN, VK_DOWN, 0);
    PostMessageW(owner, WM_KEYDOWN, VK_RETURN, 0);
    for (int i = 0; i < 200 && isUp(); ++i) Sleep(10);
    PostMessageW(owner, WM_CANCELMODE, 0, 0);  // a menu that is still up would wait for ever
  });
  form.menu.PopUp();
  user.join();
  EXPECT_EQ(chosen, 1);
}

TEST(Input, AButtonTellsItsToolTip) {
  const TestForm form;
  wchar_t text[40] = {};
  NMTBGETINFOTIPW asked = {};
  asked.hdr = {WindowOf(form.bar), 0, static_cast<UINT>(TBN_GETINFOTIPW)};
  asked.iItem = 1;
  asked.pszText = text;
  asked.cchTextMax = 40;
  SendMessageW(WindowOf(form.strip), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&asked));
  EXPECT_STREQ(text, L"Save File");
  asked.cchTextMax = 5;
  SendMessageW(WindowOf(form.strip), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&asked));
  EXPECT_STREQ(text, L"Save");
}

TEST(Input, TheRootIsToldWhenItIsPainted) {
  TestForm form;
  int paints = 0;
  form.root.Paint.Connect([&] { ++paints; });
  Paint(form.window->Handle());
  EXPECT_EQ(paints, 1);
}

}  // namespace
}  // namespace kw::test
