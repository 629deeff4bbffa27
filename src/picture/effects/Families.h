#pragma once

#include <span>
#include <string_view>

#include "picture/effects/Effect.h"

namespace kw {

// The families of effects. The source of the same name exports the rows of a family's effects; Effects() collects them.
std::span<const Effect> DepthEffects();
std::span<const Effect> FilterEffects();
std::span<const Effect> MorphologyEffects();
std::span<const Effect> PointEffects();
std::span<const Effect> ResizeEffect();
std::span<const Effect> RotateEffects();

// Depths of the result that several effects have.
inline constexpr std::string_view SameDepth = "as before";
inline constexpr std::string_view DepthOfValues =
    "1, 4 and 8: 8 where the palette is grey, else 24; 24 and 32 as before";

}  // namespace kw
