#pragma once

#include <span>

#include "components/base/Bitmap.h"
#include "picture/effects/Effect.h"

namespace kw {

// The part in the middle of the picture, no wider and no higher than `side`; all of it where it is smaller. The part
// may begin up to seven pixels to the left.
Bitmap MiddleOf(const Bitmap& picture, std::int32_t side);

// Shows on a room on the screen what an effect makes of a page. The effect runs on the page in its own resolution and
// depth, of a large one on a part where that shows the same; the result has the page's depth, as it has in the page
// itself, and only then is reduced.
class EffectPreview {
public:
  // The effect must outlive the preview. An empty picture gives empty previews.
  EffectPreview(const Effect& shown, const Bitmap& picture, PictureSize available);

  // What the effect makes of the page with these values, no larger than what is available and as much smaller than the
  // page would be there as the result is. Raises as ApplyEffect does.
  Bitmap Of(std::span<const double> values) const;

private:
  const Effect& effect;
  Bitmap whole;
  Bitmap part;
  PictureSize room;
};

}  // namespace kw
