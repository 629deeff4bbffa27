#pragma once

#include "picture/PictureFormat.h"

namespace kw {

// The formats, one file each. Whoever adds one adds its row here and to the table of PictureFormat.cpp.
extern const PictureFormat TiffFormat;
extern const PictureFormat JpegFormat;
extern const PictureFormat GifFormat;
extern const PictureFormat BmpFormat;

}  // namespace kw
