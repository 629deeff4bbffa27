#pragma once

#include <string>

#include "components/Desktop.h"
#include "document/EditorProperties.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "stamps/Stamp.h"
#include "stamps/frmApprovedXTimes.h"
#include "trap/Trap.h"

namespace kw {

// The stamp tool: asks in the dialog what to stamp and lays it on the page as floating layers. The last stamp, the
// count and the signature's tick are offered again.
class StampTool {
public:
  // What is referred to must outlive the tool.
  StampTool(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, EditorProperties& editorProperties,
            Layers& layerArray);

  // Asks, and unless the user cancels stamps the page at (x, y) of the canvas, in the current layer's font, bold, and
  // the foreground colour.
  void PlaceStamp(float x, float y);

private:
  Stamp StampOf(const std::string& text, bool hasSignature) const;
  void ShowPreview(frmApprovedXTimes& dialog, TransparentPicture& text, TransparentPicture& picture) const;
  void MakeLayers(const Stamp& stamp, float x, float y);

  Desktop& desktop;
  EditorForm& form;
  Trap& trap;
  EditorProperties& editor;
  Layers& layers;
  std::string lastStamp;
  std::string noOfTimes = "1";
  bool isToAttachSignature = false;
};

}  // namespace kw
