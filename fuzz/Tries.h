#pragma once

#include <cstdint>
#include <span>

#include "picture/formats/Formats.h"

namespace kw {

// Opens, reads, copies and rewrites whatever bytes it is given as a file of the format; the pages that could be read.
int TryFormat(const PictureFormat& format, std::span<const std::uint8_t> bytes);
// Runs an effect with any values on a small picture, both of which the bytes tell (EffectCase.h).
void TryEffect(std::span<const std::uint8_t> bytes);

}  // namespace kw
