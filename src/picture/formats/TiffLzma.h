#pragma once

#include "picture/formats/TiffHandle.h"

namespace kw {

// Raises InvalidPicture where LZMA pixels of the selected page ask for a dictionary of more than `room` bytes: libtiff
// gives the decoder whatever it asks for. `fileSize` is in bytes.
void RequireLzmaFits(const TiffHandle& tiff, std::uint64_t fileSize, std::uint64_t room);

}  // namespace kw
