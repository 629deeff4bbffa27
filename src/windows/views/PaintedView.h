#pragma once

#include "components/controls/KeyInput.h"
#include "components/controls/MouseInput.h"
#include "windows/views/ControlView.h"
#include "windows/views/MouseSender.h"

namespace kw::windows {

// A view that paints its window itself, without flicker, and hands mouse and keyboard to its model.
class PaintedView : public ControlView {
public:
  // `mouseInput` and `keyInput` are those of the model, null if it takes none.
  PaintedView(ViewTree& shared, Control& shown, MouseInput* mouseInput, ControlView* container,
              KeyInput* keyInput = nullptr)
      : ControlView(shared, shown, container), mouse(mouseInput), keys(keyInput) {}

  bool WantsKey(WPARAM key) const override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

protected:
  // Paints the whole client area into a context that has the tree's font selected.
  virtual void Paint(HDC context, const RECT& client) = 0;
  virtual void OnMouse(const MouseEvent& event);
  // Hands the event to the model, at a point of the view in the models' pixels.
  void SendMouse(const MouseEvent& event, Point at);
  // Another window took the mouse while a button was down.
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
