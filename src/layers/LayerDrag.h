#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "form/EditorForm.h"

namespace kw {

// How the mouse moves a picked layer by its inside and sizes it by its handles. The rubber-band frame shows where the
// layer would lie, and there it lands when the button is released. Positions are in canvas units.
class LayerDrag {
public:
  explicit LayerDrag(EditorForm& editorForm) : form(editorForm) {}

  // A press on a layer that is picked.
  void Begin(std::int16_t layer, float x, float y);
  bool IsUnderWay() const { return index != 0; }
  // The pointer moved; a layer that is sized with `isInProportion` keeps its proportions. The frame shows from the
  // first noticeable move on, so that a click moves nothing.
  void MoveTo(float x, float y, bool isInProportion);
  // The button was released: lands the layer. False if nothing was moved.
  bool End();
  // Leaves the layer where it was.
  void Cancel();

  // The mouse pointer for this place of a picked layer.
  static MousePointer PointerAt(const TransparentPicture& layer, float x, float y);

private:
  struct Edges {
    float left;
    float top;
    float right;
    float bottom;
  };
  Edges Moved(float x, float y) const;
  Edges Sized(float x, float y, bool isInProportion) const;

  EditorForm& form;
  std::int16_t index = 0;             // 0: no drag
  std::optional<std::size_t> handle;  // none: it is moved
  Edges start = {};
  float pressX = 0;
  float pressY = 0;
  bool hasMoved = false;
};

}  // namespace kw
