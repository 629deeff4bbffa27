#pragma once

#include <cstdint>

#include "components/controls/RaisedArea.h"
#include "windows/views/Look.h"
#include "windows/views/PaintedView.h"

namespace kw::windows {

// The view of a raised frame with an icon, or with the colour map if its picture is the colour chooser's. A button
// looks pressed while the mouse that pressed it is over it.
class RaisedPictureView final : public PaintedView {
public:
  RaisedPictureView(ViewTree& shared, RaisedPicture& shown, ControlView* container)
      : PaintedView(shared, shown, &shown, container), picture(shown) {}

  static void Draw(const Look& look, const RECT& bounds, const RaisedPicture& picture);

  bool IsDropDown() const override { return !picture.IsButton(); }
  bool WantsKey(WPARAM key) const override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
  void Paint(HDC context, const RECT& client) override;
  void OnMouse(const MouseEvent& event) override;
  void OnMouseLost() override;
  void LookPressed(bool isPressed);

  RaisedPicture& picture;
  std::int16_t pressedWith = 0;  // mouse button; 0: not pressed
  bool looksPressed = false;
};

}  // namespace kw::windows
