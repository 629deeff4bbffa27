// What a screen reader calls the hosted controls that have neither caption nor tool tip.

#include "components/controls/AccessibleTexts.h"
#include "form/EditorForm.h"

namespace kw {

void EditorForm::NameControls() {
  struct Name {
    Control& control;
    const char* name;
    AccessibleRole role = AccessibleRole::Standard;
  };
  const Name rows[] = {
      {editor, accessible::Editor},
      {picFrame, accessible::View},
      {picCanvas, accessible::Canvas, AccessibleRole::Document},
      {TransBackImage, accessible::Background},
      {TransLayers(1), accessible::Page},
      {BorderBottom, accessible::BottomBorder},
      {BorderRight, accessible::RightBorder},
      {BorderCorner, accessible::CornerBorder},
      {vScroll, accessible::VerticalScroll},
      {hScroll, accessible::HorizontalScroll},
      {picTempBuffer, accessible::Scratch},

      {kwraBasicToolsContainer(0), accessible::FileStrip},
      {kwraToolBarFixedSeperator, accessible::Separator, AccessibleRole::Separator},
      {tbrOpenFile, accessible::OpenBar},
      {tbrBasicTools(0), accessible::BasicBar},
      {frZoomFactorContainer, accessible::Zoom},
      {cmbZoomFactor, accessible::Zoom},
      {kwraBasicToolsContainer(1), accessible::PageStrip},
      {kwraToolBarSeperator, accessible::Separator, AccessibleRole::Separator},
      {tbrBasicTools(1), accessible::PageBar},
      {lblPageNo, accessible::PageCount},
      {cmbPageNo, accessible::PageList},
      {PageIndex, accessible::PageSpinner},
      {lblImageSize, accessible::ImageSize},

      {kwraTools, accessible::ToolBox},
      {kwraInnerTools, accessible::Tools},
      {tbrEditingTools, accessible::EditingBar},
      {kwraFillPatternToolbarContainer, accessible::FillArea},
      {tbrFillPattern, accessible::FillBar},
      {kwraFontToolbarContainer, accessible::FontArea},
      {tbrFonts, accessible::FontBar},
      {kwraChooseColorTool, accessible::ColourArea},
      {SampleForeGroundColor, "", AccessibleRole::Button},
      {SampleBackGroundColor, "", AccessibleRole::Button},
      {lblSampleColor, accessible::ColourReadOut},
      {kwrpColors, accessible::Palette},
      {lblLineSize1, accessible::LineThickness},
      {SampleLine, accessible::LineSample, AccessibleRole::Graphic},
      {lblLineSize2, accessible::LineThickness},
      {tbrMoreTools, accessible::EffectsBar},

      {kwraPrintingStatus, accessible::PrintingPanel},
      {lblPrintingStatus, accessible::PrintingPanel},
      {kwraScanningStatus, accessible::ScanningPanel},
      {lblScanningStatus, accessible::ScanningPanel},
  };
  for (const Name& row : rows) {
    row.control.SetAccessibleName(row.name);
    row.control.SetRoleOfDesign(row.role);
  }
}

}  // namespace kw
