#include "picture/effects/Pixels.h"

#include <algorithm>

#include "picture/Depth.h"
#include "picture/effects/Kernels.h"

namespace kw {

Bitmap Like(const Bitmap& picture, std::int32_t width, std::int32_t height, int bitsPerPixel) {
  Bitmap result = Bitmap::Unfilled(width, height, bitsPerPixel);
  result.SetResolution(picture.HorizontalResolution(), picture.VerticalResolution());
  return result;
}

std::uint64_t BytesOf(const Bitmap& picture) {
  return PixelMemory(picture.Width(), picture.Height(), picture.BitsPerPixel());
}

bool HasGreyRamp(const Bitmap& picture) {
  const auto palette = picture.Palette();
  if (picture.BitsPerPixel() != 8 || palette.size() != 256 || !HasGreyPalette(picture)) return false;
  for (std::size_t i = 0; i < palette.size(); ++i) {
    if (palette[i].red != i) return false;
  }
  return true;
}

int DepthInValues(const Bitmap& picture) {
  return picture.BitsPerPixel() > 8 ? picture.BitsPerPixel() : HasGreyPalette(picture) ? 8 : 24;
}

std::uint64_t MemoryInValues(const Bitmap& picture, std::span<const double> /*values*/) {
  return PixelMemory(picture.Width(), picture.Height(), DepthInValues(picture));
}

Bitmap InValues(const Bitmap& picture) {
  if (picture.BitsPerPixel() > 8 || HasGreyRamp(picture)) return picture;
  if (!HasGreyPalette(picture)) return ToDepth(picture, 24);
  Lut levels{};
  for (std::size_t i = 0; i < picture.Palette().size(); ++i) levels[i] = picture.Palette()[i].red;
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 8);
  const ConstPixels from(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    kernels::UnpackLevels(from.Row(y), to.Row(y), width, picture.BitsPerPixel(), levels);
  }
  return result;
}

void Premultiply(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels * 4; i += 4) {
    const unsigned alpha = from[i + 3];
    for (std::size_t c = i; c < i + 3; ++c) to[c] = static_cast<std::uint8_t>((from[c] * alpha + 127) / 255);
    to[i + 3] = static_cast<std::uint8_t>(alpha);
  }
}

void Unpremultiply(std::uint8_t* row, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels * 4; i += 4) {
    const unsigned alpha = row[i + 3];
    for (std::size_t c = i; c < i + 3; ++c) {
      row[c] =
          alpha == 0 ? std::uint8_t{0} : static_cast<std::uint8_t>(std::min(255U, (row[c] * 255U + alpha / 2) / alpha));
    }
  }
}

}  // namespace kw
