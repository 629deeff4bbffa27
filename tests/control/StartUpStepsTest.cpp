// Start-up corrects any state that it finds, and the layout stays right without further help.

#include <type_traits>

#include "tests/support/EditorFixture.h"
#include "tests/support/FormLook.h"

namespace kw::test {
namespace {

using StartUpSteps = EditorTest;

TEST_F(StartUpSteps, PutRightWhateverTheyFind) {
  KwEditorLayers second(desktop, events);
  EditorForm& form = second.Form();
  for (TransparentPicture* layer : {&form.TransBackImage, &form.TransLayers(1)}) {
    layer->Move(5, 6, 7, 8);
    layer->SetIsToShowBorderMarks(true);
    layer->SetIsToShowResize(true);
  }
  form.TransBackImage.SetPicture(Bitmap(2, 2, 24));
  form.TransBackImage.SetVisible(true);
  form.fr.ZOrder();
  second.LayerRoom().ZOrder().Append(2);
  form.picTempBuffer.SetPicture(Bitmap(3, 3, 24));
  form.kwraTools.SetVisible(false);
  form.tbrBasicTools(0).SetButtonEnabled("Save", false);
  form.tbrBasicTools(0).SetButtonEnabled("Print", false);
  form.picCanvas.SetEnabled(false);
  form.picFrame.SetEnabled(false);
  form.vScroll.Move(0, 0, 17, 5);
  form.hScroll.Move(0, 0, 5, 17);
  form.SampleForeGroundColor.SetBackColor(MakeColour(1, 2, 3));
  form.SampleBackGroundColor.SetBackColor(MakeColour(4, 5, 6));
  desktop.clipboardFormats = {8};

  second.UserControl_Initialize();

  EXPECT_EQ(PlaceOf(form.TransBackImage), "0 6 7 8");
  EXPECT_EQ(PlaceOf(form.TransLayers(1)), "0 6 7 8");
  EXPECT_EQ(ValuesOf(form.TransBackImage), "TransBackImage:");
  EXPECT_EQ(ValuesOf(form.TransLayers(1)), "TransLayers(1): fore=1,2,3 back=4,5,6 fill=4,5,6");
  EXPECT_FALSE(form.TransBackImage.Visible());
  EXPECT_TRUE(form.TransLayers(1).Visible());
  const std::vector<Control*>& canvas = form.picCanvas.Children();
  EXPECT_EQ(canvas[canvas.size() - 2], &form.TransBackImage);
  EXPECT_EQ(canvas.back(), &form.TransLayers(1));
  EXPECT_EQ(second.LayerRoom().ZOrder().Order(), std::vector<std::int16_t>{1});
  EXPECT_TRUE(form.picTempBuffer.Picture().IsEmpty());
  EXPECT_TRUE(form.kwraTools.Visible());
  EXPECT_TRUE(form.tbrBasicTools(0).ButtonOf("Save").enabled);
  EXPECT_TRUE(form.tbrBasicTools(0).ButtonOf("Print").enabled);
  EXPECT_TRUE(form.tbrBasicTools(0).ButtonOf("Paste").enabled) << "there is a picture on the clipboard";
  EXPECT_TRUE(form.picCanvas.Enabled());
  EXPECT_TRUE(form.picFrame.Enabled());
  EXPECT_EQ(PlaceOf(form.vScroll), "841 32 17 590");
  EXPECT_EQ(PlaceOf(form.hScroll), "1 622 840 17");
  EXPECT_EQ(ValuesOf(form.lblSampleColor), "lblSampleColor: fore=1,2,3 back=4,5,6 bordered");
}

TEST_F(StartUpSteps, BeginWithTheDefaultsOfTheProperties) {
  KwEditorLayers second(desktop, events);
  EXPECT_FALSE(second.m_IsFileChanged);
  EXPECT_FALSE(second.GetIsToShowBackImage());
  EXPECT_FALSE(second.GetIsToLightenBackImage());
  EXPECT_FALSE(second.GetIsToSaveAsMultiPageFile());
  EXPECT_TRUE(second.GetIsEditable());
  EXPECT_TRUE(second.GetIsSaveButtonEnabled());
  EXPECT_EQ(second.GetMaxUndoLevels(), 5);
  EXPECT_EQ(second.OpenedDocument().CurrentPageNo(), 0);
  EXPECT_EQ(second.LayerRoom().CurrentLayerIndex(), 1);
  EXPECT_EQ(second.ZoomRoom().ZoomFactor(), 1.0);
}

TEST_F(StartUpSteps, BeginWithNoPageChangeToIgnore) {
  desktop.Expect("File Error: Invalid file format..");
  ForgetTrace();
  control->OpenedDocument().PageIndex_Change();
  const Names trace = Trace();
  ASSERT_GE(trace.size(), 3U);
  EXPECT_EQ(Names(trace.begin(), trace.begin() + 3),
            (Names{"PageIndex_Change", "Get IsSaveButtonEnabled", "Get IsFileChanged"}));
}

TEST_F(StartUpSteps, NoToolBoxIsDraggedBeforeItsFirstPress) {
  const std::string place = PlaceOf(Form().kwraTools);
  Form().kwraTools.MouseMove.Raise(1, 0, 5, 5);
  EXPECT_EQ(PlaceOf(Form().kwraTools), place);
}

using Resizing = EditorTest;

TEST_F(Resizing, PutsTheScrollBarsAlongAViewportThatKeepsItsSize) {
  Form().vScroll.Move(0, 0, 17, 5);
  Form().hScroll.Move(0, 0, 5, 17);
  Form().kwraTools.Move(0, 0);
  Form().editor.UserResize(3, 3);
  EXPECT_EQ(PlaceOf(Form().picFrame), "1 32 840 590");
  EXPECT_EQ(PlaceOf(Form().vScroll), "841 32 17 590");
  EXPECT_EQ(PlaceOf(Form().hScroll), "1 622 840 17");
  EXPECT_EQ(PlaceOf(Form().kwraTools), "671 270 160 342");
}

TEST_F(Resizing, LeavesTheViewportOnePixelAtLeast) {
  Form().editor.UserResize(18, 49);
  EXPECT_EQ(PlaceOf(Form().picFrame), "1 32 840 590");
  Form().editor.UserResize(19, 49);
  EXPECT_EQ(PlaceOf(Form().picFrame), "1 32 1 590");
  Form().editor.UserResize(860, 50);
  EXPECT_EQ(PlaceOf(Form().picFrame), "1 32 842 1");
}

TEST_F(Resizing, ASecondRowBeginsAtTheHeightOfTheFirst) {
  RaisedArea& second = Form().kwraBasicToolsContainer(1);
  second.SetTop(30);
  second.MouseDown.Raise(1, 0, 0, 0);
  EXPECT_EQ(second.Top(), 1);
  second.SetTop(29);
  second.MouseDown.Raise(1, 0, 0, 0);
  EXPECT_EQ(second.Top(), 32);
}

}  // namespace
}  // namespace kw::test
