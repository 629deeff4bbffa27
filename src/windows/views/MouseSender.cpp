#include "windows/views/MouseSender.h"

#include "scene/CanvasItems.h"
#include "scene/HitTest.h"

namespace kw::windows {
namespace {

// Whether a point, in pixels from the model's corner, is on the model: on a canvas item by the editor's hit test, in
// the window of another control by the pixels of that window.
bool IsOnModel(const Control& model, Point at, double unit) {
  const PixelRect bounds = PixelsOf(model);
  if (!IsCanvasItem(model)) return at.x >= 0 && at.y >= 0 && at.x < bounds.Width() && at.y < bounds.Height();
  return IsPointInItem(model, static_cast<float>((at.x + bounds.left) * unit),
                       static_cast<float>((at.y + bounds.top) * unit));
}

}  // namespace

void MouseSender::Send(const ControlView& view, MouseInput* input, const MouseEvent& event, Point at) {
  if (input == nullptr || !view.IsAttached() || !view.TakesInput()) return;
  const Control* const container = view.Model().Container();
  const double unit = container == nullptr ? 1 : UnitsPerPixel(*container);
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
      const bool isLeft = event.button == Mouse::LeftButton;
      const bool isClick = isPressed && isLeft && IsOnModel(view.Model(), at, unit);
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
