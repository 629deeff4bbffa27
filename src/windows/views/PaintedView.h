#pragma once

#include "components/controls/KeyInput.h"
#include "components/controls/MouseInput.h"
#include "windows/views/ControlView.h"
#include "windows/views/MouseSender.h"

namespace kw::windows {

// A view that paints its window itself, double-buffered, and passes mouse and keyboard events to its model.
class PaintedView : public ControlView {
public:
  // `mouseInput` and `keyInput` are those of the model, null if it takes none.
  PaintedView(ViewTree& shared, Control& shown, MouseInput* mouseInput, ControlView* container,
              KeyInput* keyInput = nullptr)
      : ControlView(shared, shown, container), mouse(mouseInput), keys(keyInput) {}

  bool WantsKey(WPARAM key) const override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

protected:
  // Paints the whole client area; the context has the tree's font.
  virtual void Paint(HDC context, const RECT& client) = 0;
  virtual void OnMouse(const MouseEvent& event);
  // Passes the event to the model; `at` is a point of the view in model pixels.
  void SendMouse(const MouseEvent& event, Point at);
  // Another window captured the mouse while a button was down.
  virtual void OnMouseLost() { sender.Lose(mouse); }

  HWND Create(HWND parent) override { return CreateOwnWindow(parent); }
  void Show(Aspect aspect) override;
  void ShowEnabled() override;

private:
  void PaintWith(HDC context);

  MouseInput* mouse;
  KeyInput* keys;
  MouseSender sender;
  bool isReleasing = false;
};

}  // namespace kw::windows
