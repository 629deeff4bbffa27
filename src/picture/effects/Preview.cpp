#include "picture/effects/Preview.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kw {
namespace {

void ReduceTo(PictureSize room, Bitmap& picture) {
  const double factor = ReductionTo(room, picture.Width(), picture.Height());
  if (factor >= 1) return;
  const auto reduced = [factor](std::int32_t size) { return std::max(1.0, std::floor(size * factor)); };
  ApplyEffect(*FindEffect("Resize"), picture,
              std::array{100.0, reduced(picture.Width()), reduced(picture.Height()), 0.0});
}

}  // namespace

double ReductionTo(PictureSize room, double width, double height) {
  return std::min({1.0, room.width / width, room.height / height});
}

EffectPreview::EffectPreview(const Effect& shown, const Bitmap& picture, PictureSize available)
    : effect(shown), whole(picture), room(available), copy(picture) {
  if (!copy.IsEmpty()) ReduceTo(room, copy);
}

Bitmap EffectPreview::Of(std::span<const double> values) const {
  RequireInRange(effect, values);
  Bitmap result = copy;
  if (result.IsEmpty()) return result;
  std::vector<double> own(values.begin(), values.end());
  if (effect.reduce != nullptr) effect.reduce(whole, room, own);
  ApplyEffect(effect, result, own);
  ReduceTo(room, result);
  return result;
}

}  // namespace kw
