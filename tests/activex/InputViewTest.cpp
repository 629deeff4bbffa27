// Zoom, scroll bars and the page's borders of the real control in a user's hand.

#include <windows.h>

#include <commctrl.h>

#include "tests/activex/InputFixture.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

class InputView : public InputTest {
protected:
  // The page with its borders.
  static constexpr LONG CanvasWidth = 502;
  static constexpr LONG CanvasHeight = 402;

  void SetUp() override {
    InputTest::SetUp();
    viewport = GetParent(canvas);
    for (const HWND bar : ChildWindows(editor, WC_SCROLLBARW)) {
      ((GetWindowLongW(bar, GWL_STYLE) & SBS_VERT) != 0 ? vertical : horizontal) = bar;
    }
    ASSERT_NE(vertical, nullptr);
    ASSERT_NE(horizontal, nullptr);
  }

  static SIZE SizeOf(HWND window) {
    RECT client = {};
    GetClientRect(window, &client);
    return {client.right, client.bottom};
  }
  static RECT OnScreen(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    return place;
  }
  // Where the canvas lies in the viewport.
  POINT Scrolled() const {
    POINT corner = {0, 0};
    MapWindowPoints(canvas, viewport, &corner, 1);
    return corner;
  }
  testing::AssertionResult ScrollsTo(LONG left, LONG top) const {
    if (hand.Await([&] { return Scrolled().x == left && Scrolled().y == top; })) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it lies at " << Scrolled().x << ", " << Scrolled().y;
  }
  bool IsCanvas(LONG width, LONG height) const {
    return hand.Await([&] { return SizeOf(canvas).cx == width && SizeOf(canvas).cy == height; });
  }
  // Has the container give the control so much room that the viewport is that large.
  void MakeViewport(LONG width, LONG height) {
    const SIZE now = SizeOf(viewport);
    container.place.right += width - now.cx;
    container.place.bottom += height - now.cy;
    ASSERT_HRESULT_SUCCEEDED(container.As<IOleInPlaceObject>()->SetObjectRects(&container.place, &container.clip));
    ASSERT_TRUE(hand.Await([&] { return SizeOf(viewport).cx == width && SizeOf(viewport).cy == height; }));
  }
  static SCROLLINFO InfoOf(HWND bar) {
    SCROLLINFO info = {};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(bar, SB_CTL, &info);
    return info;
  }
  // The largest value that the bar's thumb can reach; the system counts the visible part as well.
  static int HighestOf(HWND bar) {
    const SCROLLINFO info = InfoOf(bar);
    return info.nMax - static_cast<int>(info.nPage) + 1;
  }
  // A click into a bar, which handles it in a loop of its own.
  void ClickInBar(POINT at) { hand.DragAtOnce(at, at); }
  // Drags something on the canvas or beside it, and expects the notice of a page that is resized.
  void DragBorder(POINT from, POINT to) {
    const BoxAnswerer user({Once("change the code below")});
    hand.DragFrom(OnCanvas(from.x, from.y), OnCanvas(to.x, to.y));
    EXPECT_TRUE(hand.Await([&] { return !user.Boxes().empty(); }));
    const auto boxes = user.Boxes();
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_TRUE(boxes[0].ends_with(": change the code below")) << boxes[0];
  }

  HWND viewport = nullptr;
  HWND vertical = nullptr;
  HWND horizontal = nullptr;
};

TEST_F(InputView, TheBarsServeACanvasThatIsLargerThanTheViewport) {
  EXPECT_FALSE(IsWindowEnabled(vertical));
  EXPECT_FALSE(IsWindowEnabled(horizontal));
  MakeViewport(CanvasWidth, CanvasHeight);
  EXPECT_FALSE(IsWindowEnabled(vertical)) << "as high as the viewport";
  EXPECT_FALSE(IsWindowEnabled(horizontal)) << "as wide as the viewport";
  EXPECT_EQ(HighestOf(vertical), 0);
  MakeViewport(CanvasWidth - 1, CanvasHeight);
  EXPECT_FALSE(IsWindowEnabled(vertical));
  EXPECT_TRUE(IsWindowEnabled(horizontal));
  EXPECT_EQ(HighestOf(horizontal), 301);
  MakeViewport(CanvasWidth, CanvasHeight - 1);
  EXPECT_TRUE(IsWindowEnabled(vertical));
  EXPECT_FALSE(IsWindowEnabled(horizontal));
  EXPECT_EQ(HighestOf(vertical), 301);
  EXPECT_EQ(InfoOf(vertical).nPage, static_cast<UINT>(CanvasHeight - 1));
  // They lie along the viewport's edges.
  const RECT frame = OnScreen(viewport);
  const RECT down = OnScreen(vertical);
  const RECT across = OnScreen(horizontal);
  EXPECT_EQ(down.left, frame.right);
  EXPECT_EQ(down.top, frame.top);
  EXPECT_EQ(down.bottom, frame.bottom);
  EXPECT_EQ(across.left, frame.left);
  EXPECT_EQ(across.top, frame.bottom);
  EXPECT_EQ(across.right, frame.right);
}

