#pragma once

#include <cstdint>
#include <span>

#include "picture/formats/Formats.h"

namespace kw {

// Opens, reads, copies and rewrites whatever bytes it is given as a file of the format; the pages that could be read.
int TryFormat(const PictureFormat& format, std::span<const std::uint8_t> bytes);
// Runs an effect with any values on a small picture, both of which the bytes tell (EffectCase.h).
void TryEffect(std::span<const std::uint8_t> bytes);
// Opens the bytes as a document in the control, turns its pages, opens its first page file.
void TryDocument(std::span<const std::uint8_t> bytes);
// Lists the stamps of such a list and adds one.
void TryStamps(std::span<const std::uint8_t> bytes);
// Reads the bytes as persisted properties, and those into a control, which is saved and loaded again.
void TryBag(std::span<const std::uint8_t> bytes);
// Verbs, commands, mouse, keys, persistence, design mode and given pages in the order that the bytes tell.
void TrySteps(std::span<const std::uint8_t> bytes);

}  // namespace kw
