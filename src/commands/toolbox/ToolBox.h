#pragma once

#include <cstdint>

#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Trap.h"

namespace kw {

// The floating tool box: dragged by its surface within the viewport, hidden by its button.
class ToolBox : private EditorContext {
public:
  explicit ToolBox(const EditorContext& context);

private:
  // Positions in the unit of what holds the control: of the tool box in pixels, of its button in twips. The button
  // tells of a press when that ends, so one that ends beside it hides nothing.
  void kwraTools_MouseDown(std::int16_t button, float x, float y);
  void kwraTools_MouseMove(std::int16_t button, float x, float y);
  void kwraTools_MouseUp(std::int16_t button);
  void EndDrag();
  void kwrpHideToolBox_MouseDown(float x, float y);

  void Follow(float x, float y);

  bool m_IsToolboxDragging = false;
};

}  // namespace kw
