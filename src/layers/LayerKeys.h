#pragma once

#include <cstdint>

#include "form/EditorForm.h"
#include "layers/Layers.h"

namespace kw {

// The keys that pick, move and size layers while the pointer tool is chosen and the canvas has the keyboard: F6 and
// Shift+F6 pick the next and the previous layer, arrows move the picked layer by one pixel, Shift with arrows sizes it.
class LayerKeys {
public:
  LayerKeys(EditorForm& editorForm, Layers& layerRoom) : form(editorForm), layers(layerRoom) {}

  // Whether the key would do something now; else it is the host's.
  bool HasUseOf(std::int16_t keyCode, std::int16_t shift) const;
  // Does it, if it has a use.
  void Strike(std::int16_t keyCode, std::int16_t shift);

private:
  // The layer that the key picks, 0 if there is none: that of the next index, round from the last to the first.
  std::int16_t Neighbour(bool isBackward) const;
  void Move(TransparentPicture& layer, float across, float down) const;
  void Size(TransparentPicture& layer, float across, float down) const;

  EditorForm& form;
  Layers& layers;
};

}  // namespace kw
