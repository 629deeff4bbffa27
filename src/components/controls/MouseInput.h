#pragma once

#include <cstdint>

#include "components/base/Event.h"

namespace kw {

// The mouse events of a control, with the button, the shift state and the position in the control's own units.
struct MouseInput {
  Event<std::int16_t, std::int16_t, float, float> MouseDown;
  Event<std::int16_t, std::int16_t, float, float> MouseMove;
  Event<std::int16_t, std::int16_t, float, float> MouseUp;
  // The mouse was taken away while a button was down: no release will come.
  Event<> MouseLost;
  Event<> Click;
  Event<> DblClick;
};

}  // namespace kw
