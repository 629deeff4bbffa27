#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "components/base/Bitmap.h"
#include "components/base/Units.h"
#include "drawing/PixelRect.h"
#include "drawing/Shape.h"
#include "drawing/TextRenderer.h"

namespace kw {

// An item on a canvas: the page, the background picture, a layer, a marker or the rubber band. Its parts are painted in
// the order of the members and clipped to its bounds. A value type; the picture's pixels are shared.
struct DisplayItem {
  enum class Frame : std::uint8_t { None, Solid, Dotted };

  // Identifies the item from one list to the next; unique on its canvas.
  std::uint64_t key = 0;
  PixelRect bounds = {};
  std::int32_t rim = 0;                             // inset of picture, shape and text from the bounds, in pixels
  std::optional<Colour> background = std::nullopt;  // fills the bounds
  Bitmap picture = {};                              // scaled to the bounds without the rim
  std::optional<Shape> shape = std::nullopt;        // relative to the top left corner within the rim
  std::optional<TextRun> text = std::nullopt;
  DrawOptions options = {};   // of picture, shape and text
  Frame frame = Frame::None;  // along the inside of the bounds
  Colour frameColour = 0;
  std::int32_t frameWidth = 1;
  bool hasHandles = false;  // for resizing
  std::int32_t handleSize = HandleSize;

  static constexpr std::int32_t HandleSize = 5;

  // Whether both show the same pixels.
  friend bool operator==(const DisplayItem& a, const DisplayItem& b);
};

// An item's eight resize handles, inside its bounds, clockwise from the top left corner.
std::array<PixelRect, 8> HandlesOf(const PixelRect& bounds, std::int32_t size = DisplayItem::HandleSize);

}  // namespace kw
