#include <algorithm>

#include "components/base/RunTimeError.h"
#include "fuzz/EffectCase.h"
#include "fuzz/Promise.h"
#include "fuzz/Tries.h"

namespace kw {
namespace {

constexpr double MostPixels = 1 << 20;

// Results of any size are allowed, but they would use up the time.
bool IsLarge(const EffectCase& one) {
  if (one.effect->command != "Resize") return false;
  return std::max(one.values[1], 1.0) * std::max(one.values[2], 1.0) > MostPixels ||
         std::max(one.values[1], one.values[2]) * 640 > MostPixels;
}

}  // namespace

void TryEffect(std::span<const std::uint8_t> bytes) {
  const auto one = ReadEffectCase(bytes);
  if (!one || IsLarge(*one)) return;
  bool allowed = true;
  try {
    RequireInRange(*one->effect, one->values);
  } catch (const RunTimeError&) {
    allowed = false;
  }
  Bitmap picture = one->picture;
  Bitmap own = picture;
  own.MutableRow(0);
  try {
    ApplyEffect(*one->effect, picture, one->values);
    Promise(allowed, "values out of range are refused");
  } catch (const RunTimeError&) {
    Promise(!allowed, "values in range are taken");
    Promise(SamePicture(picture, own), "an effect that fails leaves the picture as it was");
    return;
  }
  Promise(!picture.IsEmpty(), "the result has pixels");
  Promise(SamePicture(one->picture, own), "the pixels that others share stay as they were");
  ApplyEffect(*one->effect, own, one->values);
  Promise(SamePicture(picture, own), "shared pixels or own ones, the result is the same");
}

}  // namespace kw
