#pragma once

#include <cstddef>
#include <cstdint>

#include "picture/effects/Pixels.h"

namespace kw {

// The luma of the pixels of each row, on a white background. An index that has no colour is black. The picture must
// outlive it.
class LumaRows {
public:
  explicit LumaRows(const Bitmap& picture);

  // The row, computed into `scratch` of ScratchBytes() bytes or as it is stored: one byte a pixel.
  const std::uint8_t* Row(std::int32_t y, std::uint8_t* scratch) const;
  std::size_t ScratchBytes() const;

  void Prefetch(std::int32_t y) const;

private:
  ConstPixels from;
  std::size_t width;
  int depth;
  bool isRamp;
  Lut levels{};
};

}  // namespace kw
