#pragma once

#include "picture/PictureFormat.h"

namespace kw {

inline constexpr double CentimetresPerInch = 2.54;

// The formats, one file each. Whoever adds one adds its row here and to the table of PictureFormat.cpp.
// A document of this format is a TIFF file too, and is recognised before it.
extern const PictureFormat FmfFormat;
extern const PictureFormat TiffFormat;
extern const PictureFormat JpegFormat;
extern const PictureFormat GifFormat;
extern const PictureFormat BmpFormat;

}  // namespace kw
