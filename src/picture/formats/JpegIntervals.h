#pragma once

#include "picture/formats/JpegDecoder.h"

namespace kw {

// Decodes a page whose coded pixels have restart markers on several threads, each a band of rows. `codec` is the header
// of the same stream, whose position does not change. Returns true if the pixels are those that one decoder would make,
// and it would not have complained. False: nothing is known, and the page has to be decoded in the plain way, whether
// because there are no such markers, because threads do not pay, or because something was not sound.
bool ReadIntervalsByThreads(Stream& file, const jpeg_decompress_struct& codec, Bitmap& page);

}  // namespace kw
