#pragma once

#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "trap/Trap.h"

namespace kw {

// The strip of tool bars above the page.
class ToolBarStrip : private EditorContext {
public:
  explicit ToolBarStrip(const EditorContext& context);

  // Lays out the strip in one row or in two, told by where the second container lies, and the viewport below it.
  void RedrawToolBars();

private:
};

}  // namespace kw
