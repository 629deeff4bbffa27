#pragma once

#include "form/EditorForm.h"
#include "trap/Trap.h"

namespace kw {

// The strip of tool bars above the page.
class ToolBarStrip {
public:
  ToolBarStrip(EditorForm& editorForm, Trap& errorTrap);

  // Lays out the strip in one row or in two, told by where the second container lies, and the viewport below it.
  void RedrawToolBars();

private:
  EditorForm& form;
  Trap& trap;
};

}  // namespace kw
