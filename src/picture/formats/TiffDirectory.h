#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "picture/Bytes.h"
#include "picture/Stream.h"

namespace kw {

// Tags that are read here without the codec library.
namespace TiffTag {
enum : std::uint16_t {
  ImageWidth = 256,
  ImageLength = 257,
  BitsPerSample = 258,
  Compression = 259,
  StripOffsets = 273,
  Orientation = 274,
  SamplesPerPixel = 277,
  StripByteCounts = 279,
  XResolution = 282,
  YResolution = 283,
  FreeOffsets = 288,
  FreeByteCounts = 289,
  ResolutionUnit = 296,
  TileOffsets = 324,
  TileByteCounts = 325,
  SubDirectories = 330,
  FirstOldJpeg = 512,
  LastOldJpeg = 521,
  Exif = 34665,
  Gps = 34853,
  Interoperability = 40965,
};
}

// Value types.
namespace TiffType {
enum : std::uint16_t {
  Short = 3,
  Long = 4,
  Rational = 5,
  SignedRational = 10,
  Float = 11,
  Double = 12,
  Long8 = 16,
  SignedLong8 = 17,
  Directory8 = 18,
};
}

// Bytes of one value of a type; 0 for a type that is not known.
std::size_t TiffTypeSize(std::uint16_t type);

struct TiffEntry {
  std::uint16_t tag = 0;
  std::uint16_t type = 0;
  std::uint64_t count = 0;
  // The position of the values: in the entry itself or elsewhere in the file.
  std::uint64_t valuePosition = 0;
  // Bytes of all values together.
  std::uint64_t valueBytes = 0;
};

// The structure of a TIFF or BigTIFF file: its chain of directories, one a page, and their entries.
class TiffStructure {
public:
  enum class Chain { Whole, FirstOnly };
  // Reads the chain but not the directories. Raises InvalidPicture if the stream is no TIFF, or if the chain leaves the
  // file, is circular or has more than MostPages. FirstOnly takes the first directory alone
  // and does not read its link.
  explicit TiffStructure(Stream& file, Chain chain = Chain::Whole);

  ByteOrder Order() const { return order; }
  bool IsBig() const { return big; }
  // The positions of the directories, in the order of the pages; at least one.
  const std::vector<std::uint64_t>& Directories() const { return directories; }

  // The sound entries of a directory in the order of the file; entries of unknown type and those whose values lie
  // outside the file are left out. Raises InvalidPicture if the directory cannot be read.
  std::vector<TiffEntry> ReadDirectory(Stream& file, std::uint64_t position) const;
  // The position of a directory's link to the next one.
  std::uint64_t LinkOf(Stream& file, std::uint64_t position) const {
    return position + CountSize() + ReadEntryCount(file, position) * EntrySize();
  }

  // The values of an entry of whole numbers. Empty for other types and if they cannot be read.
  std::vector<std::uint64_t> ReadNumbers(Stream& file, const TiffEntry& entry) const;
  // The first value of the entry with that tag, or `missing`.
  std::uint64_t ReadNumber(Stream& file, const std::vector<TiffEntry>& entries, std::uint16_t tag,
                           std::uint64_t missing) const;
  // The first value of the entry with that tag, of any type of number but the signed ones, as the codec library reads
  // it; 0 if there is none.
  double ReadReal(Stream& file, const std::vector<TiffEntry>& entries, std::uint16_t tag) const;

  // Sizes of the parts of a directory.
  std::size_t CountSize() const { return big ? 8 : 2; }
  std::size_t EntrySize() const { return big ? 20 : 12; }
  std::size_t OffsetSize() const { return big ? 8 : 4; }
  std::size_t HeaderSize() const { return big ? 16 : 8; }

private:
  std::uint64_t ReadOffset(std::span<const std::uint8_t> bytes, std::size_t at) const;
  std::uint64_t ReadEntryCount(Stream& file, std::uint64_t position) const;

  ByteOrder order = ByteOrder::Little;
  bool big = false;
  std::vector<std::uint64_t> directories;
};

const TiffEntry* FindEntry(const std::vector<TiffEntry>& entries, std::uint16_t tag);

}  // namespace kw
