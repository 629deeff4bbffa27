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

// A text drawn from the top left corner of its bounds, with lines broken at line ends and at the right edge.
struct TextRun {
  std::string text = {};  // UTF-8
  Font font = {};
  Colour colour = 0;
  friend bool operator==(const TextRun&, const TextRun&) = default;
};

// The coverage of an area's pixels, 0 (none) to 255 (full).
struct CoverageMask {
  PixelRect area;
  std::vector<std::uint8_t> coverage;  // row by row, without padding

  std::span<std::uint8_t> Row(std::int32_t y) {
    const auto width = static_cast<std::size_t>(area.Width());
    return {coverage.data() + static_cast<std::size_t>(y - area.top) * width, width};
  }
};

// Renders text; each platform has its own.
class TextRenderer {
public:
  TextRenderer() = default;
  TextRenderer(const TextRenderer&) = delete;
  TextRenderer& operator=(const TextRenderer&) = delete;
  virtual ~TextRenderer() = default;

  // Renders a text that is laid out in `bounds` into a mask of zeroes, whose area is the wanted part of `bounds`. A
  // pixel's coverage must not depend on that part.
  virtual void Render(const TextRun& run, const PixelRect& bounds, CoverageMask& mask) = 0;

  // Whether a text was left out, because there was no memory for it.
  bool HasFailed() const { return hasFailed; }

protected:
  void Fail() { hasFailed = true; }

private:
  bool hasFailed = false;
};

}  // namespace kw
