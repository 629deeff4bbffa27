#include "form/EditorForm.h"

#include <string>

namespace kw {
namespace {

// One hosted control at design time: what holds it and where, in pixels whatever the container's unit is.
struct Placement {
  Control& control;
  Control& container;
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
  bool isVisible = true;
};

constexpr bool Hidden = false;

void PlaceIn(const Placement& row) {
  const float unit = row.container.ScaleUnit() == Unit::Twips ? TwipsPerPixel : 1.0F;
  row.control.SetContainer(&row.container);
  row.control.Move(row.left * unit, row.top * unit, row.width * unit, row.height * unit);
  row.control.SetVisible(row.isVisible);
}

void AddAll(ToolBar& bar, ButtonStyle style, std::initializer_list<const char*> keys) {
  for (const char* key : keys) bar.AddButton({.key = key, .toolTip = key, .image = key, .style = style});
}

void AddPush(ToolBar& bar, const char* key, const char* toolTip) {
  bar.AddButton({.key = key, .toolTip = toolTip, .image = key});
}

void AddGap(ToolBar& bar) { bar.AddButton({.style = ButtonStyle::Separator}); }

}  // namespace

EditorForm::EditorForm(Desktop& desktop)
    : tmrDefaultToolsSelection("tmrDefaultToolsSelection", desktop),
      tmrWatchClipBoard("tmrWatchClipBoard", desktop),
      tmrMoveLayer("tmrMoveLayer", desktop),
      KWScannerCtl1("KWScannerCtl1", desktop) {
  AddButtons();
  Place();
  SetDesignValues();
  NameControls();
}

void EditorForm::AddButtons() {
  AddPush(tbrOpenFile, "Open", "Open File");

  ToolBar& basic = tbrBasicTools(0);
  AddPush(basic, "Save", "Save File");
  AddGap(basic);
  AddPush(basic, "Print", "Print");
  AddPush(basic, "PrinterSetup", "Printer Setup");
  AddGap(basic);
  AddPush(basic, "SelectScanner", "Scanner Setup");
  AddPush(basic, "Acquire", "Acquire Image from Scanner");
  AddGap(basic);
  AddPush(basic, "Clear", "Clear");
  basic.AddButton({.key = "Cut", .toolTip = "Cut", .image = "Cut", .visible = false});
  AddPush(basic, "Copy", "Copy");
  AddPush(basic, "Paste", "Paste");
  AddGap(basic);
  basic.AddButton({.key = "Undo", .toolTip = "Undo", .image = "Undo", .enabled = false});
  basic.AddButton({.key = "Redo", .toolTip = "Redo", .image = "Redo", .enabled = false});
  AddGap(basic);
  AddPush(basic, "ZoomIn", "Zoom In");
  AddPush(basic, "ZoomOut", "Zoom Out");

  ToolBar& pages = tbrBasicTools(1);
  AddPush(pages, "ShowHideTools", "Show/Hide Tools");
  AddPush(pages, "ShowHideBackImage", "Show/Hide Background Image");
  AddGap(pages);
  AddPush(pages, "PrevPage", "Previous Page");
  AddPush(pages, "NextPage", "Next Page");

  tbrFillPattern.AddButton(
      {.key = "NoFillInside", .toolTip = "No Fill Inside", .image = "NoFillInside", .style = ButtonStyle::Group});
  tbrFillPattern.AddButton(
      {.key = "FillInside", .toolTip = "Fill Inside", .image = "FillInside", .style = ButtonStyle::Group});
  AddPush(tbrFonts, "FontSettings", "Font Settings");

  AddPush(tbrMoreTools, "GrayScale", "Grayscale");
  AddAll(tbrMoreTools, ButtonStyle::Push,
         {"Invert", "Contrast", "Soften", "Sharpen", "Darken", "Lighten", "Blur", "Colorize", "Dilate", "Dither",
          "Edge", "Emboss", "Option", "Threshold"});
  AddGap(tbrMoreTools);
  tbrMoreTools.AddButton(
      {.key = "IncreaseBpp", .toolTip = "Increase Bpp", .caption = "Bpp (+)", .image = "IncreaseBpp"});
  tbrMoreTools.AddButton(
      {.key = "DecreaseBpp", .toolTip = "Decrease Bpp", .caption = "Bpp (-)", .image = "DecreaseBpp"});
}

void EditorForm::Place() {
  for (Control* container :
       {static_cast<Control*>(&kwraBasicToolsContainer(0)), static_cast<Control*>(&kwraBasicToolsContainer(1)),
        static_cast<Control*>(&frZoomFactorContainer), static_cast<Control*>(&kwraTools),
        static_cast<Control*>(&kwraInnerTools), static_cast<Control*>(&kwraFillPatternToolbarContainer),
        static_cast<Control*>(&kwraFontToolbarContainer), static_cast<Control*>(&kwraChooseColorTool),
        static_cast<Control*>(&kwraPrintingStatus), static_cast<Control*>(&kwraScanningStatus)}) {
    container->SetScaleUnit(Unit::Twips);
  }
  editor.UserResize(860, 640);

  RaisedArea& basic = kwraBasicToolsContainer(0);
  RaisedArea& pages = kwraBasicToolsContainer(1);
  const Placement rows[] = {
      {KwLogCtl1, editor, 0, 0, 0, 0, Hidden},

      // The order is back to front.
      {picFrame, editor, 1, 32, 840, 590},
      {picCanvas, picFrame, 0, 0, 2, 2},
      {TransBackImage, picCanvas, 0, 0, 0, 0, Hidden},
      {TransLayers(0), picCanvas, 0, 0, 0, 0, Hidden},
      {TransLayers(1), picCanvas, 0, 0, 0, 0, Hidden},
      {BorderBottom, picCanvas, 0, 0, 0, 2},
      {BorderRight, picCanvas, 0, 0, 2, 0},
      {BorderCorner, picCanvas, 0, 0, 2, 2},
      {Label1, picCanvas, 16, 16, 180, 16, Hidden},
      {Label2, picCanvas, 16, 36, 180, 16, Hidden},
      {point1(0), picCanvas, 0, 0, 2, 2, Hidden},
      {fr, picCanvas, 0, 0, 0, 0, Hidden},
      {vScroll, editor, 841, 32, 17, 590},
      {hScroll, editor, 1, 622, 840, 17},
      {picTempBuffer, editor, 0, 0, 1, 1, Hidden},

      {basic, editor, 1, 1, 426, 30},
      {kwraToolBarFixedSeperator, basic, 2, 3, 6, 24},
      {tbrOpenFile, basic, 8, 3, 26, 24},
      {tbrBasicTools(0), basic, 8, 3, 332, 24},
      {frZoomFactorContainer, basic, 342, 3, 80, 24},
      {cmbZoomFactor, frZoomFactorContainer, 1, 1, 78, 22},
      {pages, editor, 428, 1, 391, 30},
      {kwraToolBarSeperator, pages, 2, 3, 6, 24},
      {tbrBasicTools(1), pages, 8, 3, 386, 24},
      {lblPageNo, pages, 122, 8, 120, 15},
      {cmbPageNo, pages, 151, 4, 53, 22},
      {PageIndex, pages, 236, 4, 17, 22, Hidden},
      {lblImageSize, pages, 252, 8, 138, 15},

      {kwraTools, editor, 680, 270, 160, 342},
      {kwrpHideToolBox, kwraTools, 142, 3, 14, 14},
      {kwraInnerTools, kwraTools, 4, 19, 152, 52},
      {tbrEditingTools, kwraInnerTools, 2, 2, 148, 48},
      {kwraFillPatternToolbarContainer, kwraTools, 4, 74, 74, 30},
      {tbrFillPattern, kwraFillPatternToolbarContainer, 2, 3, 70, 24},
      {kwraFontToolbarContainer, kwraTools, 82, 74, 74, 30},
      {tbrFonts, kwraFontToolbarContainer, 2, 3, 70, 24},
      {kwraChooseColorTool, kwraTools, 4, 107, 152, 52},
      {SampleForeGroundColor, kwraChooseColorTool, 4, 4, 30, 22},
      {SampleBackGroundColor, kwraChooseColorTool, 38, 4, 30, 22},
      {lblSampleColor, kwraChooseColorTool, 4, 30, 144, 18},
      {lblLineSize1, kwraTools, 8, 163, 144, 14},
      {SampleLine, kwraTools, 10, 186, 140, 1},
      {sldLineHeight, kwraTools, 4, 192, 152, 26},
      {lblLineSize2, kwraTools, 8, 219, 76, 14},
      {tbrMoreTools, kwraTools, 6, 238, 146, 100},
      {kwrpColors, kwraTools, 4, 162, 152, 96, Hidden},

      {kwraPrintingStatus, editor, 300, 250, 260, 88, Hidden},
      {lblPrintingStatus, kwraPrintingStatus, 12, 14, 236, 16},
      {chkCancelPrinting, kwraPrintingStatus, 90, 48, 80, 26},
      {kwraScanningStatus, editor, 300, 250, 260, 88, Hidden},
      {lblScanningStatus, kwraScanningStatus, 12, 14, 236, 16},
      {chkCancelScanning, kwraScanningStatus, 90, 48, 80, 26},

      {mnuImgSelectedArea, editor, 0, 0, 0, 0, Hidden},
      {mnuCopySelectedArea, mnuImgSelectedArea},
      {mnuCutSelectedArea, mnuImgSelectedArea},
      {mnuMergeDown, mnuImgSelectedArea},
      {mnuImgZoom, mnuImgSelectedArea, 0, 0, 0, 0, Hidden},
      {mnuPasteSelectedArea, mnuImgSelectedArea},
      {mnuSelectAll, mnuImgSelectedArea},

      {imgLstMousePointers, editor, 0, 0, 0, 0, Hidden},
      {tmrDefaultToolsSelection, editor, 0, 0, 0, 0, Hidden},
      {tmrWatchClipBoard, editor, 0, 0, 0, 0, Hidden},
      {tmrMoveLayer, editor, 0, 0, 0, 0, Hidden},
      {KWScannerCtl1, editor, 0, 0, 0, 0, Hidden},
  };
  for (const Placement& row : rows) PlaceIn(row);
}

void EditorForm::SetDesignValues() {
  constexpr Colour black = MakeColour(0, 0, 0);
  constexpr Colour white = MakeColour(255, 255, 255);
  picFrame.SetBackColor(MakeColour(128, 128, 128));
  for (LightWeightMarker* border : {&BorderBottom, &BorderRight, &BorderCorner}) {
    border->SetColor(MakeColour(64, 64, 64));
  }
  BorderBottom.SetPointer(MousePointer::SizeNS);
  BorderRight.SetPointer(MousePointer::SizeWE);
  BorderCorner.SetPointer(MousePointer::SizeNWSE);
  Label1.SetCaption("Click here to add layers");
  Label2.SetCaption("Label2");

  cmbZoomFactor.SetToolTip("Zoom");
  lblPageNo.SetCaption("Page" + std::string(20, ' ') + "of 1");
  cmbPageNo.SetToolTip("Page");
  PageIndex.SetMax(0);

  kwrpHideToolBox.SetToolTip("Hide Tools");
  kwrpHideToolBox.SetPicture("HideToolBox");
  kwrpHideToolBox.SetIsButton(true);
  for (Label* sample : {&SampleForeGroundColor, &SampleBackGroundColor, &lblSampleColor}) sample->SetBorder(true);
  SampleForeGroundColor.SetBackColor(black);
  SampleForeGroundColor.SetToolTip("Foreground Color");
  SampleBackGroundColor.SetBackColor(white);
  SampleBackGroundColor.SetToolTip("Background Color");
  SampleLine.SetBackColor(black);
  sldLineHeight.SetMin(1);
  sldLineHeight.SetMax(10);
  sldLineHeight.SetToolTip("Line Thickness");
  for (Label* caption : {&lblLineSize1, &lblLineSize2}) caption->SetPointer(MousePointer::SizeWE);

  lblScanningStatus.SetCaption("Scanning.. Please wait");
  chkCancelPrinting.SetCaption("Cancel");
  chkCancelScanning.SetCaption("Cancel");
  for (CheckBox* cancel : {&chkCancelPrinting, &chkCancelScanning}) cancel->SetIsButton(true);

  mnuImgSelectedArea.SetCaption("Selected Area");
  mnuCopySelectedArea.SetCaption("&Copy");
  mnuCutSelectedArea.SetCaption("Cu&t");
  mnuMergeDown.SetCaption("&Merge");
  mnuImgZoom.SetCaption("ImgZoom Area");
  mnuPasteSelectedArea.SetCaption("&Paste");
  mnuSelectAll.SetCaption("Select &All");

  tmrDefaultToolsSelection.SetInterval(1000);
  tmrWatchClipBoard.SetInterval(10000);
  tmrMoveLayer.SetInterval(10);
}

namespace {

void Collect(Control& container, std::vector<Control*>& all) {
  for (Control* child : container.Children()) {
    all.push_back(child);
    Collect(*child, all);
  }
}

}  // namespace

void EditorForm::HoldTimers(bool value) {
  for (Timer* const timer : {&tmrDefaultToolsSelection, &tmrWatchClipBoard, &tmrMoveLayer}) timer->Hold(value);
}

std::vector<Control*> EditorForm::Controls() {
  std::vector<Control*> all;
  Collect(editor, all);
  return all;
}

}  // namespace kw
