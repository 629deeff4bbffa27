#pragma once

#include <vector>

#include "components/base/Units.h"
#include "drawing/DisplayItem.h"
#include "drawing/FrameBuffer.h"

namespace kw {

// Composes the items of a canvas, from back to front, into frame buffers, and says which pixels are out of date.
//
// A pixel depends on the items alone and not on the part that is painted: painting the parts that Show returns over
// what was painted before gives the same buffer as painting all of it.
class Compositor {
public:
  // What is below all items; the canvas has no bounds of its own.
  explicit Compositor(Colour backColour) : background(backColour) {}

  // Takes the new list of items, back to front, and returns the parts of the canvas that have changed by it: no more
  // than the old and new places of the items that are new, gone, different or restacked. Parts do not overlap by more
  // than painting twice is worth.
  std::vector<PixelRect> Show(std::vector<DisplayItem> newItems) { return Exchange(newItems); }
  // The same; gives the former list back, for its memory.
  std::vector<PixelRect> Exchange(std::vector<DisplayItem>& newItems);
  const std::vector<DisplayItem>& Items() const { return items; }
  void SetBackground(Colour backColour) { background = backColour; }

  // Paints what the canvas shows in a part of the buffer's area. Texts are left out where there is no renderer.
  void Paint(const FrameBuffer& target, const PixelRect& wanted, TextRenderer* texts) const;

private:
  Colour background;
  std::vector<DisplayItem> items;
};

}  // namespace kw