TEST_F(InputView, TheBarsMoveTheCanvasAndLeaveItTheKeyboard) {
  MakeViewport(350, 250);
  const RECT down = OnScreen(vertical);
  const RECT across = OnScreen(horizontal);
  const LONG middle = (down.left + down.right) / 2;
  const LONG level = (across.top + across.bottom) / 2;
  ForgetTrace();
  ClickInBar({middle, down.bottom - 6});
  ClickInBar({middle, down.bottom - 6});
  EXPECT_TRUE(ScrollsTo(0, -2)) << "an arrow moves by one pixel";
  EXPECT_TRUE(HasTraced("vScroll_GotFocus"));
  EXPECT_TRUE(HasTraced("vScroll_change"));
  EXPECT_EQ(GetFocus(), canvas);
  ClickInBar({across.right - 6, level});
  EXPECT_TRUE(ScrollsTo(-1, -2));
  EXPECT_TRUE(HasTraced("hScroll_GotFocus"));
  EXPECT_TRUE(HasTraced("HScroll_change"));
  EXPECT_EQ(GetFocus(), canvas);
  ClickInBar({across.left + 6, level});
  ClickInBar({middle, down.bottom - 24});
  EXPECT_TRUE(ScrollsTo(0, -252)) << "beside the thumb it is as much as the viewport shows";
  ClickInBar({middle, down.top + 24});
  EXPECT_TRUE(ScrollsTo(0, -2));
  // The thumb goes to both ends; the last one lies 300 pixels beyond the page's edge.
  hand.DragAtOnce({across.left + 24, level}, {across.right, level});
  EXPECT_TRUE(ScrollsTo(-(CanvasWidth - 350 + 300), -2));
  hand.DragAtOnce({across.right - 24, level}, {across.left, level});
  EXPECT_TRUE(ScrollsTo(0, -2));
  EXPECT_EQ(GetFocus(), canvas);
}

TEST_F(InputView, ABorderIsGrabbedFromFourPixelsBeyondItAndResizesThePage) {
  ForgetTrace();
  DragBorder({CanvasWidth + 3, 200}, {CanvasWidth + 43, 230});
  EXPECT_TRUE(IsCanvas(542, 402));
  EXPECT_TRUE(HasTraced("BorderRight_MouseDown"));
  EXPECT_TRUE(HasTraced("BorderRight_MouseUp"));
  DragBorder({100, 401}, {140, 381});
  EXPECT_TRUE(IsCanvas(542, 382)) << "its own pixels do as well";
  DragBorder({544, 384}, {514, 404});
  EXPECT_TRUE(IsCanvas(512, 402));
  const Snapshot before = Look();
  // One pixel further, or the right button, and nothing happens.
  hand.DragFrom(OnCanvas(516, 200), OnCanvas(550, 200));
  hand.MoveTo(OnCanvas(514, 200));
  hand.GlideTo(OnCanvas(514, 200));
  hand.Press(Hand::Button::Right);
  hand.GlideTo(OnCanvas(550, 200));
  hand.Release(Hand::Button::Right);
  hand.Pump();
  EXPECT_TRUE(IsCanvas(512, 402));
  EXPECT_EQ(Look(), before);
}

