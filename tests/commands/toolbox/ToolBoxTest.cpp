#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

class ToolBoxTest : public EditorTest {
protected:
  ToolBoxTest() {
    Form().editor.UserResize(1000, 800);
    control->OpenFile(MakeImage("page.bmp"));
  }
  RaisedArea& Box() { return Form().kwraTools; }
  float FrameRight() { return Form().picFrame.Left() + Form().picFrame.Width(); }
  float FrameBottom() { return Form().picFrame.Top() + Form().picFrame.Height(); }
  void Press(float x, float y) { Box().MouseDown.Raise(1, 0, x, y); }
  void Move(float x, float y) { Box().MouseMove.Raise(1, 0, x, y); }
  void Release() { Box().MouseUp.Raise(1, 0, 0, 0); }
};

TEST_F(ToolBoxTest, FollowsThePointerOneToOneWhileTheLeftButtonIsHeld) {
  const float left = Box().Left();
  const float top = Box().Top();
  Press(20, 10);
  EXPECT_EQ(Box().Pointer(), MousePointer::SizeAll);
  Move(15, 4);
  EXPECT_EQ(Box().Left(), left - 5);
  EXPECT_EQ(Box().Top(), top - 6);
  Release();
  EXPECT_EQ(Box().Pointer(), MousePointer::Default);
  Move(0, 0);
  EXPECT_EQ(Box().Left(), left - 5);
}

TEST_F(ToolBoxTest, PastTheTopEdgeStopsSixPixelsBelowItUntilTheNextPress) {
  Press(10, 10);
  Move(10, -5000);
  EXPECT_EQ(Box().Top(), Form().picFrame.Top() + 6);
  Move(10, 200);
  EXPECT_EQ(Box().Top(), Form().picFrame.Top() + 6);
  Press(10, 10);
  Move(10, 40);
  EXPECT_EQ(Box().Top(), Form().picFrame.Top() + 36);
}

TEST_F(ToolBoxTest, PastTheRightEdgeStopsSixPixelsFromItThoughFiveAreAllowed) {
  Box().SetLeft(FrameRight() - Box().Width() - 20);
  Press(10, 10);
  Move(25, 10);
  EXPECT_EQ(Box().Left(), FrameRight() - Box().Width() - 5);
  Move(11, 10);
  EXPECT_EQ(Box().Left(), FrameRight() - Box().Width() - 6);
}

TEST_F(ToolBoxTest, PastTheLeftAndTheBottomEdgeStopsSixPixelsFromThem) {
  Press(10, 10);
  Move(-5000, 10);
  EXPECT_EQ(Box().Left(), Form().picFrame.Left() + 6);
  Move(60, 10);
  EXPECT_EQ(Box().Left(), Form().picFrame.Left() + 6);
  Release();
  const float bottom = FrameBottom() - Box().Height();
  Box().SetTop(bottom - 20);
  Press(10, 10);
  Move(10, 25);
  EXPECT_EQ(Box().Top(), bottom - 5);
  Move(10, 11);
  EXPECT_EQ(Box().Top(), bottom - 6);
  Move(10, 0);
  EXPECT_EQ(Box().Top(), bottom - 6);
}

TEST_F(ToolBoxTest, EveryHandlerTracesItsName) {
  ForgetTrace();
  Press(10, 10);
  Move(11, 11);
  Release();
  Form().kwrpHideToolBox.MouseDown.Raise(1, 0, -1, 0);
  Form().kwraBasicToolsContainer(0).MouseMove.Raise(1, 0, 5, 5);
  Form().kwraBasicToolsContainer(1).MouseUp.Raise(1, 0, 5, 5);
  Form().sldLineHeight.LostFocus.Raise();
  EXPECT_EQ(Trace(), (Names{"kwraTools_MouseDown", "kwraTools_MouseMove", "kwraTools_MouseUp",
                            "kwrpHideToolBox_MouseDown", "kwraBasicToolsContainer_MouseMove",
                            "pictbrBasicToolsContainer_MouseUp", "sldLineHeight_LostFocus"}));
}

TEST_F(ToolBoxTest, OtherButtonsDoNothing) {
  const float left = Box().Left();
  Box().MouseDown.Raise(2, 0, 10, 10);
  Box().MouseMove.Raise(2, 0, 50, 10);
  EXPECT_EQ(Box().Left(), left);
  EXPECT_EQ(Box().Pointer(), MousePointer::Default);
}

TEST_F(ToolBoxTest, AnotherButtonInADragNeitherMovesNorEndsIt) {
  const float left = Box().Left();
  Press(20, 10);
  Box().MouseDown.Raise(2, 0, 3, 3);
  Box().MouseMove.Raise(Mouse::LeftButton | Mouse::RightButton, 0, 15, 10);
  EXPECT_EQ(Box().Left(), left) << "both buttons are held";
  Box().MouseUp.Raise(2, 0, 15, 10);
  EXPECT_EQ(Box().Pointer(), MousePointer::SizeAll);
  Move(15, 10);
  EXPECT_EQ(Box().Left(), left - 5);
}

TEST_F(ToolBoxTest, TheLossOfTheMouseEndsTheDrag) {
  const float left = Box().Left();
  Press(20, 10);
  Move(15, 10);
  ForgetTrace();
  Box().MouseLost.Raise();
  EXPECT_EQ(Trace(), Names{});
  EXPECT_EQ(Box().Pointer(), MousePointer::Default);
  Move(0, 10);
  EXPECT_EQ(Box().Left(), left - 5);
}

// The button reports a press at its end, with the place of the end.
TEST_F(ToolBoxTest, ItsButtonHidesItUnlessThePressEndsOutside) {
  const RaisedPicture& button = Form().kwrpHideToolBox;
  EXPECT_TRUE(button.IsButton());
  const float width = button.Width();
  const float height = button.Height();
  const std::pair<float, float> outside[] = {{-1, 5}, {5, -1}, {width + 1, 5}, {5, height + 1}};
  for (const auto& [x, y] : outside) {
    button.MouseDown.Raise(1, 0, x, y);
    EXPECT_TRUE(Box().Visible()) << x << ", " << y;
  }
  const std::pair<float, float> inside[] = {{0, 0}, {width, 0}, {0, height}, {width, height}, {width / 2, height / 2}};
  for (const auto& [x, y] : inside) {
    control->LetIsToolboxVisible(true);
    button.MouseDown.Raise(1, 0, x, y);
    EXPECT_FALSE(Box().Visible()) << x << ", " << y;
  }
}

}  // namespace
}  // namespace kw::test
