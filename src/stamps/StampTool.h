#pragma once

#include <string>

#include "components/platform/Desktop.h"
#include "document/DocumentProcedure.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "stamps/Stamp.h"
#include "stamps/frmApprovedXTimes.h"
#include "trap/Trap.h"

namespace kw {

// The stamp tool: asks in the dialog what to stamp and lays it on the page as floating layers. The last stamp, the
// count and the signature's tick are offered again.
class StampTool : private EditorContext {
public:
  // Everything passed in must outlive the tool.
  explicit StampTool(const EditorContext& context);

  // Asks, and unless the user cancels stamps the page at (x, y) of the canvas, in the current layer's font, bold, and
  // the foreground colour. If another document was opened while the dialog was up, nothing is stamped; what is
  // offered again is kept.
  void PlaceStamp(float x, float y);

private:
  Stamp StampOf(const std::string& text, bool hasSignature) const;
  void ShowPreview(frmApprovedXTimes& dialog, TransparentPicture& text, TransparentPicture& picture) const;
  void MakeLayers(const Stamp& stamp, float x, float y);

  std::string lastStamp;
  std::int32_t lastItem = 0;  // its place in the list; 0: it was typed
  std::string noOfTimes = "1";
  bool isToAttachSignature = false;
};

}  // namespace kw
