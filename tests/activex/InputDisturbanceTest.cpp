// Disturbances between the press and the release of a button on the real control: it goes back to rest, and nothing of
// the drag stays on the canvas.

#include <array>
#include <memory>
#include <string>

#include "tests/activex/InputFixture.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class InputDisturbance : public InputTest {
protected:
  static constexpr POINT Start = {100, 100};
  static constexpr POINT End = {220, 180};

  // A drag of this tool with the button still down.
  void BeginDrag(const std::wstring& tool) {
    Choose(tool);
    rest = std::make_unique<Snapshot>(canvas);
    hand.MoveTo(OnCanvas(Start.x, Start.y));
    hand.GlideTo(OnCanvas(Start.x, Start.y));
    hand.Press();
    hand.GlideTo(OnCanvas(End.x, End.y));
    ASSERT_TRUE(hand.Await([&] { return Look() != *rest; }));
  }
  // Nothing of the drag shows, neither before the button comes up nor after it, and the next drag works.
  void ExpectRest() {
    EXPECT_TRUE(ShowsAgain(*rest)) << "with the button down";
    hand.GlideTo(OnCanvas(End.x + 10, End.y + 10));
    EXPECT_EQ(Look(), *rest) << "the drag goes on";
    hand.Release();
    hand.GlideTo(OnCanvas(300, 60));
    EXPECT_TRUE(ShowsAgain(*rest)) << "with the button up";
    EXPECT_NE(GetCapture(), canvas);
  }
  void ExpectThatItStillDraws() {
    Choose(L"Rectangle");
    const Snapshot before = Look();
    DrawFrom({260, 100}, {330, 160});
    EXPECT_TRUE(Is(Look().ChangesSince(before), {260, 100, 330, 160}));
  }
  // A click on the button of a tool that does not come from the mouse.
  void ChooseAside(const std::wstring& toolTip) const {
    const ToolBarButton button = ButtonOf(toolTip);
    SendMessageW(GetParent(button.bar), WM_COMMAND, static_cast<WPARAM>(button.id),
                 reinterpret_cast<LPARAM>(button.bar));
  }

  static constexpr std::array<const wchar_t*, 3> Tools = {L"Rectangle", L"Pen", L"Selection"};
  std::unique_ptr<Snapshot> rest;
};

TEST_F(InputDisturbance, AnotherButtonEndsTheDragWithoutAResult) {
  for (const wchar_t* tool : Tools) {
    for (const auto button : {Hand::Button::Right, Hand::Button::Middle}) {
      BeginDrag(tool);
      hand.Press(button);
      EXPECT_TRUE(ShowsAgain(*rest));
      hand.Release(button);
      ExpectRest();
    }
  }
  ExpectThatItStillDraws();
}

TEST_F(InputDisturbance, EscapeEndsTheDragWithoutAResult) {
  for (const wchar_t* tool : Tools) {
    BeginDrag(tool);
    hand.Strike(VK_ESCAPE);
    ExpectRest();
  }
  ExpectThatItStillDraws();
}

TEST_F(InputDisturbance, TheLossOfTheMouseEndsTheDragWithoutAResult) {
  for (const wchar_t* tool : Tools) {
    BeginDrag(tool);
    SetCapture(container.Window());
    hand.Pump();
    ReleaseCapture();
    ExpectRest();
  }
  ExpectThatItStillDraws();
}

TEST_F(InputDisturbance, AnotherWindowThatBecomesActiveEndsTheDragWithoutAResult) {
  for (const wchar_t* tool : Tools) {
    BeginDrag(tool);
    const HWND other = CreateWindowExW(0, L"Static", L"Other", WS_POPUP | WS_VISIBLE, 950, 700, 50, 50, nullptr,
                                       nullptr, nullptr, nullptr);
    SetForegroundWindow(other);
    EXPECT_TRUE(hand.Await([&] { return GetActiveWindow() == other; }));
    ExpectRest();
    DestroyWindow(other);
    SetForegroundWindow(container.Window());
    EXPECT_TRUE(hand.Await([&] { return GetForegroundWindow() == container.Window(); }));
  }
  ExpectThatItStillDraws();
}

TEST_F(InputDisturbance, AReleaseWhileAnotherControlHasTheKeyboardMakesNothing) {
  BeginDrag(L"Rectangle");
  SetFocus(ChildWindows(editor, L"msctls_trackbar32").at(0));
  hand.Release();
  EXPECT_TRUE(ShowsAgain(*rest));
  ExpectThatItStillDraws();
}

