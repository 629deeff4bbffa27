// Presses: what counts as a click, what becomes of one that loses the mouse, buttons, and what is dropped open.

#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/windows/TestForm.h"
#include "tests/windows/WholeEditor.h"

namespace kw::test {
namespace {

void Send(HWND window, UINT message, WPARAM keys, int x, int y) {
  SendMessageW(window, message, keys, MAKELPARAM(x, y));
}

TEST(Press, OnlyAPressAndItsReleaseAreAClick) {
  TestForm form;
  int clicks = 0;
  form.sample.Click.Connect([&] { ++clicks; });
  const HWND window = WindowOf(form.sample);
  Send(window, WM_LBUTTONUP, 0, 3, 3);
  EXPECT_EQ(clicks, 0) << "it was pressed elsewhere";
  Send(window, WM_RBUTTONDOWN, MK_RBUTTON, 3, 3);
  Send(window, WM_LBUTTONUP, MK_RBUTTON, 3, 3);
  Send(window, WM_RBUTTONUP, 0, 3, 3);
  EXPECT_EQ(clicks, 0);
  Send(window, WM_LBUTTONDOWN, MK_LBUTTON, 3, 3);
  Send(window, WM_RBUTTONUP, MK_LBUTTON, 3, 3);
  EXPECT_EQ(clicks, 0);
  Send(window, WM_LBUTTONUP, 0, 3, 3);
  EXPECT_EQ(clicks, 1);
}

TEST(Press, ThatLosesTheMouseIsNoClickAndTheNextOneIs) {
  TestForm form;
  int clicks = 0;
  int losses = 0;
  form.sample.Click.Connect([&] { ++clicks; });
  form.sample.MouseLost.Connect([&] { ++losses; });
  const HWND window = WindowOf(form.sample);
  Send(window, WM_LBUTTONDOWN, MK_LBUTTON, 3, 3);
  Send(window, WM_CANCELMODE, 0, 0, 0);
  EXPECT_EQ(losses, 1);
  Send(window, WM_LBUTTONUP, 0, 3, 3);
  EXPECT_EQ(clicks, 0);
  // What a double click does may take the mouse, and the release never comes.
  form.sample.DblClick.Connect([&] { ReleaseCapture(); });
  Send(window, WM_LBUTTONDBLCLK, MK_LBUTTON, 3, 3);
  EXPECT_EQ(losses, 2);
  ClickAt(window, 3, 3);
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(losses, 2) << "a release is no loss";
}

TEST(Press, InWhatIsHiddenOrDisabledMeanwhileEnds) {
  TestForm form;
  int losses = 0;
  form.panel.MouseLost.Connect([&] { ++losses; });
  const HWND window = WindowOf(form.panel);
  Send(window, WM_LBUTTONDOWN, MK_LBUTTON, 5, 5);
  form.panel.SetVisible(false);
  EXPECT_EQ(losses, 1);
  EXPECT_EQ(GetCapture(), nullptr);
  form.panel.SetVisible(true);
  Send(window, WM_LBUTTONDOWN, MK_LBUTTON, 5, 5);
  form.root.SetEnabled(false);
  EXPECT_EQ(losses, 2);
  EXPECT_EQ(GetCapture(), nullptr);
}

TEST(Press, APointerThatChangesWhileTheMouseIsHeldShows) {
  TestForm form;
  const HWND window = WindowOf(form.panel);
  POINT over = {5, 5};
  ClientToScreen(window, &over);
  SetCursorPos(over.x, over.y);
  TestForm::Pump();
  form.panel.MouseDown.Connect(
      [&](std::int16_t, std::int16_t, float, float) { form.panel.SetPointer(MousePointer::SizeAll); });
  Send(window, WM_LBUTTONDOWN, MK_LBUTTON, 5, 5);
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_SIZEALL));
  form.panel.SetPointer(MousePointer::Default);
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_ARROW));
  Send(window, WM_LBUTTONUP, 0, 5, 5);
}

