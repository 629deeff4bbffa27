#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "components/controls/PictureBox.h"
#include "drawing/PixelRect.h"
#include "drawing/Scale.h"

namespace kw {

// What a screen reader is told of a control.
struct AccessibleItem {
  AccessibleRole role = AccessibleRole::Standard;
  std::string name;   // empty if the system's own control has a name
  std::string value;  // of a layer its text, of a colour field its colour
  friend bool operator==(const AccessibleItem&, const AccessibleItem&) = default;
};

AccessibleItem AccessibleOf(const Control& control);

// A part of a canvas that a person uses: the page, the background, a layer, a handle of a layer, a border of the page.
struct AccessiblePart : AccessibleItem {
  const Control* item = nullptr;      // the layer or the border
  std::optional<std::size_t> handle;  // if it is one of the item's handles: which, in the order of HandlesOf
  PixelRect bounds;                   // as drawn, in pixels of the device
  bool isPicked = false;
  bool isPickable = false;  // a floating layer
};

// Whether the child of a canvas is such a part. The rubber band and the markers of a stroke are none.
bool IsAccessiblePart(const Control& child);
// Back to front, each layer before its handles.
std::vector<AccessiblePart> PartsOf(const PictureBox& canvas, const Scale& scale = Scale());
// The frontmost part that covers the pixel of the device; null if there is none.
const AccessiblePart* PartAt(const std::vector<AccessiblePart>& parts, std::int32_t x, std::int32_t y);

}  // namespace kw
