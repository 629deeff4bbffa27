#pragma once

#include <vector>

#include "components/base/Units.h"
#include "drawing/DisplayItem.h"
#include "drawing/FrameBuffer.h"

namespace kw {

// Composes a canvas's items, back to front, into frame buffers and reports which pixels are out of date.
//
// A pixel depends on the items only, not on the part that is painted. So painting the parts that Show returns over the
// previous picture gives the same buffer as painting everything.
class Compositor {
public:
  // `backColour` fills the canvas below all items; the canvas has no bounds of its own.
  explicit Compositor(Colour backColour) : background(backColour) {}

  // Takes the new list of items, back to front, and returns the parts of the canvas that changed: at most the old and
  // new bounds of items that are new, removed, different or restacked. Parts overlap only if one larger part would cost
  // more.
  std::vector<PixelRect> Show(std::vector<DisplayItem> newItems) { return Exchange(newItems); }
  // As above; returns the old list in `newItems`, so that its memory can be reused.
  std::vector<PixelRect> Exchange(std::vector<DisplayItem>& newItems);
  const std::vector<DisplayItem>& Items() const { return items; }
  void SetBackground(Colour backColour) { background = backColour; }

  // Paints a part of the canvas. Without a renderer texts are left out.
  void Paint(const FrameBuffer& target, const PixelRect& wanted, TextRenderer* texts) const;

private:
  Colour background;
  std::vector<DisplayItem> items;
};

}  // namespace kw
