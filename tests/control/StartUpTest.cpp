#include <set>

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

using StartUp = EditorTest;

TEST_F(StartUp, TracesTheRuleTheStampTheRuleAndThenEachProcedureInItsOrder) {
  const std::string rule(77, '*');
  const Names expected{
      rule,
      "11-15-2026 03:08:21",
      rule,
      "UserControl_Initialize",
      "sldLineHeight_Change",
      "Let EditorBackColor",
      "Let EditorForeColor",
      "Let ZoomFactor",
      "UpdateAndZoom",
      "SetScrollBarPositions",
      "Let IsToolboxVisible",
      "Get IsEditable",
      "Get IsSaveButtonEnabled",
      "Let IsSaveButtonEnabled",
      "Get IsEditable",
      "Let IsSaveButtonEnabled",
      "Get IsToolboxVisible",
      "Let IsToolboxVisible",
      "Get IsEditable",
      "RedrawToolBars",
      "tmrWatchClipBoard_Timer",
      "Get IsEditable",
      "Let SignatureFilePath",
      "Let BackGroundImage",
  };
  EXPECT_EQ(Trace(), expected);
}

TEST_F(StartUp, ShowsNoBoxAndRaisesNoEvent) {
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_TRUE(events.errors.empty());
  EXPECT_TRUE(events.changedTo.empty());
}

// The two colours are nobody's but the control's: they notify nobody.
TEST_F(StartUp, NotifiesTheContainerOfItsPropertiesOnly) {
  EXPECT_EQ(events.properties, (Names{"IsToolboxVisible", "IsSaveButtonEnabled", "IsToolboxVisible", "IsEditable",
                                      "SignatureFilePath", "BGImage"}));
}

TEST_F(StartUp, FillsTheZoomListWithSixteenFactors) {
  const ImageCombo& list = Form().cmbZoomFactor;
  const Names expected{"10 %", "20 %",  "30 %",  "40 %",  "50 %",  "60 %",  "70 %",  "80 %",
                       "90 %", "100 %", "150 %", "200 %", "250 %", "300 %", "350 %", "400 %"};
  ASSERT_EQ(list.ItemCount(), 16);
  for (std::int32_t i = 1; i <= 16; ++i) EXPECT_EQ(list.ItemText(i), expected[static_cast<std::size_t>(i - 1)]);
  EXPECT_EQ(list.Text(), "100 %");
}

TEST_F(StartUp, PutsTheLayersAtTheLeftAndShowsThePageLayerOnly) {
  EXPECT_EQ(Form().TransBackImage.Left(), 0);
  EXPECT_EQ(Form().TransLayers(1).Left(), 0);
  EXPECT_TRUE(Form().TransLayers(1).Visible());
  EXPECT_FALSE(Form().TransLayers(0).Visible());
  EXPECT_FALSE(Form().TransBackImage.Visible());
  for (const TransparentPicture* layer : {&Form().TransBackImage, &Form().TransLayers(1)}) {
    EXPECT_FALSE(layer->IsToShowBorderMarks());
    EXPECT_FALSE(layer->IsToShowResize());
  }
  EXPECT_TRUE(Form().fr.IsToShowBorderMarks());
  const auto& order = Form().picCanvas.Children();
  const auto placeOf = [&](const Control& one) { return std::find(order.begin(), order.end(), &one); };
  EXPECT_LT(placeOf(Form().TransBackImage), placeOf(Form().TransLayers(1)));
  EXPECT_EQ(control->LayerRoom().ZOrder().Order(), std::vector<std::int16_t>{1});
}

TEST_F(StartUp, HidesTheOpenButtonAndTheToolBoxIsVisible) {
  EXPECT_FALSE(Form().tbrOpenFile.Visible());
  EXPECT_TRUE(Form().kwraTools.Visible());
  EXPECT_FALSE(Form().kwraTools.Enabled());
  EXPECT_FALSE(Form().tbrBasicTools(0).Enabled());
  EXPECT_FALSE(Form().tbrBasicTools(1).Enabled());
}

TEST_F(StartUp, TakesLineSizeColoursAndZoomFromItsDefaults) {
  EXPECT_EQ(Form().sldLineHeight.Value(), 2);
  EXPECT_EQ(Form().lblLineSize1.Caption(), "Thickness 2");
  EXPECT_EQ(Form().SampleLine.Height(), 30);
  EXPECT_EQ(Form().TransLayers(1).ForeColor(), Form().SampleForeGroundColor.BackColor());
  EXPECT_EQ(Form().TransLayers(1).BackColor(), Form().SampleBackGroundColor.BackColor());
  EXPECT_EQ(control->ZoomRoom().ZoomFactor(), 1.0);
  EXPECT_EQ(Form().kwrpColors.Picture(), "Chooser.Ico");
}

TEST_F(StartUp, StartsTheWatchAndTheDefaultToolsTimersOnly) {
  EXPECT_EQ(desktop.runningTimers, (std::map<Timer*, std::int32_t>{{&Form().tmrDefaultToolsSelection, 1000},
                                                                   {&Form().tmrWatchClipBoard, 10000}}));
  EXPECT_FALSE(Form().tmrMoveLayer.Enabled());
  EXPECT_EQ(Form().tmrMoveLayer.Interval(), 10);
}

