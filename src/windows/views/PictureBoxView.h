#pragma once

#include <chrono>
#include <vector>

#include "components/controls/PictureBox.h"
#include "drawing/Compositor.h"
#include "scene/CanvasItems.h"
#include "windows/base/TextDrawing.h"
#include "windows/views/Look.h"
#include "windows/views/PaintedView.h"

namespace kw::windows {

class CanvasItemView;

// A picture box, and everything that is composed on it: it paints only what is out of date, in one piece, and gives the
// mouse to the layer or marker below it.
class PictureBoxView final : public PaintedView {
public:
  PictureBoxView(ViewTree& shared, PictureBox& shown, ControlView* container)
      : PaintedView(shared, shown, &shown, container, &shown), box(shown), compositor(shown.BackColor()) {}

  static void Draw(const Look& look, const RECT& bounds, const PictureBox& box);

  bool IsTabStop() const override;
  bool WantsKey(WPARAM key) const override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  // An item that shows itself on this box looks different now, came or went.
  void ItemsChanged();
  // An item, here or on a box inside, is going: it gets no more of the mouse.
  void Forget(const CanvasItemView& item);

private:
  void Paint(HDC context, const RECT& client) override;
  void OnMouse(const MouseEvent& message) override;
  void OnMouseLost() override;
  // What is drawn is drawn in whole pixels of the models, like the page.
  POINT ModelPixelAt(POINT point) const;
  CanvasItemView* ItemAt(POINT point) const;
  // On the ground around a box inside this one: the border of it that can be grabbed at this point.
  CanvasItemView* BorderBeside(POINT point) const;
  // The item that gets the mouse at this point.
  CanvasItemView* TargetAt(POINT point) const;
  // The point as it is on the box that shows the item: this one or one inside.
  POINT PointOnBoxOf(const CanvasItemView& item, POINT point) const;
  void TakeFocus();
  void AskForPainting() const;
  // Paints what the box shows now, where that is out of date.
  void PaintItems();

  PictureBox& box;
  Compositor compositor;
  GdiTextRenderer texts;
  CanvasItemView* held = nullptr;  // has the mouse while a button is down
  bool isHolding = false;
  std::vector<DisplayItem> formerItems;  // for their memory
  bool isPaintingDue = false;
  std::chrono::steady_clock::time_point lastPainting;
};

}  // namespace kw::windows
