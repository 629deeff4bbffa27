#pragma once

#include <cstdint>
#include <vector>

#include "components/base/Units.h"
#include "drawing/FrameBuffer.h"

namespace kw::test {

inline constexpr Colour White = MakeColour(255, 255, 255);

// A frame buffer with pixels of its own; at first every pixel has a colour that nothing draws.
class Canvas {
public:
  static constexpr std::uint32_t Untouched = 0x123456;

  explicit Canvas(const PixelRect& area, std::uint32_t pixel = Untouched)
      : pixels(static_cast<std::size_t>(area.Width()) * static_cast<std::size_t>(area.Height()), pixel),
        buffer{pixels.data(), static_cast<std::size_t>(area.Width()), area} {}
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  const FrameBuffer& Buffer() const { return buffer; }
  std::uint32_t At(std::int32_t x, std::int32_t y) const { return buffer.Row(y, x, x + 1)[0]; }
  const std::vector<std::uint32_t>& Pixels() const { return pixels; }

private:
  std::vector<std::uint32_t> pixels;
  FrameBuffer buffer;
};

}  // namespace kw::test
