#pragma once

#include <optional>

#include "picture/formats/TiffDirectory.h"

namespace kw {

// Writes a TIFF file of one page whose strips or tiles are the coded bytes of the page at `directory` and whose tags
// are its tags, in the same byte order. What only has a meaning inside the old file is left out: pointers to further
// directories and lists of free space. False, with nothing written, where the page is not laid out soundly or its
// coding points into the old file. Raises InvalidPicture where a stream fails on the way.
bool CopyTiffPage(const TiffStructure& structure, Stream& file, std::uint64_t directory, Stream& to);

// A private tag of two numbers of 16 bits.
struct TiffMark {
  std::uint16_t tag = 0;
  std::uint16_t first = 0;
  std::uint16_t second = 0;
};

// Writes the directory of such a copy at `position` of `to`, a TIFF file with offsets of 32 bits and little-endian
// numbers, and behind it the values and coded bytes; `mark` joins the tags. Returns where its link to a next page lies,
// which is empty. None, with nothing written, also where the coded bytes depend on the byte order or something would
// lie beyond 4 GB.
std::optional<std::uint64_t> CopyTiffPageInto(const TiffStructure& structure, Stream& file, std::uint64_t directory,
                                              Stream& to, std::uint64_t position, const std::optional<TiffMark>& mark);

}  // namespace kw
