#pragma once

#include <functional>

#include "components/Units.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Trap.h"

namespace kw {

// The drawing colours and the line thickness of the tool box.
class ColoursAndLines {
public:
  ColoursAndLines(EditorForm& editorForm, Trap& errorTrap, Layers& layerArray);

  void LetEditorForeColor(Colour value);
  void LetEditorBackColor(Colour value);
  void sldLineHeight_Change();
  void sldLineHeight_LostFocus();
  // Sets the thickness from a position on a caption, in twips.
  void lblLineSize1_MouseDown(float x);
  void lblLineSize2_MouseDown(float x);

  // The colour of three hexadecimal numbers below 255 that stand side by side without leading zeros, so that a small
  // one shifts the others. `random` gives numbers from 0 up to, and without, 1.
  static Colour RandomColour(const std::function<double()>& random);

  Colour EditorForeColor() const { return foreColor; }
  Colour EditorBackColor() const { return backColor; }

private:
  EditorForm& form;
  Trap& trap;
  Layers& layers;
  Colour foreColor = 0;
  Colour backColor = 0;
};

}  // namespace kw