TEST_F(StartUp, LeavesUndoAndRedoAndWhatNeedsAFileDisabled) {
  for (const char* key : {"Undo", "Redo", "Paste", "ShowHideBackImage"}) EXPECT_FALSE(IsEnabled(key)) << key;
  EXPECT_FALSE(Form().tbrEditingTools.ButtonOf("Signature").enabled);
}

TEST_F(StartUp, RemovesTheScratchBitmapOfAnEarlierRun) {
  const std::string scratch = folder.File("tmp1234.bmp");
  WriteWhole(scratch, "left over");
  KwEditorLayers second(desktop, events);
  second.UserControl_Initialize();
  EXPECT_FALSE(Exists(scratch));
  EXPECT_TRUE(desktop.boxes.empty());
}

using DefaultTools = EditorTest;

TEST_F(DefaultTools, AreTextAndNoFillOneSecondAfterStartUp) {
  EXPECT_FALSE(Form().tbrEditingTools.ButtonOf("Text").pressed);
  ForgetTrace();
  ASSERT_TRUE(desktop.FireTimer(Form().tmrDefaultToolsSelection));
  EXPECT_TRUE(Form().tbrEditingTools.ButtonOf("Text").pressed);
  EXPECT_TRUE(Form().tbrFillPattern.ButtonOf("NoFillInside").pressed);
  EXPECT_EQ(Form().picCanvas.Pointer(), MousePointer::Custom);
  EXPECT_EQ(Form().picCanvas.PointerIcon(), "Text.Ico");
  EXPECT_EQ(Trace(), (Names{"tmrDefaultToolsSelection_Timer", "tbrEditingTools_ButtonClick", "ToolbarButtonClick",
                            "tbrFillPattern_ButtonClick", "ToolbarButtonClick"}));
}

TEST_F(DefaultTools, AreChosenOnce) {
  desktop.FireTimer(Form().tmrDefaultToolsSelection);
  EXPECT_FALSE(desktop.FireTimer(Form().tmrDefaultToolsSelection));
  ForgetTrace();
  Form().tmrDefaultToolsSelection.Fire();  // a tick that was already under way
  EXPECT_TRUE(Trace().empty());
}

using Keys = EditorTest;

TEST_F(Keys, OfTheControlGoToTheCanvas) {
  ForgetTrace();
  Form().editor.KeyDown.Raise(65, 2);
  Form().editor.KeyPress.Raise(1);
  Form().editor.KeyUp.Raise(46, 0);
  EXPECT_EQ(Trace(), (Names{"UserControl_KeyDown", "picCanvas_KeyDown", "UserControl_KeyPress", "picCanvas_KeyPress",
                            "UserControl_KeyUp", "picCanvas_KeyUp"}));
}

// The effect of a key tells which key it was.
TEST_F(Keys, OfTheControlGoThereUnchanged) {
  desktop.Expect("copy", 2);
  desktop.Expect("cut", 2);
  desktop.Expect("clear", 2);
  control->OpenFile(MakeImage("scan.bmp"));
  const auto effectOf = [&](const auto& event, auto... key) {
    ForgetTrace();
    desktop.boxes.clear();
    event.Raise(key...);
    Names effect = Trace();
    for (const auto& box : desktop.boxes) effect.push_back(box.prompt);
    return effect;
  };
  const auto behind = [](const char* name, Names effect) {
    effect.insert(effect.begin(), name);
    return effect;
  };
  std::set<Names> effects;
  for (std::int16_t key = 0; key < 256; ++key) {
    const Names onCanvas = effectOf(Form().picCanvas.KeyPress, key);
    EXPECT_EQ(effectOf(Form().editor.KeyPress, key), behind("UserControl_KeyPress", onCanvas)) << key;
    effects.insert(onCanvas);
    const Names upOnCanvas = effectOf(Form().picCanvas.KeyUp, key, std::int16_t{1});
    EXPECT_EQ(effectOf(Form().editor.KeyUp, key, std::int16_t{1}), behind("UserControl_KeyUp", upOnCanvas)) << key;
    effects.insert(upOnCanvas);
  }
  EXPECT_GT(effects.size(), 6U);
}

using Painting = EditorTest;

TEST_F(Painting, ChecksTheClipboardAgain) {
  desktop.clipboardFormats = {8};
  ForgetTrace();
  Form().editor.UserPaint();
  EXPECT_EQ(Trace(), (Names{"UserControl_Paint", "tmrWatchClipBoard_Timer", "Get IsEditable"}));
  EXPECT_TRUE(IsEnabled("Paste"));
  EXPECT_TRUE(Form().mnuPasteSelectedArea.Enabled());
  desktop.clipboardFormats = {1, 2};
  Form().editor.UserPaint();
  EXPECT_FALSE(IsEnabled("Paste"));
  EXPECT_FALSE(Form().mnuPasteSelectedArea.Enabled());
}

