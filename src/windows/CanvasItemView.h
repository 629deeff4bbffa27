#pragma once

#include "components/MouseInput.h"
#include "windows/ControlView.h"
#include "windows/Mouse.h"
#include "windows/ViewFactory.h"

namespace kw::windows {

// A layer or a marker: it shows as a part of the canvas that holds it.
class CanvasItemView final : public ControlView {
public:
  template <class Model>
  CanvasItemView(Pane& shared, Model& shown, ControlView* container)
      : ControlView(shared, shown, container), mouse(&shown) {}

  // The canvas draws it.
  static void Draw(const Look&, const RECT&, const Control&) {}

  // A mouse event in pixels of the canvas.
  void Send(const MouseEvent& event);
  void Leave() override;

private:
  HWND Create(HWND) override { return nullptr; }
  void Show(Aspect aspect) override;
  void Invalidate(const RECT& place) const;

  MouseInput* mouse;
  MouseSender sender;
  POINT pressedAt = {};
  RECT shownPlace = {};  // empty while it is hidden
};

}  // namespace kw::windows
