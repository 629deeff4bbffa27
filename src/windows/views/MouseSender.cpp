#include "windows/views/MouseSender.h"

#include "scene/CanvasItems.h"

namespace kw::windows {

void MouseSender::Send(const ControlView& view, MouseInput* input, const MouseEvent& event, Point at) {
  if (input == nullptr || !view.IsAttached() || !view.TakesInput()) return;
  const Control* const container = view.Model().Container();
  const double unit = container != nullptr && container->ScaleUnit() == Unit::Twips ? double{TwipsPerPixel} : 1;
  const auto x = static_cast<float>(at.x * unit);
  const auto y = static_cast<float>(at.y * unit);
  switch (event.kind) {
    case MouseEvent::Kind::Down:
      if (event.button == Mouse::LeftButton) isPressed = true;
      input->MouseDown.Raise(event.button, event.shift, x, y);
      break;
    case MouseEvent::Kind::Move:
      input->MouseMove.Raise(event.button, event.shift, x, y);
      break;
    case MouseEvent::Kind::DoubleClick:
      isPressed = false;
      input->DblClick.Raise();
      break;
    case MouseEvent::Kind::Up: {
      const PixelRect bounds = PixelsOf(view.Model());
      const bool isInside = at.x >= 0 && at.y >= 0 && at.x < bounds.Width() && at.y < bounds.Height();
      const bool isLeft = event.button == Mouse::LeftButton;
      const bool isClick = isInside && isPressed && isLeft;
      if (isLeft) isPressed = false;
      input->MouseUp.Raise(event.button, event.shift, x, y);
      if (isClick && view.IsAttached()) input->Click.Raise();
      break;
    }
  }
}

void MouseSender::Lose(MouseInput* input) {
  isPressed = false;
  if (input != nullptr) input->MouseLost.Raise();
}

}  // namespace kw::windows
