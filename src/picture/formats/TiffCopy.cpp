#include "picture/formats/TiffCopy.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "picture/PictureFormat.h"
#include "picture/Unreadable.h"

namespace kw {
namespace {

constexpr std::uint64_t OldJpeg = 6;
constexpr std::uint64_t MostValueBytes = std::uint64_t{64} * 1024 * 1024;

bool IsOffsets(std::uint16_t tag) { return tag == TiffTag::StripOffsets || tag == TiffTag::TileOffsets; }

bool PointsIntoFile(std::uint16_t tag) {
  return tag == TiffTag::SubDirectories || tag == TiffTag::Exif || tag == TiffTag::Gps ||
         tag == TiffTag::Interoperability || tag == TiffTag::FreeOffsets || tag == TiffTag::FreeByteCounts ||
         (tag >= TiffTag::FirstOldJpeg && tag <= TiffTag::LastOldJpeg);
}

// The coded pieces of a page.
struct Pieces {
  std::vector<std::uint64_t> positions;
  std::vector<std::uint64_t> sizes;
};

// Empty where the page is not laid out soundly.
Pieces FindPieces(const TiffStructure& structure, Stream& file, const std::vector<TiffEntry>& entries) {
  const bool tiled = FindEntry(entries, TiffTag::TileOffsets) != nullptr;
  const TiffEntry* offsets = FindEntry(entries, tiled ? TiffTag::TileOffsets : TiffTag::StripOffsets);
  const TiffEntry* counts = FindEntry(entries, tiled ? TiffTag::TileByteCounts : TiffTag::StripByteCounts);
  if (offsets == nullptr || counts == nullptr || (tiled && FindEntry(entries, TiffTag::StripOffsets) != nullptr))
    return {};
  Pieces pieces{structure.ReadNumbers(file, *offsets), structure.ReadNumbers(file, *counts)};
  if (pieces.positions.size() != pieces.sizes.size()) return {};
  // Pieces that share bytes would make a large file out of a small one.
  std::uint64_t room = file.Size();
  for (std::size_t i = 0; i < pieces.sizes.size(); ++i) {
    if (pieces.sizes[i] > room || pieces.positions[i] > file.Size() - pieces.sizes[i]) return {};
    room -= pieces.sizes[i];
  }
  return pieces;
}

// The bytes in front of the pieces: header, the directory, the values that do not fit into it.
class Head {
public:
  explicit Head(const TiffStructure& source) : structure(source), order(source.Order()) {}

  void AppendHeader() {
    const char mark = order == ByteOrder::Little ? 'I' : 'M';
    bytes.assign(2, static_cast<std::uint8_t>(mark));
    Append(structure.IsBig() ? 43 : 42, 2);
    if (structure.IsBig()) {
      Append(8, 2);
      Append(0, 2);
    }
    Append(structure.HeaderSize(), structure.OffsetSize());
  }

  // `values` are in the file's byte order.
  void AppendEntry(const TiffEntry& entry, std::vector<std::uint8_t> values) {
    Append(entry.tag, 2);
    Append(entry.type, 2);
    Append(entry.count, structure.OffsetSize());
    if (values.size() <= structure.OffsetSize()) {
      values.resize(structure.OffsetSize());
      bytes.insert(bytes.end(), values.begin(), values.end());
      return;
    }
    Append(valuesEnd, structure.OffsetSize());
    if (values.size() % 2 != 0) values.push_back(0);
    valuesEnd += values.size();
    outside.insert(outside.end(), values.begin(), values.end());
  }

  void Append(std::uint64_t number, std::size_t size) { AppendNumber(bytes, number, size, order); }

  void AppendOutsideValues() { bytes.insert(bytes.end(), outside.begin(), outside.end()); }

  // Where the next value that does not fit into its entry will lie.
  std::uint64_t valuesEnd = 0;
  std::vector<std::uint8_t> bytes;

private:
  const TiffStructure& structure;
  ByteOrder order;
  std::vector<std::uint8_t> outside;
};

}  // namespace

bool CopyTiffPage(const TiffStructure& structure, Stream& file, std::uint64_t directory, Stream& to) {
  auto entries = structure.ReadDirectory(file, directory);
  if (structure.ReadNumber(file, entries, TiffTag::Compression, 1) == OldJpeg) return false;
  const Pieces pieces = FindPieces(structure, file, entries);
  if (pieces.positions.empty()) return false;
  std::erase_if(entries, [](const TiffEntry& entry) { return PointsIntoFile(entry.tag); });

  // Offsets are written as wide as the file allows, whatever they were.
  const std::size_t offsetSize = structure.OffsetSize();
  std::uint64_t pieceStart =
      structure.HeaderSize() + structure.CountSize() + entries.size() * structure.EntrySize() + offsetSize;
  Head head(structure);
  head.valuesEnd = pieceStart;
  std::uint64_t outsideBytes = 0;
  for (TiffEntry& entry : entries) {
    if (IsOffsets(entry.tag)) {
      entry.type = structure.IsBig() ? TiffType::Long8 : TiffType::Long;
      entry.valueBytes = entry.count * offsetSize;
    }
    if (entry.valueBytes > offsetSize) outsideBytes += (entry.valueBytes + 1) / 2 * 2;
    if (outsideBytes > MostValueBytes) return false;
  }
  pieceStart += outsideBytes;
  const std::uint64_t total = std::accumulate(pieces.sizes.begin(), pieces.sizes.end(), pieceStart);
  if (!structure.IsBig() && total > std::numeric_limits<std::uint32_t>::max()) return false;

  head.AppendHeader();
  head.Append(entries.size(), structure.CountSize());
  for (const TiffEntry& entry : entries) {
    std::vector<std::uint8_t> values;
    if (IsOffsets(entry.tag)) {
      std::uint64_t position = pieceStart;
      for (const std::uint64_t size : pieces.sizes) {
        AppendNumber(values, position, offsetSize, structure.Order());
        position += size;
      }
    } else {
      values.resize(static_cast<std::size_t>(entry.valueBytes));
      if (!file.Seek(entry.valuePosition) || !file.ReadAll(values.data(), values.size())) return false;
    }
    head.AppendEntry(entry, std::move(values));
  }
  head.Append(0, offsetSize);
  head.AppendOutsideValues();

  if (!to.WriteAll(head.bytes)) RaiseUnreadable("The picture cannot be written.");
  for (std::size_t i = 0; i < pieces.sizes.size(); ++i) CopyBytes(file, pieces.positions[i], pieces.sizes[i], to);
  return true;
}

}  // namespace kw
