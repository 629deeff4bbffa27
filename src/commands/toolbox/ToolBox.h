#pragma once

#include <cstdint>

#include "document/EditorProperties.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Trap.h"

namespace kw {

// The floating tool box: dragged by its surface within the viewport, hidden by its button.
class ToolBox {
public:
  ToolBox(EditorForm& editorForm, Trap& errorTrap, EditorProperties& editorProperties, Layers& layerArray);

private:
  // Positions in the unit of what holds the control: of the tool box in pixels, of its button in twips. The button
  // tells of a press when that ends, so one that ends beside it hides nothing.
  void kwraTools_MouseDown(std::int16_t button, float x, float y);
  void kwraTools_MouseMove(std::int16_t button, float x, float y);
  void kwraTools_MouseUp(std::int16_t button);
  void EndDrag();
  void kwrpHideToolBox_MouseDown(float x, float y);

  void Follow(float x, float y);

  EditorForm& form;
  Trap& trap;
  EditorProperties& properties;
  Layers& layers;
  bool m_IsToolboxDragging = false;
};

}  // namespace kw
