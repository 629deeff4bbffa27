// Layers of the real control in a user's hand: picking, moving, sizing and restacking them.

#include <memory>

#include "tests/activex/InputFixture.h"

namespace kw::test {
namespace {

constexpr COLORREF Black = RGB(0, 0, 0);

class InputLayers : public InputTest {
protected:
  // Two filled squares that overlap: a red one, and a blue one on top of it.
  static constexpr RECT RedSquare = {100, 100, 180, 180};
  static constexpr RECT BlueSquare = {140, 140, 220, 220};
  static constexpr POINT Overlap = {160, 160};
  static constexpr POINT Away = {300, 250};

  void SetUp() override {
    InputTest::SetUp();
    page = std::make_unique<Snapshot>(canvas);
    PickColour(RedPatch);
    Choose(L"Rectangle");
    Choose(L"Fill Inside");
    Draw(RedSquare);
    PickColour(BluePatch);
    Choose(L"Rectangle");
    Draw(BlueSquare);
    Choose(L"Selection");
    hand.MoveTo(OnCanvas(Away.x, Away.y));
    ASSERT_TRUE(Shows(Overlap.x, Overlap.y, Blue));
    ASSERT_TRUE(Shows(RedSquare.left, RedSquare.top, Red));
  }

  // As foreground and background colour.
  void PickColour(const RECT& patch) {
    Choose(L"Color Picker");
    hand.ClickAt(OnCanvas(patch.left + 5, patch.top + 5));
    hand.ClickAt(OnCanvas(patch.left + 5, patch.top + 5), Hand::Button::Left, VK_SHIFT);
  }
  // From the corner at the bottom right, where no layer lies yet.
  void Draw(const RECT& place) { DrawFrom({place.right, place.bottom}, {place.left, place.top}); }
  void Pick(int x, int y) {
    hand.ClickAt(OnCanvas(x, y));
    hand.MoveTo(OnCanvas(Away.x, Away.y));
  }

  std::unique_ptr<Snapshot> page;
};

TEST_F(InputLayers, APressPicksTheTopmostAndAPressBesideReleasesIt) {
  const Snapshot before = Look();
  Pick(Overlap.x, Overlap.y);
  // The frame lies around the layer, one pixel wide.
  ASSERT_TRUE(Shows(BlueSquare.left - 1, BlueSquare.top + 20, Black));
  EXPECT_TRUE(Is(Look().ChangesSince(before),
                 {BlueSquare.left - 1, BlueSquare.top - 1, BlueSquare.right + 1, BlueSquare.bottom + 1}));
  EXPECT_EQ(Look().At(BlueSquare.left + 20, BlueSquare.top + 20), Blue) << "its contents stay in place";
  hand.ClickAt(OnCanvas(Away.x, Away.y));
  EXPECT_TRUE(ShowsAgain(before));
}

TEST_F(InputLayers, TheLastEdgeBelongsToALayerForThePressAndForThePointer) {
  const POINT edge = {BlueSquare.right, BlueSquare.top + 20};
  Pick(edge.x + 1, edge.y);
  EXPECT_FALSE(Shows(BlueSquare.left - 1, edge.y, Black)) << "beside it";
  Pick(edge.x, edge.y);
  EXPECT_TRUE(Shows(BlueSquare.left - 1, edge.y, Black)) << "the editor's layer";
  hand.GlideTo(OnCanvas(edge.x, edge.y));
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_SIZEALL)) << "the view's layer";
}

TEST_F(InputLayers, UnderAnotherToolThePointerOverALayerIsThatOfTheTool) {
  const POINT over = OnCanvas(Overlap.x + 10, Overlap.y + 10);
  Pick(Overlap.x, Overlap.y);
  hand.GlideTo(over);
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_SIZEALL));
  Choose(L"Line");
  hand.MoveTo(over);
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_CROSS)) << "at the first move over it";
  Choose(L"Selection");
  hand.GlideTo(over);
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_SIZEALL));
  // Chosen with the keyboard while the mouse stays where it is.
  const ToolBarButton line = ButtonOf(L"Line");
  PostMessageW(GetParent(line.bar), WM_COMMAND, static_cast<WPARAM>(line.id), reinterpret_cast<LPARAM>(line.bar));
  EXPECT_TRUE(hand.Await([&] { return line.IsPressed(); }));
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_CROSS)) << "before it moves";
}

TEST_F(InputLayers, TheRightAndTheBottomEdgeOfALayerCountAsInsideIt) {
  const Snapshot before = Look();
  for (const POINT edge : {POINT{BlueSquare.right, BlueSquare.top + 10}, {BlueSquare.left + 10, BlueSquare.bottom}}) {
    Pick(edge.x, edge.y);
    EXPECT_TRUE(Shows(BlueSquare.left - 1, BlueSquare.top + 20, Black)) << "it is picked";
    hand.ClickAt(OnCanvas(Away.x, Away.y));
    EXPECT_TRUE(ShowsAgain(before));
  }
  Pick(BlueSquare.right + 1, BlueSquare.top + 10);
  EXPECT_TRUE(ShowsAgain(before)) << "one pixel further is beside it";
}

