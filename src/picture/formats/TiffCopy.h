#pragma once

#include <optional>

#include "picture/formats/TiffDirectory.h"

namespace kw {

// Writes a TIFF file of one page with the coded strips or tiles and the tags of the page at `directory`, in the same
// byte order. Tags that only have a meaning inside the old file are left out: pointers to further directories and lists
// of free space. Returns false and writes nothing if the page's layout is not sound or its coding points into the old
// file. Raises InvalidPicture if a stream fails.
bool CopyTiffPage(const TiffStructure& structure, Stream& file, std::uint64_t directory, Stream& to);

// A private tag that holds two numbers of 16 bits.
struct TiffMark {
  std::uint16_t tag = 0;
  std::uint16_t first = 0;
  std::uint16_t second = 0;
};

// Writes the directory of such a copy at `position` of `to`, a little-endian TIFF file with offsets of 32 bits, and
// behind it the values and coded bytes; `mark` is added to the tags. Returns the position of its link to a next page,
// which is empty. Returns none and writes nothing also if the coded bytes depend on the byte order or would go beyond 4
// GB.
std::optional<std::uint64_t> CopyTiffPageInto(const TiffStructure& structure, Stream& file, std::uint64_t directory,
                                              Stream& to, std::uint64_t position, const std::optional<TiffMark>& mark);

}  // namespace kw
