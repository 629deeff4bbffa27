#pragma once

#include <vector>

#include "components/controls/CheckBox.h"
#include "components/controls/ControlArray.h"
#include "components/controls/ImageCombo.h"
#include "components/controls/ImageList.h"
#include "components/controls/Label.h"
#include "components/controls/LightWeightMarker.h"
#include "components/controls/Log.h"
#include "components/controls/Menu.h"
#include "components/controls/PictureBox.h"
#include "components/controls/RaisedArea.h"
#include "components/controls/RangeControl.h"
#include "components/controls/Scanner.h"
#include "components/controls/Timer.h"
#include "components/controls/ToolBar.h"
#include "components/controls/TransparentPicture.h"
#include "components/controls/UserControl.h"
#include "components/platform/Desktop.h"

namespace kw {

// Every control that the editor hosts, with its design-time values: the tree that the rooms work on and that the views
// show. Children of the form and of the viewport are placed in pixels, what lies inside a tool bar container, the tool
// box or a status panel in twips.
class EditorForm {
public:
  // The desktop must outlive the form.
  explicit EditorForm(Desktop& desktop);
  EditorForm(const EditorForm&) = delete;
  EditorForm& operator=(const EditorForm&) = delete;

  // The hosted controls, control array items and those loaded since included, menus too, the editor itself not: each
  // container before what it holds, from back to front.
  std::vector<Control*> Controls();
  // Holds all timers, or lets them run again.
  void HoldTimers(bool value);

  UserControl editor{"KwEditorLayers"};
  Log KwLogCtl1{"KwLogCtl1"};

  // View: the viewport, the drawing surface in it, and what lies on that.
  PictureBox picFrame{"picFrame"};
  PictureBox picCanvas{"picCanvas"};
  TransparentPicture TransBackImage{"TransBackImage"};
  ControlArray<TransparentPicture> TransLayers{"TransLayers", 2};
  TransparentPicture fr{"fr"};
  ControlArray<LightWeightMarker> point1{"point1", 1};
  LightWeightMarker BorderBottom{"BorderBottom"};
  LightWeightMarker BorderRight{"BorderRight"};
  LightWeightMarker BorderCorner{"BorderCorner"};
  ScrollBar vScroll{"vScroll", true};
  ScrollBar hScroll{"hScroll", false};
  PictureBox picTempBuffer{"picTempBuffer"};

  // Tool bar strip.
  ControlArray<RaisedArea> kwraBasicToolsContainer{"kwraBasicToolsContainer", 2};
  RaisedArea kwraToolBarFixedSeperator{"kwraToolBarFixedSeperator"};
  ToolBar tbrOpenFile{"tbrOpenFile"};
  ControlArray<ToolBar> tbrBasicTools{"tbrBasicTools", 2};
  Frame frZoomFactorContainer{"frZoomFactorContainer"};
  ImageCombo cmbZoomFactor{"cmbZoomFactor"};
  RaisedArea kwraToolBarSeperator{"kwraToolBarSeperator"};
  Label lblPageNo{"lblPageNo"};
  ImageCombo cmbPageNo{"cmbPageNo"};
  PageSpinner PageIndex{"PageIndex"};
  Label lblImageSize{"lblImageSize"};

  // Tool box.
  RaisedArea kwraTools{"kwraTools"};
  RaisedPicture kwrpHideToolBox{"kwrpHideToolBox"};
  RaisedArea kwraInnerTools{"kwraInnerTools"};
  ToolBar tbrEditingTools{"tbrEditingTools"};
  RaisedArea kwraFillPatternToolbarContainer{"kwraFillPatternToolbarContainer"};
  ToolBar tbrFillPattern{"tbrFillPattern"};
  RaisedArea kwraFontToolbarContainer{"kwraFontToolbarContainer"};
  ToolBar tbrFonts{"tbrFonts"};
  RaisedArea kwraChooseColorTool{"kwraChooseColorTool"};
  Label SampleForeGroundColor{"SampleForeGroundColor"};
  Label SampleBackGroundColor{"SampleBackGroundColor"};
  Label lblSampleColor{"lblSampleColor"};
  RaisedPicture kwrpColors{"kwrpColors"};
  Label lblLineSize1{"lblLineSize1"};
  Label SampleLine{"SampleLine"};
  Slider sldLineHeight{"sldLineHeight"};
  Label lblLineSize2{"lblLineSize2"};
  ToolBar tbrMoreTools{"tbrMoreTools"};

  // Status panels.
  RaisedArea kwraPrintingStatus{"kwraPrintingStatus"};
  Label lblPrintingStatus{"lblPrintingStatus"};
  CheckBox chkCancelPrinting{"chkCancelPrinting"};
  RaisedArea kwraScanningStatus{"kwraScanningStatus"};
  Label lblScanningStatus{"lblScanningStatus"};
  CheckBox chkCancelScanning{"chkCancelScanning"};
  Label Label1{"Label1"};
  Label Label2{"Label2"};

  Menu mnuImgSelectedArea{"mnuImgSelectedArea"};
  Menu mnuCopySelectedArea{"mnuCopySelectedArea"};
  Menu mnuCutSelectedArea{"mnuCutSelectedArea"};
  Menu mnuMergeDown{"mnuMergeDown"};
  Menu mnuImgZoom{"mnuImgZoom"};
  Menu mnuPasteSelectedArea{"mnuPasteSelectedArea"};
  Menu mnuSelectAll{"mnuSelectAll"};

  // Without a window.
  ImageList imgLstMousePointers{"imgLstMousePointers"};
  Timer tmrDefaultToolsSelection;
  Timer tmrWatchClipBoard;
  Timer tmrMoveLayer;
  Scanner KWScannerCtl1;

private:
  void AddButtons();
  void Place();
  void SetDesignValues();
  void NameControls();
};

}  // namespace kw