TEST_F(InputDisturbance, AToolThatChangesInTheDragLeavesNeitherBandNorMarkers) {
  BeginDrag(L"Rectangle");
  ChooseAside(L"Pen");
  hand.Release();
  EXPECT_TRUE(ShowsAgain(*rest));
  BeginDrag(L"Pen");
  ChooseAside(L"Rectangle");
  hand.Release();
  EXPECT_TRUE(ShowsAgain(*rest));
  ExpectThatItStillDraws();
}

TEST_F(InputDisturbance, AnotherPageEndsTheDragWithoutAResult) {
  for (const wchar_t* tool : Tools) {
    BeginDrag(tool);
    OpenPage();
    ExpectRest();
  }
  ExpectThatItStillDraws();
}

TEST_F(InputDisturbance, AControlThatGoesInTheDragLeavesNothingBehind) {
  for (const wchar_t* tool : Tools) {
    BeginDrag(tool);
    const HWND gone = editor;
    container.LetGo();
    control.Reset();
    EXPECT_EQ(IsWindow(gone), FALSE);
    hand.GlideTo({300, 300});
    hand.Release();
    PumpMessages(20);
    EXPECT_TRUE(Ocx::CanUnload());
    EXPECT_EQ(GetCapture(), nullptr);
    control = Ocx::Create();
    Show();
  }
  ExpectThatItStillDraws();
}

TEST_F(InputDisturbance, ADragStaysOnTheCanvasHoweverFarThePointerGoes) {
  Choose(L"Rectangle");
  const Snapshot before = Look();
  hand.MoveTo(OnCanvas(400, 300));
  hand.GlideTo(OnCanvas(400, 300));
  hand.Press();
  hand.GlideTo({1270, 1000});
  hand.Release();
  ASSERT_TRUE(hand.Await([&] { return Look().At(400, 350) == RGB(0, 0, 0); }));
  const RECT drawn = Look().ChangesSince(before);
  EXPECT_EQ(drawn.left, 400);
  EXPECT_EQ(drawn.top, 300);
  EXPECT_LE(drawn.right, 502);
  // A stroke that leaves the canvas keeps what lies on it.
  Choose(L"Pen");
  hand.DragFrom(OnCanvas(200, 200), {1270, OnCanvas(0, 200).y});
  EXPECT_TRUE(Shows(350, 200, RGB(0, 0, 0)));
  EXPECT_TRUE(Shows(499, 200, RGB(0, 0, 0)));
  ExpectThatItStillDraws();
}

TEST_F(InputDisturbance, ALongStrokeKeepsEveryPoint) {
  constexpr int Points = 1000;
  Choose(L"Pen");
  hand.MoveTo(OnCanvas(20, 70));
  hand.GlideTo(OnCanvas(20, 70));
  hand.Press();
  for (int i = 0; i < Points; ++i) hand.MoveTo(OnCanvas(20 + i % 100 * 3, 70 + i / 100 * 10));
  hand.Release();
  const auto isInk = [&](int x, int y) { return Look().At(x, y) != White; };
  ASSERT_TRUE(hand.Await([&] { return isInk(100, 70 + 10); }));
  for (int row = 0; row < Points / 100; ++row) EXPECT_TRUE(isInk(50, 70 + row * 10)) << row;
}

TEST_F(InputDisturbance, MovesThatComeFasterThanTheyAreHandledNeitherNestNorGetLost) {
  constexpr int Points = 9000;  // a queue holds 10,000 messages
  Choose(L"Pen");
  hand.MoveTo(OnCanvas(20, 70));
  hand.GlideTo(OnCanvas(20, 70));
  hand.Press();
  // Moves of the hand itself are merged while they wait, and so would not fill the queue.
  for (int i = 0; i < Points; ++i) {
    const int row = i / 300;
    const int column = row % 2 == 0 ? i % 300 : 299 - i % 300;
    EXPECT_NE(PostMessageW(canvas, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(20 + column, 70 + row * 10)), FALSE);
  }
  hand.Pump();
  hand.Release();
  ASSERT_TRUE(hand.Await([&] { return Look().At(100, 360) != White; }));
  const Snapshot drawn = Look();
  for (int row = 0; row < Points / 300; ++row) {
    for (int x = 20; x < 320; ++x) EXPECT_NE(drawn.At(x, 70 + row * 10), White) << x << ", row " << row;
    EXPECT_EQ(drawn.At(170, 70 + row * 10 + 5), White) << "in the order in which they came";
  }
}

}  // namespace
}  // namespace kw::test
