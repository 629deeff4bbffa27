#include "picture/effects/LumaRows.h"

#include "picture/Depth.h"
#include "picture/effects/Kernels.h"

namespace kw {
namespace {

std::uint8_t LumaOnPaper(const std::uint8_t* pixel) {
  const auto mixed = [alpha = pixel[3]](unsigned value) {
    return static_cast<std::uint8_t>((value * alpha + 255U * (255U - alpha) + 127) / 255);
  };
  return Luma({mixed(pixel[2]), mixed(pixel[1]), mixed(pixel[0])});
}

}  // namespace

LumaRows::LumaRows(const Bitmap& picture)
    : from(picture),
      width(static_cast<std::size_t>(picture.Width())),
      depth(picture.BitsPerPixel()),
      isRamp(HasGreyRamp(picture)) {
  for (std::size_t i = 0; i < picture.Palette().size(); ++i) levels[i] = Luma(picture.Palette()[i]);
}

const std::uint8_t* LumaRows::Row(std::int32_t y, std::uint8_t* scratch) const {
  const std::uint8_t* const row = from.Row(y);
  if (isRamp) return row;
  if (depth == 24) {
    kernels::Luma(row, scratch, width);
  } else if (depth == 32) {
    for (std::size_t x = 0; x < width; ++x) scratch[x] = LumaOnPaper(row + x * 4);
  } else {
    kernels::UnpackLevels(row, scratch, width, depth, levels);
  }
  return scratch;
}

std::size_t LumaRows::ScratchBytes() const {
  constexpr std::size_t alignment = Bitmap::RowAlignment;
  return (width + alignment - 1) / alignment * alignment;
}

void LumaRows::Prefetch(std::int32_t y) const {
  PrefetchRow(from.Row(y), (width * static_cast<std::size_t>(depth) + 7) / 8);
}

}  // namespace kw
