#pragma once

#include "picture/PictureFormat.h"

namespace kw {

// Writes a TIFF file of one page without loss: CCITT G4 for black and white, LZW for everything else.
void WriteTiff(const Bitmap& picture, Stream& to, const WriteOptions& options);

}  // namespace kw
