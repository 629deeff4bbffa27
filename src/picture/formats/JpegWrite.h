#pragma once

#include "picture/PictureFormat.h"

namespace kw {

// Writes levels of grey with 8 bits, everything else with 24.
void WriteJpeg(const Bitmap& picture, Stream& to, const WriteOptions& options);

}  // namespace kw