TEST_F(InputLayers, APressOnALayerWithAnotherToolDrawsNothing) {
  Choose(L"Rectangle");
  const Snapshot before = Look();
  hand.MoveTo(OnCanvas(110, 110));
  hand.GlideTo(OnCanvas(110, 110));
  hand.Press();
  ASSERT_TRUE(Shows(Overlap.x, Overlap.y, Red)) << "the press brings the layer to the front";
  hand.GlideTo(OnCanvas(250, 250));
  const Snapshot whileDown = Look();
  EXPECT_TRUE(
      LiesWithin(whileDown.ChangesSince(before), {RedSquare.left, RedSquare.top, RedSquare.right, RedSquare.bottom}))
      << "no frame is drawn";
  hand.Release();
  EXPECT_TRUE(ShowsAgain(whileDown));
}

TEST_F(InputLayers, TheMouseMarksTheTopmostLayerUnderItAndRaisesIt) {
  const Snapshot before = Look();
  hand.MoveTo(OnCanvas(110, 110));
  ASSERT_TRUE(Shows(Overlap.x, Overlap.y, Red)) << "the red square is on top now";
  EXPECT_NE(Look(), before);
  hand.MoveTo(OnCanvas(210, 210));
  ASSERT_TRUE(Shows(Overlap.x, Overlap.y, Blue));
  hand.MoveTo(OnCanvas(Away.x, Away.y));
  EXPECT_TRUE(ShowsAgain(before)) << "and nothing is marked any more";
}

TEST_F(InputLayers, ADragMovesALayerOneToOne) {
  Snapshot whileDown = Look();
  DrawFrom({210, 210}, {250, 190}, whileDown);  // by 40 and -20
  hand.ClickAt(OnCanvas(Away.x, Away.y + 50));  // let go of it
  hand.MoveTo(OnCanvas(Away.x, Away.y));
  ASSERT_TRUE(Shows(BlueSquare.right + 39, BlueSquare.top - 20, Blue));
  EXPECT_EQ(whileDown.At(BlueSquare.left + 39, 170), Black) << "the frame showed where it would lie";
  ASSERT_TRUE(Shows(Overlap.x, Overlap.y, Red)) << "what it covered shows again";
  RECT both = RedSquare;
  RECT moved = BlueSquare;
  OffsetRect(&moved, 40, -20);
  UnionRect(&both, &both, &moved);
  EXPECT_TRUE(hand.Await([&] {
    const RECT changed = Look().ChangesSince(*page);
    return EqualRect(&changed, &both) != FALSE;
  }));
  EXPECT_EQ(Look().At(moved.left, moved.top), Blue);
  EXPECT_EQ(Look().At(moved.right - 1, moved.bottom - 1), Blue);
}

TEST_F(InputLayers, AHandleSizesALayer) {
  Pick(210, 210);
  DrawFrom({BlueSquare.right - 1, BlueSquare.bottom - 1}, {BlueSquare.right + 29, BlueSquare.bottom + 9});
  hand.ClickAt(OnCanvas(Away.x, Away.y + 50));
  hand.MoveTo(OnCanvas(Away.x, Away.y));
  ASSERT_TRUE(Shows(BlueSquare.right + 29, BlueSquare.bottom + 9, Blue));
  ASSERT_TRUE(Shows(BlueSquare.right + 30, BlueSquare.bottom + 9, White));
}

TEST_F(InputLayers, CtrlBSendsALayerBackAndCtrlFBringsItForward) {
  Pick(110, 110);
  ASSERT_TRUE(Shows(Overlap.x, Overlap.y, Red)) << "a picked layer comes to the front";
  hand.Strike('B', VK_CONTROL);
  ASSERT_TRUE(Shows(Overlap.x, Overlap.y, Blue));
  hand.Strike('B', VK_CONTROL);  // below it is nothing but the page
  hand.Pump();
  EXPECT_EQ(Look().At(Overlap.x, Overlap.y), Blue);
  EXPECT_EQ(Look().At(110, 110), Red);
  hand.Strike('F', VK_CONTROL);
  ASSERT_TRUE(Shows(Overlap.x, Overlap.y, Red));
}

TEST_F(InputLayers, ADoubleClickOnATextBeginsTyping) {
  const auto field = [&] { return FindWindowExW(canvas, nullptr, L"Edit", nullptr); };
  Choose(L"Text");
  hand.DragFrom(OnCanvas(250, 200), OnCanvas(330, 240));
  ASSERT_TRUE(hand.Await([&] { return field() != nullptr; }));
  hand.Type(L"one");
  hand.Strike(VK_ESCAPE);
  ASSERT_TRUE(hand.Await([&] { return field() == nullptr; }));
  Choose(L"Selection");
  hand.ClickAt(OnCanvas(300, 220));
  hand.Press();
  hand.Release();
  ASSERT_TRUE(hand.Await([&] { return field() != nullptr; }));
  EXPECT_EQ(GetWindowTextLengthW(field()), 3);
  hand.Type(L"b");  // instead of what is selected
  EXPECT_TRUE(hand.Await([&] { return GetWindowTextLengthW(field()) == 1; }));
  hand.Strike(VK_ESCAPE);
  EXPECT_TRUE(hand.Await([&] { return field() == nullptr; }));
}

TEST_F(InputLayers, AnotherPageTakesTheLayersAway) {
  Pick(110, 110);
  OpenPage();
  EXPECT_TRUE(ShowsAgain(*page));
}

}  // namespace
}  // namespace kw::test
