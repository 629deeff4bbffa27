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

// One thing on a canvas (the page, the background picture, a layer, a marker, the rubber band): what it shows in its
// place, each part of it above the one before. Nothing shows outside the place. A value; the picture's pixels are
// shared.
struct DisplayItem {
  enum class Frame : std::uint8_t { None, Solid, Dotted };

  // Names the item from one showing to the next; each item of a canvas has its own.
  std::uint64_t key = 0;
  PixelRect bounds = {};
  std::int32_t rim = 0;                             // pixels that picture, shape and text keep from the place's edges
  std::optional<Colour> background = std::nullopt;  // fills the place
  Bitmap picture = {};                              // scaled to the place within the rim
  std::optional<Shape> shape = std::nullopt;        // counted from the left top corner within the rim
  std::optional<TextRun> text = std::nullopt;
  DrawOptions options = {};   // of picture, shape and text
  Frame frame = Frame::None;  // along the inside of the place
  Colour frameColour = 0;
  std::int32_t frameWidth = 1;
  bool hasHandles = false;  // to size it by
  std::int32_t handleSize = HandleSize;

  static constexpr std::int32_t HandleSize = 5;

  // Whether both show the same pixels.
  friend bool operator==(const DisplayItem& a, const DisplayItem& b);
};

// Where an item's eight handles are, inside its place: from the left top corner clockwise.
std::array<PixelRect, 8> HandlesOf(const PixelRect& bounds, std::int32_t size = DisplayItem::HandleSize);

}  // namespace kw
