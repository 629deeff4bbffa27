#pragma once

#include "components/PictureBox.h"
#include "drawing/CanvasComposer.h"
#include "windows/PaintedView.h"
#include "windows/ViewFactory.h"

namespace kw::windows {

class CanvasItemView;

// A picture box, and everything that is composed on it: it paints only what is out of date, in one piece, and gives the
// mouse to the layer or marker below it.
class PictureBoxView final : public PaintedView {
public:
  PictureBoxView(Pane& shared, PictureBox& shown, ControlView* container)
      : PaintedView(shared, shown, &shown, container), box(shown) {}

  static void Draw(const Look& look, const RECT& place, const PictureBox& box);

  bool IsTabStop() const override;
  bool WantsKey(WPARAM key) const override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  // The item is going: it gets no more of the mouse.
  void Forget(const CanvasItemView& item);

private:
  void Paint(HDC context, const RECT& client) override;
  void OnMouse(const MouseEvent& event) override;
  void OnMouseLost() override;
  CanvasItemView* ItemAt(POINT point) const;
  void TakeFocus();

  PictureBox& box;
  CanvasItemView* held = nullptr;  // has the mouse while a button is down
  bool isHolding = false;
};

}  // namespace kw::windows
