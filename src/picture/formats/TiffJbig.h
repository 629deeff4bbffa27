#pragma once

#include "picture/formats/TiffHandle.h"

namespace kw {

// Raises InvalidPicture where libtiff was built without JBIG, or where JBIG pixels claim more memory than the strips or
// tiles of the selected page have room for: the decoder believes them, and ends the program where it gets no memory.
// `fileSize` is in bytes.
void RequireJbigFits(const TiffHandle& tiff, std::uint64_t fileSize);

}  // namespace kw