// The places of the presses that a button tells of.
class ButtonPress : public testing::Test {
protected:
  ButtonPress() : window(WindowOf(form.close)) {
    form.close.SetIsButton(true);
    form.close.MouseDown.Connect([this](std::int16_t button, std::int16_t, float x, float y) {
      presses.push_back({static_cast<float>(button), x, y});
    });
    const auto unexpected = [](std::int16_t, std::int16_t, float, float) { ADD_FAILURE() << "no such event"; };
    form.close.MouseMove.Connect(unexpected);
    form.close.MouseUp.Connect(unexpected);
  }
  COLORREF Edge() const {
    Paint(window);
    return PixelOf(window, 0, 5);
  }

  TestForm form;
  HWND window;
  std::vector<std::vector<float>> presses;
};

TEST_F(ButtonPress, IsToldWhenItEndsWithThePlaceWhereItEnds) {
  const COLORREF raised = Edge();
  Send(window, WM_LBUTTONDOWN, MK_LBUTTON, 3, 2);
  EXPECT_TRUE(presses.empty());
  EXPECT_NE(Edge(), raised);
  Send(window, WM_MOUSEMOVE, MK_LBUTTON, -20, 2);
  EXPECT_EQ(Edge(), raised) << "beside it";
  Send(window, WM_MOUSEMOVE, MK_LBUTTON, 4, 2);
  EXPECT_NE(Edge(), raised);
  Send(window, WM_LBUTTONUP, 0, 5, 4);
  EXPECT_EQ(presses, (std::vector<std::vector<float>>{{1, 75, 60}}));
  EXPECT_EQ(Edge(), raised);
  Send(window, WM_LBUTTONDBLCLK, MK_LBUTTON, 3, 2);
  Send(window, WM_LBUTTONUP, 0, -10, 30);
  EXPECT_EQ(presses.size(), 2U) << "the second press of a double click is one, too";
  EXPECT_EQ(presses.back(), (std::vector<float>{1, -150, 450}));
}

TEST_F(ButtonPress, EndsWithTheButtonThatBeganIt) {
  Send(window, WM_RBUTTONDOWN, MK_RBUTTON, 3, 2);
  Send(window, WM_LBUTTONDOWN, MK_LBUTTON | MK_RBUTTON, 3, 2);
  Send(window, WM_LBUTTONUP, MK_RBUTTON, 3, 2);
  EXPECT_TRUE(presses.empty());
  Send(window, WM_RBUTTONUP, 0, 1, 1);
  EXPECT_EQ(presses, (std::vector<std::vector<float>>{{2, 15, 15}}));
  Send(window, WM_LBUTTONUP, 0, 3, 2);
  EXPECT_EQ(presses.size(), 1U) << "it was pressed elsewhere";
}

TEST_F(ButtonPress, ThatLosesTheMouseIsNone) {
  const COLORREF raised = Edge();
  const std::function<void()> losses[] = {[&] { SendMessageW(window, WM_CANCELMODE, 0, 0); },
                                          [&] { SetCapture(form.host); }, [&] { form.panel.SetVisible(false); },
                                          [&] { form.root.SetEnabled(false); }};
  for (const auto& lose : losses) {
    Send(window, WM_LBUTTONDOWN, MK_LBUTTON, 3, 2);
    lose();
    ReleaseCapture();
    form.panel.SetVisible(true);
    form.root.SetEnabled(true);
    EXPECT_EQ(Edge(), raised);
    Send(window, WM_LBUTTONUP, 0, 3, 2);
  }
  EXPECT_TRUE(presses.empty());
}

TEST_F(ButtonPress, ByWhichTheFormGoesIsNoHarm) {
  form.close.MouseDown.Connect([this](std::int16_t, std::int16_t, float, float) { form.window.reset(); });
  Send(window, WM_LBUTTONDOWN, MK_LBUTTON, 3, 2);
  Send(window, WM_LBUTTONUP, 0, 3, 2);
  EXPECT_EQ(form.window, nullptr);
}

// The palette, hidden where it loses the keyboard.
class DropDown : public testing::Test {
protected:
  DropDown() : window(WindowOf(form.palette)) {
    form.palette.SetVisible(false);
    form.palette.LostFocus.Connect([this] { form.palette.SetVisible(false); });
  }
  void Open() {
    form.palette.SetVisible(true);
    form.palette.SetFocus();
    ASSERT_EQ(GetFocus(), window);
  }

  TestForm form;
  HWND window;
};