TEST_F(InputView, ABorderDraggedPastTheOppositeEdgeShowsItsNoticeAndLeavesThePage) {
  DragBorder({100, 403}, {100, -10});
  EXPECT_TRUE(IsCanvas(CanvasWidth, CanvasHeight));
  ForgetTrace();
  hand.ClickAt(ButtonOf(L"Zoom In").Middle());
  ASSERT_TRUE(hand.Await([&] { return HasTraced("UpdateAndZoom"); }));
  // At 150 % the distance is divided by that.
  DragBorder({100, 403}, {100, 433});
  EXPECT_TRUE(IsCanvas(CanvasWidth, CanvasHeight + 20));
}

TEST_F(InputView, ABorderIsGrabbedOnceItIsScrolledIntoView) {
  MakeViewport(350, 250);
  const RECT down = OnScreen(vertical);
  const LONG middle = (down.left + down.right) / 2;
  hand.DragAtOnce({middle, down.top + 24}, {middle, down.bottom});
  ASSERT_TRUE(ScrollsTo(0, -(CanvasHeight - 250 + 300)));
  hand.DragAtOnce({middle, down.bottom - 24}, {middle, down.bottom - 74});
  ASSERT_TRUE(hand.Await([&] { return Scrolled().y > -CanvasHeight + 60 && Scrolled().y < 200 - CanvasHeight; }));
  DragBorder({100, 405}, {100, 415});
  EXPECT_TRUE(IsCanvas(CanvasWidth, CanvasHeight + 10));
}

TEST_F(InputView, ALayerOverThePagesEdgeIsPressedAndNotTheBorder) {
  ChooseRedOnBlue();
  Choose(L"Rectangle");
  Choose(L"Fill Inside");
  DrawFrom({440, 250}, {CanvasWidth, 300});
  Choose(L"Selection");
  // Where none of its handles lies.
  hand.DragFrom(OnCanvas(CanvasWidth - 2, 262), OnCanvas(CanvasWidth - 42, 262));
  EXPECT_TRUE(Shows(400, 270, Red)) << "the layer moved";
  EXPECT_TRUE(IsCanvas(CanvasWidth, CanvasHeight));
  DragBorder({CanvasWidth + 3, 275}, {CanvasWidth + 13, 275});
  EXPECT_TRUE(IsCanvas(CanvasWidth + 10, CanvasHeight));
}

TEST_F(InputView, AZoomIsChosenInTheComboAndTheStepsEndWithTheirBoxes) {
  HWND combo = nullptr;
  const auto textOf = [](HWND one) { return EntryOf(one, SendMessageW(one, CB_GETCURSEL, 0, 0)); };
  for (const HWND one : ChildWindows(editor, WC_COMBOBOXW)) {
    if (textOf(one).ends_with(L'%')) combo = one;
  }
  ASSERT_NE(combo, nullptr);
  const auto choose = [&](WORD key, const std::wstring& text) {
    const RECT place = OnScreen(combo);
    hand.ClickAt({place.right - 8, (place.top + place.bottom) / 2});
    ASSERT_TRUE(hand.Await([&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) != 0; }));
    hand.Strike(key);
    hand.Strike(VK_RETURN);
    EXPECT_TRUE(hand.Await([&] { return textOf(combo) == text; })) << key;
    EXPECT_TRUE(hand.Await([&] { return SendMessageW(combo, CB_GETDROPPEDSTATE, 0, 0) == 0; }));
  };
  const auto step = [&](const wchar_t* button) {
    const BoxAnswerer user({Once("Can not Zoom")});
    hand.ClickAt(ButtonOf(button).Middle());
    hand.Await([&] { return !user.Boxes().empty(); });
    const auto boxes = user.Boxes();
    return boxes.empty() ? std::string() : boxes[0];
  };
  ForgetTrace();
  choose(VK_END, L"400 %");
  EXPECT_TRUE(HasTraced("cmbZoomFactor_Click"));
  EXPECT_TRUE(HasTraced("Let ZoomFactor"));
  EXPECT_EQ(step(L"Zoom In"), "Zoom Error: Can not Zoom in more..");
  EXPECT_EQ(textOf(combo), L"400 %");
  choose(VK_HOME, L"10 %");
  EXPECT_EQ(step(L"Zoom Out"), "Error: Can not Zoom out more..");
  EXPECT_EQ(textOf(combo), L"10 %");
  hand.ClickAt(ButtonOf(L"Zoom In").Middle());
  EXPECT_TRUE(hand.Await([&] { return textOf(combo) == L"20 %"; }));
}

}  // namespace
}  // namespace kw::test
