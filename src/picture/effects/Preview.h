#pragma once

#include <span>

#include "components/Bitmap.h"
#include "picture/effects/Effect.h"

namespace kw {

// The factor, at most 1, that brings a picture of that size to fit into `room`.
double ReductionTo(PictureSize room, double width, double height);

// Shows what an effect does to a picture on a copy that fits into a room on the screen, in the time of the copy's size.
// The copy is made once.
class EffectPreview {
public:
  // The effect must outlive the preview. An empty picture gives empty previews.
  EffectPreview(const Effect& shown, const Bitmap& picture, PictureSize available);

  // What the effect makes of the copy with these values, no larger than what is available. Raises as ApplyEffect does.
  Bitmap Of(std::span<const double> values) const;

private:
  const Effect& effect;
  Bitmap whole;
  PictureSize room;
  Bitmap copy;
};

}  // namespace kw
