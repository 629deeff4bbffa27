#pragma once

#include <span>

#include <tiffio.h>

#include "picture/Stream.h"

namespace kw {

// The codec libraries as a program without this engine would use them.

TIFF* OpenTiffBare(Stream& stream, const char* mode);

// Decodes the first page strip by strip, one behind the other into memory of its own; JPEG to red, green and blue.
void DecodeTiffBare(Stream& file);

// Decodes a picture of three colours, blue first.
void DecodeJpegBare(std::span<const std::uint8_t> bytes);

}  // namespace kw
