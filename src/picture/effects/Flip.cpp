#include "picture/effects/Flip.h"

#include <algorithm>

#include "picture/effects/Bands.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/Pixels.h"

namespace kw {

void HorizontalFlip(Bitmap& picture, std::span<const double> /*values*/) {
  const Pixels pixels(picture);
  const auto width = static_cast<std::size_t>(picture.Width());
  const int depth = picture.BitsPerPixel();
  ForBands(picture.Height(), BytesOf(picture), [&](Band band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      if (depth < 8) {
        kernels::MirrorPacked(pixels.Row(y), width, depth);
      } else {
        kernels::MirrorBytes(pixels.Row(y), width, static_cast<std::size_t>(depth / 8));
      }
    }
  });
}

void VerticalFlip(Bitmap& picture, std::span<const double> /*values*/) {
  const Pixels pixels(picture);
  const std::size_t count = picture.RowBytes();
  const std::int32_t last = picture.Height() - 1;
  ForBands(picture.Height() / 2, BytesOf(picture), [&](Band band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      std::swap_ranges(pixels.Row(y), pixels.Row(y) + count, pixels.Row(last - y));
    }
  });
}

}  // namespace kw
