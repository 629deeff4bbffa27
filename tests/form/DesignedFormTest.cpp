// The form as it is designed: the place and contents of each control, the buttons of the tool bars.

#include "tests/support/FormLook.h"

#include <gtest/gtest.h>

#include "tests/support/EditorFixture.h"

namespace kw::test {
namespace {

class DesignedForm : public testing::Test {
protected:
  ScriptedDesktop desktop;
  RecordedEvents events;
  KwEditorLayers control{desktop, events};
  EditorForm& form = control.Form();
};

// Controls on the form and in the viewport are placed in pixels; those in a container of the tool bars, in the tool box
// or in a status panel in twips, 15 to a pixel.
TEST_F(DesignedForm, HasEachControlInItsPlaceFromBackToFront) {
  const Lines expected{
      "KwEditorLayers > KwLogCtl1: 0 0 0 0 hidden",
      "KwEditorLayers > picFrame: 1 32 840 590",
      "picFrame > picCanvas: 0 0 2 2",
      "picCanvas > TransBackImage: 0 0 0 0 hidden",
      "picCanvas > TransLayers(0): 0 0 0 0 hidden",
      "picCanvas > TransLayers(1): 0 0 0 0 hidden",
      "picCanvas > BorderBottom: 0 0 0 2",
      "picCanvas > BorderRight: 0 0 2 0",
      "picCanvas > BorderCorner: 0 0 2 2",
      "picCanvas > Label1: 16 16 180 16 hidden",
      "picCanvas > Label2: 16 36 180 16 hidden",
      "picCanvas > point1(0): 0 0 2 2 hidden",
      "picCanvas > fr: 0 0 0 0 hidden",
      "KwEditorLayers > vScroll: 841 32 17 590",
      "KwEditorLayers > hScroll: 1 622 840 17",
      "KwEditorLayers > picTempBuffer: 0 0 1 1 hidden",
      "KwEditorLayers > kwraBasicToolsContainer(0): 1 1 426 30",
      "kwraBasicToolsContainer(0) > kwraToolBarFixedSeperator: 30 45 90 360",
      "kwraBasicToolsContainer(0) > tbrOpenFile: 120 45 390 360",
      "kwraBasicToolsContainer(0) > tbrBasicTools(0): 120 45 4980 360",
      "kwraBasicToolsContainer(0) > frZoomFactorContainer: 5130 45 1200 360",
      "frZoomFactorContainer > cmbZoomFactor: 15 15 1170 330",
      "KwEditorLayers > kwraBasicToolsContainer(1): 428 1 391 30",
      "kwraBasicToolsContainer(1) > kwraToolBarSeperator: 30 45 90 360",
      "kwraBasicToolsContainer(1) > tbrBasicTools(1): 120 45 5790 360",
      "kwraBasicToolsContainer(1) > lblPageNo: 1830 120 1800 225",
      "kwraBasicToolsContainer(1) > cmbPageNo: 2265 60 795 330",
      "kwraBasicToolsContainer(1) > PageIndex: 3540 60 255 330 hidden",
      "kwraBasicToolsContainer(1) > lblImageSize: 3780 120 2070 225",
      "KwEditorLayers > kwraTools: 680 270 160 342",
      "kwraTools > kwrpHideToolBox: 2130 45 210 210",
      "kwraTools > kwraInnerTools: 60 285 2280 780",
      "kwraInnerTools > tbrEditingTools: 30 30 2220 720",
      "kwraTools > kwraFillPatternToolbarContainer: 60 1110 1110 450",
      "kwraFillPatternToolbarContainer > tbrFillPattern: 30 45 1050 360",
      "kwraTools > kwraFontToolbarContainer: 1230 1110 1110 450",
      "kwraFontToolbarContainer > tbrFonts: 30 45 1050 360",
      "kwraTools > kwraChooseColorTool: 60 1605 2280 780",
      "kwraChooseColorTool > SampleForeGroundColor: 60 60 450 330",
      "kwraChooseColorTool > SampleBackGroundColor: 570 60 450 330",
      "kwraChooseColorTool > lblSampleColor: 60 450 2160 270",
      "kwraTools > lblLineSize1: 120 2445 2160 210",
      "kwraTools > SampleLine: 150 2790 2100 15",
      "kwraTools > sldLineHeight: 60 2880 2280 390",
      "kwraTools > lblLineSize2: 120 3285 1140 210",
      "kwraTools > tbrMoreTools: 90 3570 2190 1500",
      "kwraTools > kwrpColors: 60 2430 2280 1440 hidden",
      "KwEditorLayers > kwraPrintingStatus: 300 250 260 88 hidden",
      "kwraPrintingStatus > lblPrintingStatus: 180 210 3540 240",
      "kwraPrintingStatus > chkCancelPrinting: 1350 720 1200 390",
      "KwEditorLayers > kwraScanningStatus: 300 250 260 88 hidden",
      "kwraScanningStatus > lblScanningStatus: 180 210 3540 240",
      "kwraScanningStatus > chkCancelScanning: 1350 720 1200 390",
      "KwEditorLayers > mnuImgSelectedArea: 0 0 0 0 hidden",
      "mnuImgSelectedArea > mnuCopySelectedArea: 0 0 0 0",
      "mnuImgSelectedArea > mnuCutSelectedArea: 0 0 0 0",
      "mnuImgSelectedArea > mnuMergeDown: 0 0 0 0",
      "mnuImgSelectedArea > mnuImgZoom: 0 0 0 0 hidden",
      "mnuImgSelectedArea > mnuPasteSelectedArea: 0 0 0 0",
      "mnuImgSelectedArea > mnuSelectAll: 0 0 0 0",
      "KwEditorLayers > imgLstMousePointers: 0 0 0 0 hidden",
      "KwEditorLayers > tmrDefaultToolsSelection: 0 0 0 0 hidden",
      "KwEditorLayers > tmrWatchClipBoard: 0 0 0 0 hidden",
      "KwEditorLayers > tmrMoveLayer: 0 0 0 0 hidden",
      "KwEditorLayers > KWScannerCtl1: 0 0 0 0 hidden",
  };
  EXPECT_EQ(PlacesOf(form), expected);
  EXPECT_EQ(form.editor.Width(), 12900);
  EXPECT_EQ(form.editor.Height(), 9600);
}

TEST_F(DesignedForm, HasItsCaptionsColoursPointersAndIntervals) {
  const Lines expected{
      "KwLogCtl1:",
      "picFrame: back=128,128,128",
      "picCanvas:",
      "TransBackImage:",
      "TransLayers(0):",
      "TransLayers(1):",
      "BorderBottom: pointer=7 colour=64,64,64",
      "BorderRight: pointer=9 colour=64,64,64",
      "BorderCorner: pointer=8 colour=64,64,64",
      "Label1: caption=Click here to add layers",
      "Label2: caption=Label2",
      "point1(0):",
      "fr:",
      "vScroll: max=10 vertical large=1 small=1",
      "hScroll: max=10 large=1 small=1",
      "picTempBuffer:",
      "kwraBasicToolsContainer(0): twips",
      "kwraToolBarFixedSeperator:",
      "tbrOpenFile:",
      "tbrBasicTools(0):",
      "frZoomFactorContainer: twips",
      "cmbZoomFactor: tip=Zoom",
      "kwraBasicToolsContainer(1): twips",
      "kwraToolBarSeperator:",
      "tbrBasicTools(1):",
      "lblPageNo: caption=Page                    of 1",
      "cmbPageNo: tip=Page",
      "PageIndex: max=0",
      "lblImageSize:",
      "kwraTools: twips",
      "kwrpHideToolBox: tip=Hide Tools picture=HideToolBox button",
      "kwraInnerTools: twips",
      "tbrEditingTools:",
      "kwraFillPatternToolbarContainer: twips",
      "tbrFillPattern:",
      "kwraFontToolbarContainer: twips",
      "tbrFonts:",
      "kwraChooseColorTool: twips",
      "SampleForeGroundColor: tip=Foreground Color back=0,0,0 bordered",
      "SampleBackGroundColor: tip=Background Color back=255,255,255 bordered",
      "lblSampleColor: bordered",
      "lblLineSize1: pointer=9",
      "SampleLine: back=0,0,0",
      "sldLineHeight: tip=Line Thickness min=1 max=10 value=1",
      "lblLineSize2: pointer=9",
      "tbrMoreTools:",
      "kwrpColors:",
      "kwraPrintingStatus: twips",
      "lblPrintingStatus:",
      "chkCancelPrinting: caption=Cancel button",
      "kwraScanningStatus: twips",
      "lblScanningStatus: caption=Scanning.. Please wait",
      "chkCancelScanning: caption=Cancel button",
      "mnuImgSelectedArea: caption=Selected Area",
      "mnuCopySelectedArea: caption=&Copy",
      "mnuCutSelectedArea: caption=Cu&t",
      "mnuMergeDown: caption=&Merge",
      "mnuImgZoom: caption=ImgZoom Area",
      "mnuPasteSelectedArea: caption=&Paste",
      "mnuSelectAll: caption=Select &All",
      "imgLstMousePointers:",
      "tmrDefaultToolsSelection: disabled interval=1000",
      "tmrWatchClipBoard: disabled interval=10000",
      "tmrMoveLayer: disabled interval=10",
      "KWScannerCtl1:",
  };
  EXPECT_EQ(ValuesOf(form), expected);
}

TEST_F(DesignedForm, HasTheButtonsOfTheCommandsInTheStrip) {
  EXPECT_EQ(ButtonsOf(form.tbrOpenFile), Lines{"Open: Open File"});
  const Lines first{
      "Save: Save File",
      "|",
      "Print: Print",
      "PrinterSetup: Printer Setup",
      "|",
      "SelectScanner: Scanner Setup",
      "Acquire: Acquire Image from Scanner",
      "|",
      "Clear: Clear",
      "Cut: Cut hidden",
      "Copy: Copy",
      "Paste: Paste",
      "|",
      "Undo: Undo disabled",
      "Redo: Redo disabled",
      "|",
      "ZoomIn: Zoom In",
      "ZoomOut: Zoom Out",
  };
  EXPECT_EQ(ButtonsOf(form.tbrBasicTools(0)), first);
  const Lines second{
      "ShowHideTools: Show/Hide Tools",
      "ShowHideBackImage: Show/Hide Background Image",
      "|",
      "PrevPage: Previous Page",
      "NextPage: Next Page",
  };
  EXPECT_EQ(ButtonsOf(form.tbrBasicTools(1)), second);
}

TEST_F(DesignedForm, HasTheButtonsOfTheToolBox) {
  const Lines tools{
      "NoTools: Selection grouped",   "Chooser: Color Picker grouped",
      "Fill: Fill Color grouped",     "Pen: Pen grouped",
      "Text: Text grouped",           "Line: Line grouped",
      "Rectangle: Rectangle grouped", "Circle: Circle grouped",
      "Rubber: Rubber grouped",       "Image: Image grouped",
      "Signature: Signature grouped", "Stamp: Stamp grouped",
  };
  EXPECT_EQ(ButtonsOf(form.tbrEditingTools), tools);
  EXPECT_EQ(ButtonsOf(form.tbrFillPattern),
            (Lines{"NoFillInside: No Fill Inside grouped", "FillInside: Fill Inside grouped"}));
  EXPECT_EQ(ButtonsOf(form.tbrFonts), Lines{"FontSettings: Font Settings"});
  const Lines more{
      "GrayScale: Grayscale",
      "Invert: Invert",
      "Contrast: Contrast",
      "Soften: Soften",
      "Sharpen: Sharpen",
      "Darken: Darken",
      "Lighten: Lighten",
      "Blur: Blur",
      "Colorize: Colorize",
      "Dilate: Dilate",
      "Dither: Dither",
      "Edge: Edge",
      "Emboss: Emboss",
      "Option: Option",
      "Threshold: Threshold",
      "|",
      "IncreaseBpp: Increase Bpp (Bpp (+))",
      "DecreaseBpp: Decrease Bpp (Bpp (-))",
  };
  EXPECT_EQ(ButtonsOf(form.tbrMoreTools), more);
}

TEST_F(DesignedForm, HasThePointersOfSixTools) {
  for (const char* key : {"Chooser.Ico", "Fill.Ico", "Pen.Ico", "Rubber.Ico", "Stamp.Ico", "Text.Ico"}) {
    EXPECT_EQ(form.imgLstMousePointers.Picture(key), key);
  }
}

}  // namespace
}  // namespace kw::test
