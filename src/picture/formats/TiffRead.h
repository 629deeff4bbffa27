#pragma once

#include "picture/PictureFormat.h"

namespace kw {

// Decodes the page whose directory lies at `directory`, upright. Grey and palette pages of 1 sample keep their indices
// (up to 8 bits; 16 become 8), colours of any kind become 24 bits, or 32 with alpha. Raises InvalidPicture.
Bitmap ReadTiffPage(Stream& file, std::uint64_t directory, const ReadLimits& limits, std::string& warning);

}  // namespace kw
