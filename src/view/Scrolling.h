#pragma once

#include "form/EditorForm.h"
#include "trap/Trap.h"

namespace kw {

// The viewport's scroll bars.
class Scrolling {
public:
  // How far beyond the page's edge the bars reach, so that the edge can be brought fully into view.
  static constexpr float Margin = 300;

  Scrolling(EditorForm& editorForm, Trap& errorTrap);

  // Ranges and enabled states, from the sizes of canvas and frame.
  void SetScrollBalValues();
  // Places the bars along the frame.
  void SetScrollBarPositions();

  void picCanvas_Resize();
  void PicFrame_Resize();
  void vScroll_change();
  void HScroll_change();
  void vScroll_GotFocus();
  void hScroll_GotFocus();

private:
  EditorForm& form;
  Trap& trap;
};

}  // namespace kw
