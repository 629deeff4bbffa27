#include "picture/effects/Pixels.h"

#include <algorithm>

#include "picture/Depth.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/ParallelRows.h"

namespace kw {
namespace {

Bitmap SameKind(const Bitmap& picture) {
  Bitmap result = Like(picture, picture.Width(), picture.Height(), picture.BitsPerPixel());
  result.SetPalette({picture.Palette().begin(), picture.Palette().end()});
  return result;
}

}  // namespace

Bitmap Like(const Bitmap& picture, std::int32_t width, std::int32_t height, int bitsPerPixel) {
  Bitmap result = Bitmap::Unfilled(width, height, bitsPerPixel);
  result.SetResolution(picture.HorizontalResolution(), picture.VerticalResolution());
  return result;
}

Remade::Remade(Bitmap& original)
    : picture(original),
      made(original.IsShared() ? SameKind(original) : Bitmap()),
      old(original),
      rows(made.IsEmpty() ? original : made),
      rowBytes(original.RowBytes()) {}

void Remade::Finish() {
  if (!made.IsEmpty()) picture = std::move(made);
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
  const Lut levels = GreyLevels(picture);
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 8);
  const ConstPixels from(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  ParallelForRows(picture.Height(), BytesOf(result), [&](RowBand band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      kernels::UnpackLevels(from.Row(y), to.Row(y), width, picture.BitsPerPixel(), levels);
    }
  });
  return result;
}

Lut GreyLevels(const Bitmap& picture) {
  Lut levels{};
  std::ranges::transform(picture.Palette(), levels.begin(), &Rgb::red);
  return levels;
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
