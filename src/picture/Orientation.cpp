#include "picture/Orientation.h"

#include <cstring>
#include <utility>

#include "picture/effects/Kernels.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

void MirrorRow(std::uint8_t* row, const Bitmap& page) {
  const auto width = static_cast<std::size_t>(page.Width());
  const int depth = page.BitsPerPixel();
  if (depth < 8)
    kernels::MirrorPacked(row, width, depth);
  else
    kernels::MirrorBytes(row, width, static_cast<std::size_t>(depth / 8));
}

}  // namespace

PageHeader Upright(const PageHeader& stored, Orientation orientation) {
  if (!IsOnItsSide(orientation)) return stored;
  return {{stored.size.height, stored.size.width},
          stored.bitsPerPixel,
          stored.verticalResolution,
          stored.horizontalResolution};
}

Bitmap Upright(const Bitmap& stored, Orientation orientation, const ReadLimits& limits) {
  if (orientation < 2 || orientation > 8) return stored;
  const bool isTurned = IsOnItsSide(orientation);
  const bool isClockwise = orientation == 5 || orientation == 6;
  const bool isUpsideDown = orientation == 3 || orientation == 4;
  // A transposed page is one that is turned and then mirrored.
  const bool isMirrored = orientation == 2 || orientation == 3 || orientation == 5 || orientation == 7;

  const std::int32_t width = isTurned ? stored.Height() : stored.Width();
  const std::int32_t height = isTurned ? stored.Width() : stored.Height();
  const int depth = stored.BitsPerPixel();
  RequireWorkFits(PixelMemory(stored.Width(), stored.Height(), depth) + PixelMemory(width, height, depth), limits);
  Bitmap page = NewUnfilledPage(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height), depth, limits);
  page.SetPalette({stored.Palette().begin(), stored.Palette().end()});
  page.SetResolution(isTurned ? stored.VerticalResolution() : stored.HorizontalResolution(),
                     isTurned ? stored.HorizontalResolution() : stored.VerticalResolution());

  const ConstPixels from(stored);
  const Pixels to(page);
  ParallelForRows(height, BytesOf(page), [&](RowBand band) {
    if (isTurned) {
      kernels::Rotate90({from.base, from.stride, stored.Width(), stored.Height()}, {to.base, to.stride}, depth,
                        isClockwise, band.begin, band.end);
    } else {
      for (std::int32_t y = band.begin; y < band.end; ++y) {
        std::memcpy(to.Row(y), from.Row(isUpsideDown ? height - 1 - y : y), page.RowBytes());
      }
    }
    if (!isMirrored) return;
    for (std::int32_t y = band.begin; y < band.end; ++y) MirrorRow(to.Row(y), page);
  });
  return page;
}

}  // namespace kw
