#pragma once

#include "components/controls/MouseInput.h"
#include "drawing/Outline.h"
#include "windows/base/Mouse.h"
#include "windows/views/ControlView.h"

namespace kw::windows {

// Hands mouse events to one view's model, in the units of the model's container, and makes clicks of them.
class MouseSender {
public:
  // `at` counts in the models' pixels from the model's corner. Nothing happens when the model takes no mouse input or
  // is disabled. The view may be detached afterwards.
  void Send(const ControlView& view, MouseInput* input, const MouseEvent& event, Point at);
  // The mouse was taken away: the release that the sender waited for, if any, will not come.
  void Lose(MouseInput* input);

private:
  bool isPressed = false;  // a release of the left button would be a click
};

}  // namespace kw::windows
