// All that can be seen of the control changes in what each step of its life is for and in nothing else.

#include "tests/support/EditorFixture.h"
#include "tests/support/FormLook.h"

namespace kw::test {
namespace {

class Look : public EditorTest {
protected:
  // The lines of the look that are new since the last call.
  Lines News() {
    Lines now = LookOf(Form());
    Lines lines = NewLines(last, now);
    last = std::move(now);
    return lines;
  }
  void ChooseDefaultTools() {
    desktop.FireTimer(Form().tmrDefaultToolsSelection);
    News();
  }

private:
  KwEditorLayers designed{desktop, events};
  Lines last = LookOf(designed.Form());
};

TEST_F(Look, AfterStartUp) {
  const Lines expected{
      "picCanvas > TransLayers(1): 0 0 0 0",
      "KwEditorLayers > kwraBasicToolsContainer(0): 1 1 422.4 30",
      "kwraBasicToolsContainer(0) > tbrOpenFile: 120 45 390 360 hidden",
      "kwraBasicToolsContainer(0) > tbrBasicTools(0): 124 45 4980 360",
      "kwraBasicToolsContainer(0) > frZoomFactorContainer: 5106 45 1200 360",
      "KwEditorLayers > kwraBasicToolsContainer(1): 424.4 1 395.267 30",
      "kwraBasicToolsContainer(1) > tbrBasicTools(1): 124 45 5790 360",
      "kwraTools > SampleLine: 150 2835 2100 30",
      "kwraTools > lblLineSize2: 370.909 3285 1140 210",
      "fr: border marks",
      "tbrBasicTools(0): disabled",
      "cmbZoomFactor: tip=Zoom items=16 selected=10 text=100 %",
      "tbrBasicTools(1): disabled",
      "kwraTools: twips disabled",
      "lblSampleColor: back=255,255,255 bordered",
      "lblLineSize1: pointer=9 caption=Thickness 2",
      "sldLineHeight: tip=Line Thickness min=1 max=10 value=2",
      "lblLineSize2: pointer=9 caption=Thickness 2",
      "kwrpColors: picture=Chooser.Ico",
      "mnuPasteSelectedArea: disabled caption=&Paste",
      "tmrDefaultToolsSelection: interval=1000",
      "tmrWatchClipBoard: interval=10000",
      "tbrBasicTools(0) Paste: Paste disabled",
      "tbrBasicTools(1) ShowHideBackImage: Show/Hide Background Image disabled",
      "tbrEditingTools Signature: Signature grouped disabled",
  };
  EXPECT_EQ(News(), expected);
}

TEST_F(Look, AfterTheDefaultToolsAreChosen) {
  News();
  desktop.FireTimer(Form().tmrDefaultToolsSelection);
  const Lines expected{
      "picCanvas: pointer=99 icon=Text.Ico",
      "tmrDefaultToolsSelection: disabled interval=1000",
      "tbrEditingTools Text: Text grouped pressed",
      "tbrFillPattern NoFillInside: No Fill Inside grouped pressed",
  };
  EXPECT_EQ(News(), expected);
}

TEST_F(Look, WithAPage) {
  ChooseDefaultTools();
  control->OpenFile(MakeImage("page.bmp", 400, 300));
  const Lines expected{
      "picFrame > picCanvas: 0 0 402 302",
      "picCanvas > BorderBottom: 0 300 400 2",
      "picCanvas > BorderRight: 400 0 2 300",
      "picCanvas > BorderCorner: 400 300 2 2",
      "picCanvas > TransLayers(1): 0 0 400 300",
      "TransLayers(1): picture",
      "vScroll: disabled max=0 vertical large=1 small=1",
      "hScroll: disabled max=0 large=1 small=1",
      "tbrBasicTools(0):",
      "tbrBasicTools(1):",
      "cmbPageNo: tip=Page items=1 selected=1 text=1",
      "lblImageSize: caption=Size: 400 x 300",
      "kwraTools: twips",
      "tmrDefaultToolsSelection: interval=1000",
      "tbrBasicTools(0) Save: Save File disabled",
      "tbrBasicTools(1) PrevPage: Previous Page disabled",
      "tbrBasicTools(1) NextPage: Next Page disabled",
  };
  EXPECT_EQ(News(), expected);
}

TEST_F(Look, WhileItIsNotEditableAndAgainEditable) {
  ChooseDefaultTools();
  control->OpenFile(MakeImage("page.bmp", 400, 300));
  News();
  control->LetIsEditable(false);
  const Lines expected{
      "KwEditorLayers > kwraTools: 680 270 160 342 hidden",
      "picFrame: disabled back=128,128,128",
      "picCanvas: pointer=99 icon=Text.Ico disabled",
      "tbrBasicTools(0) Print: Print disabled",
      "tbrBasicTools(0) PrinterSetup: Printer Setup disabled",
      "tbrBasicTools(0) SelectScanner: Scanner Setup disabled",
      "tbrBasicTools(0) Acquire: Acquire Image from Scanner disabled",
      "tbrBasicTools(0) Clear: Clear disabled",
      "tbrBasicTools(0) Cut: Cut disabled hidden",
      "tbrBasicTools(0) Copy: Copy disabled",
      "tbrBasicTools(0) ZoomIn: Zoom In disabled",
      "tbrBasicTools(0) ZoomOut: Zoom Out disabled",
      "tbrBasicTools(1) ShowHideTools: Show/Hide Tools disabled",
  };
  EXPECT_EQ(News(), expected);
  control->LetIsEditable(true);
  const Lines again{
      "picFrame: back=128,128,128",
      "picCanvas: pointer=99 icon=Text.Ico",
      "tbrBasicTools(0) Save: Save File",
      "tbrBasicTools(0) Print: Print",
      "tbrBasicTools(0) PrinterSetup: Printer Setup",
      "tbrBasicTools(0) SelectScanner: Scanner Setup",
      "tbrBasicTools(0) Acquire: Acquire Image from Scanner",
      "tbrBasicTools(0) Clear: Clear",
      "tbrBasicTools(0) Cut: Cut hidden",
      "tbrBasicTools(0) Copy: Copy",
      "tbrBasicTools(0) Paste: Paste",
      "tbrBasicTools(0) ZoomIn: Zoom In",
      "tbrBasicTools(0) ZoomOut: Zoom Out",
      "tbrBasicTools(1) ShowHideTools: Show/Hide Tools",
      "tbrBasicTools(1) ShowHideBackImage: Show/Hide Background Image",
      "tbrBasicTools(1) PrevPage: Previous Page",
      "tbrBasicTools(1) NextPage: Next Page",
  };
  EXPECT_EQ(News(), again);
}

TEST_F(Look, InAnotherSize) {
  ChooseDefaultTools();
  control->OpenFile(MakeImage("page.bmp", 400, 300));
  News();
  Form().editor.UserResize(1000, 700);
  const Lines expected{
      "KwEditorLayers > picFrame: 1 32 982 651",
      "KwEditorLayers > vScroll: 983 32 17 651",
      "KwEditorLayers > hScroll: 1 683 982 17",
      "KwEditorLayers > kwraTools: 813 331 160 342",
  };
  EXPECT_EQ(News(), expected);
}

TEST_F(Look, WithThreePages) {
  ChooseDefaultTools();
  control->OpenFile(MakeImage("page.bmp", 400, 300));
  News();
  control->OpenFile(MakeDocument("d.tif", 3));
  const Lines expected{
      "picFrame > picCanvas: 0 0 12 22",
      "picCanvas > BorderBottom: 0 20 10 2",
      "picCanvas > BorderRight: 10 0 2 20",
      "picCanvas > BorderCorner: 10 20 2 2",
      "picCanvas > TransLayers(1): 0 0 10 20",
      "lblPageNo: caption=Page                    of 3",
      "cmbPageNo: tip=Page items=3 selected=1 text=1",
      "PageIndex: min=1 max=3 value=1",
      "lblImageSize: caption=Size: 10 x 20",
      "tbrBasicTools(1) NextPage: Next Page",
  };
  EXPECT_EQ(News(), expected);
}

TEST_F(Look, AfterAFileThatCannotBeRead) {
  desktop.Expect("File Error: Invalid file format..");
  ChooseDefaultTools();
  control->OpenFile(MakeImage("page.bmp", 400, 300));
  News();
  control->OpenFile(folder.File("none.bmp"));
  const Lines expected{
      "KwEditorLayers > kwraTools: 680 270 160 342 hidden",
      "picFrame: disabled back=128,128,128",
      "picCanvas: pointer=99 icon=Text.Ico disabled",
      "TransLayers(1):",
      "tbrBasicTools(0): disabled",
      "frZoomFactorContainer: twips disabled",
      "tbrBasicTools(1): disabled",
      "lblImageSize:",
      "kwraTools: twips disabled",
      "tbrBasicTools(0) Print: Print disabled",
      "tbrBasicTools(0) PrinterSetup: Printer Setup disabled",
      "tbrBasicTools(0) SelectScanner: Scanner Setup disabled",
      "tbrBasicTools(0) Acquire: Acquire Image from Scanner disabled",
      "tbrBasicTools(0) Clear: Clear disabled",
      "tbrBasicTools(0) Cut: Cut disabled hidden",
      "tbrBasicTools(0) Copy: Copy disabled",
      "tbrBasicTools(0) ZoomIn: Zoom In disabled",
      "tbrBasicTools(0) ZoomOut: Zoom Out disabled",
      "tbrBasicTools(1) ShowHideTools: Show/Hide Tools disabled",
  };
  EXPECT_EQ(News(), expected);
}

}  // namespace
}  // namespace kw::test
