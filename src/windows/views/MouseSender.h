#pragma once

#include "components/controls/MouseInput.h"
#include "drawing/Outline.h"
#include "windows/base/Mouse.h"
#include "windows/views/ControlView.h"

namespace kw::windows {

// Raises a model's mouse events, in the units of the model's container, and detects clicks.
class MouseSender {
public:
  // `at` is relative to the model's corner, in model pixels. Does nothing if the model takes no mouse input or is
  // disabled. The view may be detached afterwards.
  void Send(const ControlView& view, MouseInput* input, const MouseEvent& event, Point at);
  // Another window captured the mouse: an expected release will not come.
  void Lose(MouseInput* input);

private:
  bool isPressed = false;  // the next release of the left button is a click
};

}  // namespace kw::windows
