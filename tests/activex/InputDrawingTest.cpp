// Each tool of the real control in a user's hand: what a drag leaves on the canvas, pixel by pixel.

#include <cstdlib>

#include "tests/activex/InputFixture.h"
#include "tests/support/win32/BoxAnswerer.h"

namespace kw::test {
namespace {

constexpr int LineSize = 2;  // the control's own at the start

// The edges of a slanting line are mixed with what lies below.
bool IsLike(COLORREF colour, COLORREF wanted) {
  constexpr int Tolerance = 80;
  const auto isLike = [](int a, int b) { return std::abs(a - b) <= Tolerance; };
  return isLike(GetRValue(colour), GetRValue(wanted)) && isLike(GetGValue(colour), GetGValue(wanted)) &&
         isLike(GetBValue(colour), GetBValue(wanted));
}

class InputDrawing : public InputTest {
protected:
  // The frame that is drawn with the button down lies on this rectangle and leaves its inside alone.
  static void ExpectFrame(const Snapshot& whileDown, const Snapshot& before, const RECT& place) {
    EXPECT_TRUE(Is(whileDown.ChangesSince(before), place));
    const int x = (place.left + place.right) / 2;
    const int y = (place.top + place.bottom) / 2;
    EXPECT_EQ(whileDown.At(x, y), before.At(x, y)) << "the inside of the frame";
  }
};

TEST_F(InputDrawing, ALineJoinsTheCornersThatTheDragJoined) {
  ChooseRedOnBlue();
  Choose(L"Line");
  const Snapshot before = Look();
  Snapshot whileDown = before;
  DrawFrom({100, 100}, {200, 150}, whileDown);
  ExpectFrame(whileDown, before, {100, 100, 200, 150});
  const Snapshot falling = Look();
  const RECT place = falling.ChangesSince(before);
  EXPECT_TRUE(LiesWithin(place, {100, 100, 200, 150}));
  EXPECT_GE(place.right - place.left, 98);
  EXPECT_GE(place.bottom - place.top, 48);
  EXPECT_TRUE(IsLike(falling.At(150, 125), Red));
  EXPECT_NE(falling.At(101, 101), White);
  EXPECT_NE(falling.At(198, 148), White);
  EXPECT_EQ(falling.At(198, 102), White);
  EXPECT_EQ(falling.At(102, 148), White);

  DrawFrom({200, 250}, {100, 300});
  const Snapshot rising = Look();
  EXPECT_TRUE(LiesWithin(rising.ChangesSince(falling), {100, 250, 200, 300}));
  EXPECT_TRUE(IsLike(rising.At(150, 275), Red));
  EXPECT_NE(rising.At(101, 298), White);
  EXPECT_EQ(rising.At(101, 251), White);
  EXPECT_EQ(rising.At(198, 298), White);
}

TEST_F(InputDrawing, ARectangleIsHollowOrFilledAsTheFillPatternSays) {
  ChooseRedOnBlue();
  Choose(L"Rectangle");
  const Snapshot before = Look();
  Snapshot whileDown = before;
  DrawFrom({140, 200}, {80, 120}, whileDown);  // from the right to the left and upward
  ExpectFrame(whileDown, before, {80, 120, 140, 200});
  const Snapshot hollow = Look();
  EXPECT_TRUE(Is(hollow.ChangesSince(before), {80, 120, 140, 200}));
  for (int i = 0; i < LineSize; ++i) {
    EXPECT_EQ(hollow.At(80 + i, 160), Red);
    EXPECT_EQ(hollow.At(139 - i, 160), Red);
    EXPECT_EQ(hollow.At(110, 120 + i), Red);
    EXPECT_EQ(hollow.At(110, 199 - i), Red);
  }
  EXPECT_EQ(hollow.At(80 + LineSize, 160), White) << "the inside shows what lies below";

  Choose(L"Fill Inside");
  DrawFrom({200, 120}, {260, 200});
  const Snapshot filled = Look();
  EXPECT_TRUE(Is(filled.ChangesSince(hollow), {200, 120, 260, 200}));
  EXPECT_EQ(filled.At(200, 160), Red);
  EXPECT_EQ(filled.At(200 + LineSize, 160), Blue);
  EXPECT_EQ(filled.At(230, 160), Blue);
}

TEST_F(InputDrawing, ABackgroundColourOfTwentyFillsNothing) {
  ChooseRedOnBlue();
  hand.ClickAt(OnCanvas(TwentyPatch.left + 5, TwentyPatch.top + 5), Hand::Button::Left, VK_SHIFT);
  Choose(L"Rectangle");
  Choose(L"Fill Inside");
  DrawFrom({80, 120}, {140, 200});
  EXPECT_TRUE(Shows(80, 160, Red));
  EXPECT_EQ(Look().At(110, 160), White);
}

TEST_F(InputDrawing, AnEllipseFillsItsRectangle) {
  ChooseRedOnBlue();
  Choose(L"Circle");
  const Snapshot before = Look();
  Snapshot whileDown = before;
  DrawFrom({80, 120}, {180, 180}, whileDown);
  ExpectFrame(whileDown, before, {80, 120, 180, 180});
  const Snapshot hollow = Look();
  EXPECT_TRUE(Is(hollow.ChangesSince(before), {80, 120, 180, 180}));
  EXPECT_EQ(hollow.At(130, 121), Red);
  EXPECT_EQ(hollow.At(130, 178), Red);
  EXPECT_EQ(hollow.At(81, 150), Red);
  EXPECT_EQ(hollow.At(178, 150), Red);
  EXPECT_EQ(hollow.At(130, 150), White);
  EXPECT_EQ(hollow.At(83, 123), White) << "a corner";
  Choose(L"Fill Inside");
  DrawFrom({220, 120}, {320, 180});
  const Snapshot filled = Look();
  EXPECT_TRUE(Is(filled.ChangesSince(hollow), {220, 120, 320, 180}));
  EXPECT_EQ(filled.At(270, 150), Blue);
  EXPECT_EQ(filled.At(223, 123), White);
}

TEST_F(InputDrawing, ADragOfFivePixelsInOneDirectionMakesNothingAndOneOfSixInBothALayer) {
  Choose(L"Rectangle");
  const Snapshot before = Look();
  hand.ClickAt(OnCanvas(100, 100));
  EXPECT_TRUE(ShowsAgain(before));
  // A click as slow as a user's: the timer has shown the frame by then.
  hand.Press();
  EXPECT_TRUE(hand.Await([start = GetTickCount()] { return GetTickCount() - start > 60; }));
  EXPECT_TRUE(HasTraced("tmrMoveLayer_Timer"));
  hand.Release();
  EXPECT_TRUE(ShowsAgain(before));
  hand.DragFrom(OnCanvas(100, 100), OnCanvas(105, 150));
  hand.DragFrom(OnCanvas(100, 100), OnCanvas(150, 95));
  EXPECT_TRUE(ShowsAgain(before));
  DrawFrom({100, 100}, {106, 106});
  EXPECT_TRUE(Is(Look().ChangesSince(before), {100, 100, 106, 106}));
}

// A painting of the change alone looks like a painting of everything.
TEST_F(InputDrawing, EachOfSixtyStepsOfADragShowsWhatAWholePaintingShows) {
  ChooseRedOnBlue();
  Choose(L"Circle");
  Choose(L"Fill Inside");
  DrawFrom({150, 120}, {260, 200});
  Choose(L"Rectangle");
  hand.MoveTo(OnCanvas(60, 80));
  hand.GlideTo(OnCanvas(60, 80));
  hand.Press();
  const Snapshot before = Look();
  Snapshot last = before;
  int different = 0;
  for (int step = 1; step <= 60; ++step) {
    hand.MoveTo(OnCanvas(60 + step * 6 % 320, 80 + step * step % 230));
    ASSERT_TRUE(hand.Await([&] { return Look() != last; })) << step;
    EXPECT_TRUE(hand.Await([start = GetTickCount()] { return GetTickCount() - start > 25; }));
    last = Look();
    RedrawWindow(canvas, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    different += Look() == last ? 0 : 1;
  }
  EXPECT_EQ(different, 0);
  EXPECT_NE(last, before);
  hand.Release();
}

TEST_F(InputDrawing, APenStrokeLeavesNoGapAndNoMarker) {
  ChooseRedOnBlue();
  Choose(L"Pen");
  const Snapshot before = Look();
  hand.MoveTo(OnCanvas(100, 200));
  hand.GlideTo(OnCanvas(100, 200));
  hand.Press();
  for (const POINT point : {POINT{150, 160}, {200, 240}, {204, 200}, {300, 200}})
    hand.MoveTo(OnCanvas(point.x, point.y));
  hand.GlideTo(OnCanvas(300, 200));
  EXPECT_TRUE(Shows(200, 240, Red)) << "a marker of the trail";
  EXPECT_EQ(Look().At(125, 180), White) << "the trail is of markers";
  hand.Release();
  ASSERT_TRUE(hand.Await([&] { return IsLike(Look().At(125, 180), Red); }));
  const Snapshot after = Look();
  const RECT place = after.ChangesSince(before);
  EXPECT_TRUE(LiesWithin(place, {98, 158, 303, 243}));
  const auto expectInk = [&](POINT from, POINT to) {
    constexpr int Steps = 100;
    for (int i = 0; i <= Steps; ++i) {
      const int x = from.x + (to.x - from.x) * i / Steps;
      const int y = from.y + (to.y - from.y) * i / Steps;
      EXPECT_NE(after.At(x, y), White) << x << ", " << y;
    }
  };
  expectInk({100, 200}, {150, 160});
  expectInk({150, 160}, {200, 240});
  expectInk({200, 240}, {204, 200});
  expectInk({204, 200}, {299, 200});
  EXPECT_EQ(after.At(250, 204), White);
  Choose(L"Selection");
  // It is one layer, with the box of the stroke.
  hand.MoveTo(OnCanvas(250, 230));
  ASSERT_TRUE(hand.Await([&] { return Look() != after; }));
  EXPECT_TRUE(Is(Look().ChangesSince(before), {98, 158, 302, 242}));
}

TEST_F(InputDrawing, TheRubberCoversInTheBackgroundColour) {
  ChooseRedOnBlue();
  Choose(L"Rubber");
  const Snapshot before = Look();
  hand.DragFrom(OnCanvas(Pattern.left + 5, Pattern.top + 10), OnCanvas(Pattern.right - 5, Pattern.top + 10));
  ASSERT_TRUE(Shows(Pattern.left + 20, Pattern.top + 10, Blue));
  EXPECT_TRUE(LiesWithin(Look().ChangesSince(before),
                         {Pattern.left + 3, Pattern.top + 8, Pattern.right - 3, Pattern.top + 12}));
}

TEST_F(InputDrawing, FillCoversTheConnectedRegionOnly) {
  ChooseRedOnBlue();
  Choose(L"Fill Color");
  const Snapshot before = Look();
  hand.ClickAt(OnCanvas(400, 300));
  ASSERT_TRUE(Shows(400, 300, Red));
  const Snapshot after = Look();
  RECT inside = Outline;
  InflateRect(&inside, -1, -1);
  EXPECT_TRUE(Is(after.ChangesSince(before), inside));
  EXPECT_EQ(after.At(Outline.left, 300), RGB(0, 0, 0));
  EXPECT_EQ(after.At(inside.left, inside.top), Red);
  EXPECT_EQ(after.At(inside.right - 1, inside.bottom - 1), Red);
}

TEST_F(InputDrawing, AnImageComesFromItsDialogInItsProportions) {
  const std::wstring path =
      scratch.WriteBitmap(L"inserted.bmp", 40, 20, [](int x, int) { return x < 20 ? Red : Blue; });
  Choose(L"Image");
  const Snapshot before = Look();
  {
    const Bystander user(DialogClass, {}, [&](HWND dialog) {
      const HWND field = Bystander::FieldOf(dialog);
      EXPECT_NE(field, nullptr);
      SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(path.c_str()));
      PostMessageW(dialog, WM_COMMAND, IDOK, 0);
    });
    hand.DragFrom(OnCanvas(100, 100), OnCanvas(200, 200));
    EXPECT_TRUE(hand.Await([&] { return user.HasActed(); }));
  }
  ASSERT_TRUE(Shows(120, 150, Red));
  EXPECT_TRUE(Is(Look().ChangesSince(before), {100, 125, 200, 175}));
  EXPECT_TRUE(Shows(180, 150, Blue));
}

TEST_F(InputDrawing, ACancelledImageLeavesNothing) {
  Choose(L"Image");
  const Snapshot before = Look();
  {
    const Bystander user(DialogClass, {}, [](HWND dialog) { PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0); });
    hand.DragFrom(OnCanvas(100, 100), OnCanvas(200, 200));
    EXPECT_TRUE(hand.Await([&] { return user.HasActed(); }));
  }
  EXPECT_TRUE(ShowsAgain(before));
}

TEST_F(InputDrawing, ASignatureLetsItsPaperThrough) {
  const std::wstring path = scratch.WriteBitmap(L"signature.bmp", 60, 30, [](int x, int y) {
    return x > 4 && x < 55 && y > 12 && y < 18 ? RGB(0, 0, 0) : White;
  });
  const ToolBarButton tool = ButtonOf(L"Signature");
  EXPECT_FALSE(tool.IsEnabled());
  control->put_SignatureFilePath(Text(path));
  EXPECT_TRUE(tool.IsEnabled());
  Choose(L"Signature");
  EXPECT_TRUE(ButtonOf(L"No Fill Inside").IsPressed());
  const Snapshot before = Look();
  hand.DragFrom(OnCanvas(Pattern.left, Pattern.top), OnCanvas(Pattern.right, Pattern.bottom));
  ASSERT_TRUE(Shows((Pattern.left + Pattern.right) / 2, (Pattern.top + Pattern.bottom) / 2, RGB(0, 0, 0)));
  const RECT ink = Look().ChangesSince(before);
  EXPECT_TRUE(LiesWithin(ink, Pattern));
  EXPECT_LT(ink.bottom - ink.top, 20) << "its paper shows the page";
}

TEST_F(InputDrawing, ATextIsTypedAndEndedWithEscape) {
  ChooseRedOnBlue();
  Choose(L"Text");
  const Snapshot before = Look();
  hand.DragFrom(OnCanvas(100, 100), OnCanvas(220, 140));
  HWND field = nullptr;
  ASSERT_TRUE(hand.Await([&] {
    field = FindWindowExW(canvas, nullptr, L"Edit", nullptr);
    return field != nullptr && GetFocus() == field;
  }));
  hand.Type(L"hill 1");
  ASSERT_TRUE(hand.Await([&] { return GetWindowTextLengthW(field) == 6; }));
  wchar_t text[16] = {};
  GetWindowTextW(field, static_cast<wchar_t*>(text), 16);
  EXPECT_STREQ(static_cast<const wchar_t*>(text), L"hill 1");
  hand.Strike(VK_ESCAPE);
  ASSERT_TRUE(hand.Await([&] { return IsWindow(field) == FALSE; }));
  EXPECT_EQ(GetFocus(), canvas);
  ASSERT_TRUE(hand.Await([&] { return Look() != before; }));
  const Snapshot after = Look();
  const RECT ink = after.ChangesSince(before);
  EXPECT_TRUE(LiesWithin(ink, {100, 100, 220, 140}));
  bool hasRed = false;
  for (int y = ink.top; y < ink.bottom; ++y) {
    for (int x = ink.left; x < ink.right; ++x) hasRed = hasRed || after.At(x, y) == Red;
  }
  EXPECT_TRUE(hasRed) << "the letters are in the foreground colour";
}

TEST_F(InputDrawing, ASelectionHoldsACopyOfThePage) {
  Choose(L"Selection");
  const Snapshot before = Look();
  hand.DragFrom(OnCanvas(Pattern.left, Pattern.top), OnCanvas(Pattern.right, Pattern.bottom));
  hand.MoveTo(OnCanvas(200, 200));
  EXPECT_TRUE(ShowsAgain(before)) << "a copy looks like the page";
  // Dragged away it shows the same at another place, with a frame around it.
  DrawFrom({30, 310}, {130, 210});
  hand.MoveTo(OnCanvas(200, 100));
  ASSERT_TRUE(Shows(Pattern.left + 100, Pattern.top - 90, before.At(Pattern.left, Pattern.top + 10)));
  const Snapshot after = Look();
  for (int y = Pattern.top + 8; y < Pattern.bottom - 8; ++y) {
    for (int x = Pattern.left + 8; x < Pattern.right - 8; ++x) {
      EXPECT_EQ(after.At(x + 100, y - 100), before.At(x, y));
      EXPECT_EQ(after.At(x, y), before.At(x, y)) << "the page itself";
    }
  }
}

TEST_F(InputDrawing, AStampIsChosenInItsDialogAndLiesWhereThePressWas) {
  ChooseRedOnBlue();
  Choose(L"Stamp");
  const Snapshot before = Look();
  {
    const Bystander user(L"KwEditorView", L"Stamp", [](HWND dialog) { Bystander::Strike(dialog, VK_RETURN); });
    hand.ClickAt(OnCanvas(100, 200));
    EXPECT_TRUE(hand.Await([&] { return user.HasActed(); }));
  }
  ASSERT_TRUE(hand.Await([&] { return Look() != before; }));
  const Snapshot after = Look();
  const RECT ink = after.ChangesSince(before);
  EXPECT_TRUE(LiesWithin(ink, {100, 200, 400, 300}));
  EXPECT_LT(ink.left, 110);
}

}  // namespace
}  // namespace kw::test