TEST_F(Painting, LeavesPasteDisabledWhileTheControlIsNotEditable) {
  desktop.clipboardFormats = {8};
  control->LetIsEditable(false);
  Form().editor.UserPaint();
  EXPECT_FALSE(IsEnabled("Paste"));
}

using ShutDown = EditorTest;

TEST_F(ShutDown, StopsEveryTimerFreesEveryPictureAndLeavesTheTrace) {
  control->OpenFile(MakeImage("scan.bmp"));
  ASSERT_TRUE(Form().TransLayers(1).HasPicture());
  ASSERT_TRUE(Exists(folder.File("tmp1234.bmp")));
  control->UserControl_Terminate();
  EXPECT_TRUE(desktop.runningTimers.empty());
  EXPECT_FALSE(Form().TransLayers(1).HasPicture());
  EXPECT_FALSE(Form().picCanvas.Enabled());
  EXPECT_FALSE(Exists(folder.File("tmp1234.bmp")));
  EXPECT_TRUE(Exists(folder.File("FunctionsInExecution.txt")));
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(ShutDown, TakesEveryIntervalAndEveryPicture) {
  control->OpenFile(MakeImage("scan.bmp"));
  control->LetBGImage(MakeImage("back.bmp"));
  Form().picTempBuffer.SetPicture(Bitmap(3, 3, 24));
  Form().fr.SetPicture(Bitmap(3, 3, 24));
  control->UserControl_Terminate();
  for (const Timer* timer : {&Form().tmrDefaultToolsSelection, &Form().tmrWatchClipBoard, &Form().tmrMoveLayer}) {
    EXPECT_EQ(timer->Interval(), 0) << timer->Name();
  }
  EXPECT_FALSE(Form().TransBackImage.HasPicture());
  EXPECT_FALSE(Form().fr.HasPicture());
  EXPECT_TRUE(Form().picTempBuffer.Picture().IsEmpty());
  EXPECT_EQ(Form().kwrpColors.Picture(), "");
}

TEST_F(ShutDown, LeavesTheFirstChildOut) {
  control->UserControl_Terminate();
  const std::vector<Control*> children = Form().Controls();
  EXPECT_TRUE(children.front()->Enabled());
  for (std::size_t i = 1; i < children.size(); ++i) EXPECT_FALSE(children[i]->Enabled()) << children[i]->Name();
}

TEST_F(ShutDown, WithoutAScratchBitmapReportsNothing) {
  control->UserControl_Terminate();
  EXPECT_TRUE(desktop.boxes.empty());
}

using Layout = EditorTest;

TEST_F(Layout, FillsTheControlWithTheViewportAndItsScrollBars) {
  Form().editor.UserResize(1000, 700);
  const PictureBox& frame = Form().picFrame;
  EXPECT_EQ(frame.Left() + frame.Width() + Form().vScroll.Width(), 1000);
  EXPECT_EQ(frame.Top() + frame.Height() + Form().hScroll.Height(), 700);
  EXPECT_EQ(Form().vScroll.Left(), frame.Left() + frame.Width());
  EXPECT_EQ(Form().vScroll.Height(), frame.Height());
  EXPECT_EQ(Form().hScroll.Top(), frame.Top() + frame.Height());
  EXPECT_EQ(Form().hScroll.Width(), frame.Width());
}

TEST_F(Layout, PutsTheToolBoxTenUnitsIntoTheBottomRightCornerOfTheViewport) {
  for (const float width : {1000.0F, 640.0F}) {
    Form().editor.UserResize(width, 700);
    const PictureBox& frame = Form().picFrame;
    const RaisedArea& box = Form().kwraTools;
    EXPECT_EQ(box.Left() + box.Width() + 10, frame.Left() + frame.Width());
    EXPECT_EQ(box.Top() + box.Height() + 10, frame.Top() + frame.Height());
  }
}

TEST_F(Layout, KeepsTheViewportWhereTheControlIsTooSmall) {
  const float width = Form().picFrame.Width();
  const float height = Form().picFrame.Height();
  Form().editor.UserResize(3, 3);
  EXPECT_EQ(Form().picFrame.Width(), width);
  EXPECT_EQ(Form().picFrame.Height(), height);
  EXPECT_TRUE(events.errors.empty());
}

TEST_F(Layout, TracesTheViewportsResizeWithinItsOwn) {
  ForgetTrace();
  Form().editor.UserResize(900, 700);
  EXPECT_EQ(Trace(), (Names{"UserControl_Resize", "PicFrame_Resize", "SetScrollBarPositions", "SetScrollBalValues"}));
}

TEST_F(Layout, WithoutTheOpenButtonTheBasicBarStartsFourUnitsAfterTheSeparator) {
  const RaisedArea& separator = Form().kwraToolBarFixedSeperator;
  EXPECT_EQ(Form().tbrBasicTools(0).Left(), separator.Left() + separator.Width() + 4);
  control->LetIsOpenButtonVisible(true);
  EXPECT_EQ(Form().tbrOpenFile.Left(), separator.Left() + separator.Width() + 4);
  EXPECT_EQ(Form().tbrBasicTools(0).Left(), Form().tbrOpenFile.Left() + Form().tbrOpenFile.Width() + 4);
}

}  // namespace
}  // namespace kw::test
