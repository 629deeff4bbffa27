#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "components/base/Units.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "layers/Layers.h"
#include "trap/Trap.h"

namespace kw {

// The drawing colours and the line thickness of the tool box.
class ColoursAndLines : private EditorContext {
public:
  explicit ColoursAndLines(const EditorContext& context);

  void LetEditorForeColor(Colour value);
  void LetEditorBackColor(Colour value);
  void sldLineHeight_Change();
  void sldLineHeight_LostFocus();
  // The thickness can be dragged from a caption: over the slider's width it goes through all its values. A press alone
  // changes nothing. Positions are in twips, from the upper caption's left edge.
  void lblLineSize1_MouseDown(std::int16_t button, float x);
  void lblLineSize2_MouseDown(std::int16_t button, float x);

  // The colour of three hexadecimal numbers below 255 that stand side by side without leading zeros, so that a small
  // one shifts the others. `random` gives numbers from 0 up to, and without, 1.
  static Colour RandomColour(const std::function<double()>& random);

  Colour EditorForeColor() const { return foreColor; }
  Colour EditorBackColor() const { return backColor; }

private:
  // A drag from a caption. The lower one moves meanwhile, so places are those on the tool box.
  struct CaptionDrag {
    float start = 0;
    std::int32_t value = 0;
  };
  void ConnectDrag(Label& caption);
  void DragThickness(float place);

  std::optional<CaptionDrag> captionDrag;
  Colour foreColor = 0;
  Colour backColor = 0;
};

}  // namespace kw
