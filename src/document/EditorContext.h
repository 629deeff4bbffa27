#pragma once

#include "components/engine/KWPicEd.h"
#include "components/platform/Desktop.h"
#include "document/DocumentProcedure.h"
#include "document/EditorState.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "members/EditorEvents.h"
#include "trap/Trap.h"
#include "view/Zoom.h"

namespace kw {

// What the parts of the editor work with. A part derives from it privately, and so has these names for its own; all of
// it must outlive the part.
struct EditorContext {
  Desktop& desktop;
  EditorEvents& events;
  EditorForm& form;
  Trap& trap;
  Layers& layers;
  Zoom& zoom;
  EditorState& state;
  Openings& openings;
  KWPicEd& KWPic;            // holds the current page
  KWPicEd& KWPicTempBuffer;  // for pictures on their way
};

}  // namespace kw
