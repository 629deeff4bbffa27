#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "components/base/Font.h"
#include "components/base/Units.h"
#include "drawing/PixelRect.h"

namespace kw {

// A text to be shown from the upper left corner of its place on, its lines broken at line ends and at the right edge.
struct TextRun {
  std::string text = {};  // UTF-8
  Font font = {};
  Colour colour = 0;
  friend bool operator==(const TextRun&, const TextRun&) = default;
};

// Coverage (0 none to 255 full) of the pixels of one area.
struct CoverageMask {
  PixelRect area;
  std::vector<std::uint8_t> coverage;  // row by row, without gaps

  std::span<std::uint8_t> Row(std::int32_t y) {
    const auto width = static_cast<std::size_t>(area.Width());
    return {coverage.data() + static_cast<std::size_t>(y - area.top) * width, width};
  }
};

// Where text comes from is a matter of the platform.
class TextRenderer {
public:
  TextRenderer() = default;
  TextRenderer(const TextRenderer&) = delete;
  TextRenderer& operator=(const TextRenderer&) = delete;
  virtual ~TextRenderer() = default;

  // Renders a text that is laid out in `place` into a mask of zeroes whose area is the part of `place` that is wanted.
  // A pixel's coverage must not depend on which part that is.
  virtual void Render(const TextRun& run, const PixelRect& bounds, CoverageMask& mask) = 0;
};

}  // namespace kw
