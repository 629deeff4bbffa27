#pragma once

#include "components/platform/Desktop.h"
#include "form/EditorForm.h"
#include "trap/Trap.h"
#include "view/Zoom.h"

namespace kw {

// The drag handles on the page's edges: releasing one resizes page and background by the distance dragged.
class Borders {
public:
  Borders(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, Zoom& zoomFactor);

private:
  void Connect(LightWeightMarker& border, const char* mouseDown, const char* mouseUp, bool isWidth, bool isHeight);
  // The distance dragged, in the screen's twips.
  void Resize(const char* procedure, std::int16_t button, float x, float y, bool isWidth, bool isHeight);

  Desktop& desktop;
  EditorForm& form;
  Trap& trap;
  Zoom& zoom;
};

}  // namespace kw
