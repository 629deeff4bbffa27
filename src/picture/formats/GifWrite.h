#pragma once

#include "picture/PictureFormat.h"

namespace kw {

// Writes a GIF file of one frame, without loss up to 8 bits per pixel; deeper pictures get a palette. Of 32 bits,
// pixels that are more transparent than not become the transparent colour.
void WriteGif(const Bitmap& picture, Stream& to, const WriteOptions& options);

}  // namespace kw
