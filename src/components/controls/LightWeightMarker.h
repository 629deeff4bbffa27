#pragma once

#include <string>
#include <utility>

#include "components/controls/Control.h"
#include "components/controls/MouseInput.h"

namespace kw {

// A small plain square: a marker of a pen stroke or a drag handle on the page's edge. On a handle, the position that
// MouseUp carries is the distance dragged, in the screen's twips.
class LightWeightMarker : public Control, public MouseInput {
public:
  explicit LightWeightMarker(std::string controlName) : Control(std::move(controlName), "KWLightWeightCtl") {}

  void LoadFrom(const LightWeightMarker& other) {
    CopyDesign(other);
    color = other.color;
  }

  Colour Color() const { return color; }
  void SetColor(Colour value) {
    color = value;
    Tell(Aspect::Colours);
  }

private:
  Colour color = 0;
};

}  // namespace kw
