#pragma once

#include <span>

#include "components/base/Bitmap.h"
#include "picture/effects/Effect.h"

namespace kw {

// The middle part of the picture, no wider and no higher than `side`; all of the picture if it is smaller. The part may
// begin up to seven pixels further to the left.
Bitmap MiddleOf(const Bitmap& picture, std::int32_t side);

// Previews an effect at the size of an area on the screen. The effect runs on the page in its own resolution and depth,
// or on a part of a large page if the effect works locally. The result is brought back to the page's depth, as in the
// page itself, and then reduced.
class EffectPreview {
public:
  // The effect must outlive the preview. An empty picture gives empty previews.
  EffectPreview(const Effect& shown, const Bitmap& picture, PictureSize available);

  // The preview with these values. It fits into the available size, and is reduced as much more as the effect reduces
  // the page. Raises the errors of ApplyEffect.
  Bitmap Of(std::span<const double> values) const;

private:
  const Effect& effect;
  Bitmap whole;
  Bitmap part;
  PictureSize bounds;
};

}  // namespace kw
