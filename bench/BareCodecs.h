#pragma once

#include <span>

#include <tiffio.h>

#include "components/base/Bitmap.h"
#include "picture/Stream.h"

namespace kw {

// The codec libraries as a program without this engine would use them.

TIFF* OpenTiffBare(Stream& stream, const char* mode);

// Decodes the first page strip by strip, one behind the other into memory of its own; JPEG to red, green and blue.
void DecodeTiffBare(Stream& file);

// Decodes a picture of three colours, blue first.
void DecodeJpegBare(std::span<const std::uint8_t> bytes);

// How a picture of three colours is coded, of the quality 90.
struct BareJpeg {
  // As many samples of each colour as there are pixels.
  bool fineColour = true;
  // Rows of blocks from one restart marker to the next; 0 for none.
  int restartRows = 0;
};
void CodeJpegBare(const Bitmap& page, BareJpeg kind, Stream& to);

}  // namespace kw
