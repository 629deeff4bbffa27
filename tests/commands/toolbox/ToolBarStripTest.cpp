// Where the tool bars of the strip lie.

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

class Strip : public EditorTest {
protected:
  Strip() {
    Form().editor.UserResize(1000, 800);
    control->OpenFile(MakeImage("page.bmp"));
  }
  RaisedArea& First() { return Form().kwraBasicToolsContainer(0); }
  RaisedArea& Second() { return Form().kwraBasicToolsContainer(1); }
  // Sizes of which none is the sum of others, in the unit of what holds each.
  void SetOddSizes() {
    First().Move(70, 80, 5, 31);
    Second().Move(90, 0, 5, 17);
    Form().kwraToolBarFixedSeperator.Move(45, 10, 77, 300);
    Form().tbrOpenFile.Move(0, 10, 411, 300);
    Form().tbrBasicTools(0).Move(0, 10, 4003, 300);
    Form().frZoomFactorContainer.Move(0, 0, 1234, 333);
    Form().kwraToolBarSeperator.Move(33, 10, 71, 300);
    Form().tbrBasicTools(1).Move(0, 10, 1507, 300);
  }
  void LayOut(bool hasOpenButton) { control->LetIsOpenButtonVisible(hasOpenButton); }
  static void ExpectAt(const Control& control, float left, float top, float width, float height) {
    EXPECT_FLOAT_EQ(control.Left(), left) << control.Name();
    EXPECT_FLOAT_EQ(control.Top(), top) << control.Name();
    EXPECT_FLOAT_EQ(control.Width(), width) << control.Name();
    EXPECT_FLOAT_EQ(control.Height(), height) << control.Name();
  }
};

TEST_F(Strip, LiesInOneRowFromTheSeparatorOn) {
  SetOddSizes();
  LayOut(false);
  ExpectAt(Form().tbrBasicTools(0), 126, 10, 4003, 300);
  ExpectAt(Form().tbrBasicTools(1), 108, 10, 1507, 300);
  // Two twips behind the bar; in the middle of 31 pixels.
  ExpectAt(Form().frZoomFactorContainer, 4131, 66, 1234, 333);
  ExpectAt(First(), 1, 1, 5365.0F / 15 + 2, 31);
  ExpectAt(Second(), 1 + 5365.0F / 15 + 2 + 1, 1, 1615.0F / 15 + 1, 31);
  EXPECT_EQ(Form().picFrame.Top(), 33);
}

TEST_F(Strip, HasTheOpenButtonBeforeTheOthers) {
  SetOddSizes();
  LayOut(true);
  ExpectAt(Form().tbrOpenFile, 126, 10, 411, 300);
  ExpectAt(Form().tbrBasicTools(0), 541, 10, 4003, 300);
  ExpectAt(Form().frZoomFactorContainer, 4546, 66, 1234, 333);
  ExpectAt(First(), 1, 1, 5780.0F / 15 + 2, 31);
}

TEST_F(Strip, HasASecondRowBelowTheFirstWithItsOwnHeight) {
  SetOddSizes();
  Second().SetTop(31);
  LayOut(false);
  ExpectAt(First(), 1, 1, 5365.0F / 15 + 2, 31);
  ExpectAt(Second(), 1, 33, 1615.0F / 15 + 1, 17);
  EXPECT_EQ(Form().picFrame.Top(), 51);
}

TEST_F(Strip, IsInTwoRowsFromTheTopThatIsTheHeightOfTheFirst) {
  SetOddSizes();
  Second().SetTop(30);
  LayOut(false);
  EXPECT_EQ(Second().Top(), First().Top());
  Second().SetTop(31);
  LayOut(false);
  EXPECT_EQ(Second().Top(), 33);
}

TEST_F(Strip, APressOnAContainerChangesBetweenOneRowAndTwo) {
  const RaisedArea& first = Form().kwraBasicToolsContainer(0);
  const RaisedArea& second = Form().kwraBasicToolsContainer(1);
  ForgetTrace();
  second.MouseDown.Raise(1, 0, 0, 0);
  EXPECT_EQ(second.Left(), first.Left());
  EXPECT_EQ(second.Top(), first.Top() + first.Height() + 1);
  EXPECT_EQ(Form().picFrame.Top(), second.Top() + second.Height() + 1);
  EXPECT_EQ(Form().picFrame.Top() + Form().picFrame.Height() + Form().hScroll.Height(), 800);
  EXPECT_EQ(Trace(), (Names{"kwraBasicToolsContainer_MouseDown", "pictbrBasicToolsContainer_DblClick", "RedrawToolBars",
                            "UserControl_Resize", "PicFrame_Resize", "SetScrollBarPositions", "SetScrollBalValues",
                            "SetScrollBarPositions"}));
  second.MouseDown.Raise(1, 0, 0, 0);
  EXPECT_EQ(second.Top(), first.Top());
  EXPECT_EQ(second.Left(), first.Left() + first.Width() + 1);
}

TEST_F(Strip, AnotherButtonChangesNoRows) {
  const float top = Form().kwraBasicToolsContainer(1).Top();
  Form().kwraBasicToolsContainer(1).MouseDown.Raise(2, 0, 0, 0);
  EXPECT_EQ(Form().kwraBasicToolsContainer(1).Top(), top);
}

}  // namespace
}  // namespace kw::test