TEST_F(DropDown, ClosesByAPressAnywhereElse) {
  for (const Control* other :
       {static_cast<Control*>(&form.panel), static_cast<Control*>(&form.sample), static_cast<Control*>(&form.bar),
        static_cast<Control*>(&form.tick), static_cast<Control*>(&form.canvas), static_cast<Control*>(&form.root)}) {
    for (const UINT press : {WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_MBUTTONDOWN, WM_LBUTTONDBLCLK}) {
      Open();
      // The release waits in the queue for a window that has a loop of its own while it is pressed.
      PostMessageW(WindowOf(*other), press + (press == WM_LBUTTONDBLCLK ? -1 : 1), 0, MAKELPARAM(1, 1));
      Send(WindowOf(*other), press, 0, 1, 1);
      EXPECT_FALSE(form.palette.Visible()) << other->Name() << " by " << press;
      TestForm::PumpOnce();
      ReleaseCapture();
    }
  }
  EXPECT_NE(GetFocus(), nullptr);
}

TEST_F(DropDown, StaysOpenWhileTheMouseIsOnIt) {
  Open();
  Send(window, WM_LBUTTONDOWN, MK_LBUTTON, 5, 5);
  Send(window, WM_MOUSEMOVE, MK_LBUTTON, 50, 5);
  Send(window, WM_LBUTTONUP, 0, 50, 5);
  EXPECT_TRUE(form.palette.Visible()) << "what happens at the release is its handler's business";
  Send(WindowOf(form.panel), WM_MOUSEMOVE, 0, 50, 5);
  EXPECT_TRUE(form.palette.Visible());
}

TEST_F(DropDown, ClosesByTheKeysThatEndItAndTheFormHasTheKeyboardThen) {
  std::vector<int> keys;
  form.root.KeyPress.Connect([&](std::int16_t character) { keys.push_back(character); });
  for (const WPARAM key : {VK_ESCAPE, VK_RETURN}) {
    Open();
    MSG message = {window, WM_KEYDOWN, key, 1, 0, {}};
    EXPECT_TRUE(form.window->TranslateAccelerator(message)) << key;
    EXPECT_FALSE(form.palette.Visible()) << key;
    EXPECT_EQ(GetFocus(), form.window->Handle());
    TestForm::Pump();
  }
  EXPECT_TRUE(keys.empty()) << "the keys went no further";
  Open();
  MSG message = {window, WM_KEYDOWN, VK_F5, 1, 0, {}};
  EXPECT_FALSE(form.window->TranslateAccelerator(message));
  EXPECT_TRUE(form.palette.Visible());
}

TEST_F(DropDown, ClosesForADialogOrAnotherProgramAndTakesTheKeyboardNoMore) {
  Open();
  SetFocus(nullptr);
  EXPECT_FALSE(form.palette.Visible());
  // As a host does that gives the keyboard back to what had it before.
  SetFocus(window);
  EXPECT_EQ(GetFocus(), form.window->Handle());
  EXPECT_NE(form.root.ActiveControl(), &form.palette);
}

using RealBar = WholeEditor;

// Nothing of the control enables the two yet.
TEST_F(RealBar, UndoAndRedoShowTheirNoticesOnceTheyAreEnabled) {
  desktop.Expect("File Error: Invalid file format..");
  desktop.Expect("undo");
  desktop.Expect("redo");
  control->OpenFile(folder.File("none.bmp"));
  SavePicture(Bitmap(30, 40, 24), folder.File("page.bmp"));
  control->OpenFile(folder.File("page.bmp"));
  control->LetIsEditable(true);
  for (const auto& [key, notice] : {std::pair{"Undo", "undo"}, {"Redo", "redo"}}) {
    ToolBar& bar = BarOf(Form().tbrBasicTools, key);
    int index = 0;
    while (bar.Buttons()[static_cast<std::size_t>(index)].key != key) ++index;
    const auto click = [&] {
      RECT place = {};
      SendMessageW(WindowOf(bar), TB_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(&place));
      desktop.boxes.clear();
      ClickAt(WindowOf(bar), (place.left + place.right) / 2, (place.top + place.bottom) / 2);
      TestForm::Pump();
    };
    click();
    EXPECT_TRUE(desktop.boxes.empty()) << key << " is disabled";
    bar.SetButtonEnabled(key, true);
    click();
    EXPECT_EQ(desktop.boxes, Names{notice});
  }
}

}  // namespace
}  // namespace kw::test
