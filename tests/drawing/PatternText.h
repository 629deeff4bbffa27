#pragma once

#include <cstdint>

#include "drawing/TextRenderer.h"

namespace kw::test {

// Stands in for the platform's text: a pattern that depends on the text and on where it lies.
class PatternText final : public TextRenderer {
public:
  void Render(const TextRun& run, const PixelRect& place, CoverageMask& mask) override {
    for (std::int32_t y = mask.area.top; y < mask.area.bottom; ++y) {
      const auto row = mask.Row(y);
      for (std::size_t i = 0; i < row.size(); ++i) {
        const auto x = static_cast<std::size_t>(mask.area.left - place.left) + i;
        const auto letter = static_cast<unsigned char>(run.text[(x / 4) % run.text.size()]);
        row[i] = static_cast<std::uint8_t>((y - place.top) % 6 < 4 ? letter * (x % 4) : 0);
      }
    }
  }
};

}  // namespace kw::test
