#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "components/controls/PictureBox.h"
#include "drawing/Compositor.h"
#include "scene/Accessible.h"
#include "scene/CanvasItems.h"
#include "windows/base/TextDrawing.h"
#include "windows/views/Look.h"
#include "windows/views/PaintedView.h"

namespace kw::windows {

class CanvasItemView;

// The view of a picture box and its canvas items. It paints only what is out of date, double-buffered, and passes mouse
// events to the layer or marker below the mouse.
class PictureBoxView final : public PaintedView {
public:
  PictureBoxView(ViewTree& shared, PictureBox& shown, ControlView* container)
      : PaintedView(shared, shown, &shown, container, &shown), box(shown), compositor(shown.BackColor()) {}

  static void Draw(const Look& look, const RECT& bounds, const PictureBox& box);

  bool IsTabStop() const override;
  bool WantsKey(WPARAM key) const override;
  LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
  // An item of this canvas changed, was added or removed.
  void ItemsChanged();
  // An item of this box, or of one inside, is being removed: it gets no more mouse events.
  void Forget(const CanvasItemView& item);

private:
  std::vector<AccessibleAnswer> Parts() const override;
  LONG PartAt(POINT point) const override;
  void Do(LONG id) override;
  LONG IdOf(const AccessiblePart& part) const;
  // Tells screen readers which layer has the keyboard with the canvas.
  void TellFocus() const;

  void Paint(HDC context, const RECT& client) override;
  void OnMouse(const MouseEvent& message) override;
  void OnMouseLost() override;
  // Converts window pixels to whole model pixels: the user draws in page pixels.
  POINT ModelPixelAt(POINT point) const;
  CanvasItemView* ItemAt(POINT point) const;
  // If the point is beside a box inside this one: the inner box's border that can be grabbed there.
  CanvasItemView* BorderBeside(POINT point) const;
  // The item that gets mouse events at this point.
  CanvasItemView* TargetAt(POINT point) const;
  // Converts the point to the item's box: this one or one inside.
  POINT PointOnBoxOf(const CanvasItemView& item, POINT point) const;
  void TakeFocus();
  // Paints the out-of-date parts with the present items.
  void PaintItems();
  void AskForPainting();
  void OnPaintTimer();

  PictureBox& box;
  Compositor compositor;
  GdiTextRenderer texts;
  CanvasItemView* held = nullptr;  // gets the mouse events while a button is down
  bool isHolding = false;
  std::vector<DisplayItem> formerItems;  // kept to reuse its memory
  bool isPaintingDue = false;
  std::chrono::steady_clock::time_point lastPainting;
  std::optional<std::chrono::steady_clock::time_point> askedForPainting;  // for the one that is due
};

}  // namespace kw::windows
