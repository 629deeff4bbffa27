#pragma once

#include "picture/formats/TiffDirectory.h"

namespace kw {

// Writes a TIFF file of one page whose strips or tiles are the coded bytes of the page at `directory` and whose tags
// are its tags, in the same byte order. What only has a meaning inside the old file is left out: pointers to further
// directories and lists of free space. False, with nothing written, where the page is not laid out soundly or its
// coding points into the old file. Raises InvalidPicture where a stream fails on the way.
bool CopyTiffPage(const TiffStructure& structure, Stream& file, std::uint64_t directory, Stream& to);

}  // namespace kw
