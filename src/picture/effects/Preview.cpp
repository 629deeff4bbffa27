#include "picture/effects/Preview.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

#include "picture/Depth.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

// Large enough to show the details, small enough to be updated while a slider moves.
constexpr std::int32_t PartSide = 1024;

// The factor, at most 1, that fits the picture into `bounds`.
double ReductionTo(PictureSize bounds, const Bitmap& picture) {
  return std::min({1.0, 1.0 * bounds.width / picture.Width(), 1.0 * bounds.height / picture.Height()});
}

void Reduce(Bitmap& picture, double factor) {
  if (factor >= 1) return;
  const auto reduced = [factor](std::int32_t size) { return std::max(1.0, std::floor(size * factor)); };
  ApplyEffect(*FindEffect("Resize"), picture,
              std::array{100.0, reduced(picture.Width()), reduced(picture.Height()), 0.0});
}

}  // namespace

Bitmap MiddleOf(const Bitmap& picture, std::int32_t side) {
  if (picture.Width() <= side && picture.Height() <= side) return picture;
  const std::int32_t width = std::min(picture.Width(), side);
  const std::int32_t height = std::min(picture.Height(), side);
  Bitmap part = Like(picture, width, height, picture.BitsPerPixel());
  part.SetPalette({picture.Palette().begin(), picture.Palette().end()});
  // Eight pixels of any depth begin at a whole byte.
  const std::int32_t eights = (picture.Width() - width) / 2 / 8;
  const std::size_t first = static_cast<std::size_t>(eights) * static_cast<std::size_t>(picture.BitsPerPixel());
  const std::int32_t top = (picture.Height() - height) / 2;
  const ConstPixels from(picture);
  const Pixels to(part);
  for (std::int32_t y = 0; y < height; ++y) std::memcpy(to.Row(y), from.Row(top + y) + first, part.RowBytes());
  return part;
}

EffectPreview::EffectPreview(const Effect& shown, const Bitmap& picture, PictureSize available)
    : effect(shown),
      whole(picture),
      part(picture.IsEmpty() || shown.movesPixels ? picture : MiddleOf(picture, PartSide)),
      bounds(available) {}

Bitmap EffectPreview::Of(std::span<const double> values) const {
  RequireInRange(effect, values);
  Bitmap result = part;
  if (result.IsEmpty()) return result;
  std::vector<double> found(values.begin(), values.end());
  if (effect.find != nullptr) effect.find(whole, found);
  ApplyEffect(effect, result, found);
  result = ToDepth(result, whole.BitsPerPixel());
  Reduce(result, std::min(ReductionTo(bounds, part), ReductionTo(bounds, result)));
  return result;
}

}  // namespace kw
