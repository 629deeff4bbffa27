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

// Empty if the page's layout is not sound.
Pieces FindPieces(const TiffStructure& structure, Stream& file, const std::vector<TiffEntry>& entries) {
  const bool tiled = FindEntry(entries, TiffTag::TileOffsets) != nullptr;
  const TiffEntry* offsets = FindEntry(entries, tiled ? TiffTag::TileOffsets : TiffTag::StripOffsets);
  const TiffEntry* counts = FindEntry(entries, tiled ? TiffTag::TileByteCounts : TiffTag::StripByteCounts);
  if (offsets == nullptr || counts == nullptr || (tiled && FindEntry(entries, TiffTag::StripOffsets) != nullptr))
    return {};
  Pieces pieces{structure.ReadNumbers(file, *offsets), structure.ReadNumbers(file, *counts)};
  if (pieces.positions.size() != pieces.sizes.size()) return {};
  // Pieces that share bytes would turn a small file into a large one.
  std::uint64_t rest = file.Size();
  for (std::size_t i = 0; i < pieces.sizes.size(); ++i) {
    if (pieces.sizes[i] > rest || pieces.positions[i] > file.Size() - pieces.sizes[i]) return {};
    rest -= pieces.sizes[i];
  }
  return pieces;
}

// The layout of the copy in its file.
struct CodedLayout {
  ByteOrder order = ByteOrder::Little;
  bool big = false;
  std::uint64_t directory = 0;

  std::size_t CountSize() const { return big ? 8 : 2; }
  std::size_t OffsetSize() const { return big ? 8 : 4; }
  std::size_t EntrySize() const { return big ? 20 : 12; }
};

// An entry of the copy. Its values are in the copy's byte order; offsets are set when the pieces are placed.
struct CopiedEntry {
  std::uint16_t tag = 0;
  std::uint16_t type = 0;
  std::uint64_t count = 0;
  std::vector<std::uint8_t> values;
};

// The size of the units whose bytes are swapped when the byte order changes.
std::size_t NumberSize(std::uint16_t type) {
  return type == TiffType::Rational || type == TiffType::SignedRational ? 4 : TiffTypeSize(type);
}

bool IsWideInteger(std::uint16_t type) {
  return type == TiffType::Long8 || type == TiffType::SignedLong8 || type == TiffType::Directory8;
}

// False if a number does not fit.
bool Convert(CopiedEntry& entry, ByteOrder from, const CodedLayout& to) {
  if (IsWideInteger(entry.type) && !to.big) {
    std::vector<std::uint8_t> narrow;
    for (std::size_t at = 0; at < entry.values.size(); at += 8) {
      const auto value = NumberAt<std::uint64_t>(entry.values, at, from);
      if (value > std::numeric_limits<std::uint32_t>::max()) return false;
      AppendNumber(narrow, value, 4, to.order);
    }
    entry.type = TiffType::Long;
    entry.values = std::move(narrow);
  } else if (from != to.order) {
    const std::size_t size = NumberSize(entry.type);
    for (auto at = entry.values.begin(); at != entry.values.end(); at += static_cast<std::ptrdiff_t>(size)) {
      std::reverse(at, at + static_cast<std::ptrdiff_t>(size));
    }
  }
  return true;
}

// The codec library swaps samples of these sizes if the byte order is not the processor's.
bool PixelsHaveByteOrder(const TiffStructure& structure, Stream& file, const std::vector<TiffEntry>& entries) {
  return structure.ReadNumber(file, entries, TiffTag::BitsPerSample, 1) % 8 == 0 &&
         structure.ReadNumber(file, entries, TiffTag::BitsPerSample, 1) > 8;
}

// The entries of the copy in the order of their tags; none if the page cannot be copied.
std::vector<CopiedEntry> EntriesFor(const CodedLayout& layout, const TiffStructure& structure, Stream& file,
                                    const std::vector<TiffEntry>& entries, std::size_t pieces) {
  std::vector<CopiedEntry> copied;
  std::uint64_t valueBytes = 0;
  for (const TiffEntry& entry : entries) {
    if (PointsIntoFile(entry.tag)) continue;
    CopiedEntry one{entry.tag, entry.type, entry.count, {}};
    if (IsOffsets(entry.tag)) {
      // As wide as the new file's offsets, whatever they were.
      one.type = layout.big ? TiffType::Long8 : TiffType::Long;
      one.values.resize(pieces * layout.OffsetSize());
    } else {
      valueBytes += entry.valueBytes;
      if (valueBytes > MostValueBytes) return {};
      one.values.resize(static_cast<std::size_t>(entry.valueBytes));
      if (!file.Seek(entry.valuePosition) || !file.ReadAll(one.values.data(), one.values.size())) return {};
      if (!Convert(one, structure.Order(), layout)) return {};
    }
    copied.push_back(std::move(one));
  }
  return copied;
}

// The directory and the values that do not fit into it. The pieces follow.
class Head {
public:
  Head(const CodedLayout& place, std::vector<CopiedEntry> list)
      : layout(place), entries(std::move(list)), size(Link() + layout.OffsetSize() - layout.directory) {
    for (const CopiedEntry& entry : entries) {
      if (!Fits(entry)) size += (entry.values.size() + 1) / 2 * 2;
    }
  }

  std::uint64_t Link() const { return layout.directory + layout.CountSize() + entries.size() * layout.EntrySize(); }
  std::uint64_t End() const { return layout.directory + size; }

  std::vector<std::uint8_t> Bytes(const std::vector<std::uint64_t>& pieceSizes) {
    for (CopiedEntry& entry : entries) {
      if (IsOffsets(entry.tag)) entry.values = Offsets(pieceSizes);
    }
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint8_t> outside;
    const auto append = [&](std::uint64_t number, std::size_t width) {
      AppendNumber(bytes, number, width, layout.order);
    };
    const std::uint64_t outsideBegin = Link() + layout.OffsetSize();
    append(entries.size(), layout.CountSize());
    for (CopiedEntry& entry : entries) {
      append(entry.tag, 2);
      append(entry.type, 2);
      append(entry.count, layout.OffsetSize());
      if (Fits(entry)) {
        entry.values.resize(layout.OffsetSize());
        bytes.insert(bytes.end(), entry.values.begin(), entry.values.end());
      } else {
        append(outsideBegin + outside.size(), layout.OffsetSize());
        if (entry.values.size() % 2 != 0) entry.values.push_back(0);
        outside.insert(outside.end(), entry.values.begin(), entry.values.end());
      }
    }
    append(0, layout.OffsetSize());
    bytes.insert(bytes.end(), outside.begin(), outside.end());
    return bytes;
  }

private:
  bool Fits(const CopiedEntry& entry) const { return entry.values.size() <= layout.OffsetSize(); }

  std::vector<std::uint8_t> Offsets(const std::vector<std::uint64_t>& pieceSizes) const {
    std::vector<std::uint8_t> offsets;
    std::uint64_t position = End();
    for (const std::uint64_t pieceSize : pieceSizes) {
      AppendNumber(offsets, position, layout.OffsetSize(), layout.order);
      position += pieceSize;
    }
    return offsets;
  }

  CodedLayout layout;
  std::vector<CopiedEntry> entries;
  std::uint64_t size;
};

void Insert(std::vector<CopiedEntry>& entries, const TiffMark& mark, ByteOrder order) {
  std::erase_if(entries, [&](const CopiedEntry& entry) { return entry.tag == mark.tag; });
  CopiedEntry entry{mark.tag, TiffType::Short, 2, {}};
  AppendNumber(entry.values, mark.first, 2, order);
  AppendNumber(entry.values, mark.second, 2, order);
  entries.insert(std::ranges::upper_bound(entries, mark.tag, {}, &CopiedEntry::tag), std::move(entry));
}

// `header` goes to the beginning of the file. Returns the position of the link.
std::optional<std::uint64_t> Copy(const TiffStructure& structure, Stream& file, std::uint64_t directory, Stream& to,
                                  const CodedLayout& layout, const std::vector<std::uint8_t>& header,
                                  const std::optional<TiffMark>& mark) {
  const auto entries = structure.ReadDirectory(file, directory);
  if (structure.ReadNumber(file, entries, TiffTag::Compression, 1) == OldJpeg) return {};
  if (layout.order != structure.Order() && PixelsHaveByteOrder(structure, file, entries)) return {};
  const Pieces pieces = FindPieces(structure, file, entries);
  if (pieces.positions.empty()) return {};
  auto copied = EntriesFor(layout, structure, file, entries, pieces.sizes.size());
  if (copied.empty()) return {};
  if (mark) Insert(copied, *mark, layout.order);

  Head head(layout, std::move(copied));
  const std::uint64_t total = std::accumulate(pieces.sizes.begin(), pieces.sizes.end(), head.End());
  if (!layout.big && total > std::numeric_limits<std::uint32_t>::max()) return {};

  const bool placed = header.empty() ? to.Seek(layout.directory) : to.WriteAll(header);
  if (!placed || !to.WriteAll(head.Bytes(pieces.sizes))) RaiseUnreadable("The picture cannot be written.");
  for (std::size_t i = 0; i < pieces.sizes.size(); ++i) CopyBytes(file, pieces.positions[i], pieces.sizes[i], to);
  return head.Link();
}

}  // namespace

bool CopyTiffPage(const TiffStructure& structure, Stream& file, std::uint64_t directory, Stream& to) {
  const ByteOrder order = structure.Order();
  const auto mark = static_cast<std::uint8_t>(order == ByteOrder::Little ? 'I' : 'M');
  std::vector<std::uint8_t> header(2, mark);
  AppendNumber(header, structure.IsBig() ? 43 : 42, 2, order);
  if (structure.IsBig()) {
    AppendNumber(header, 8, 2, order);
    AppendNumber(header, 0, 2, order);
  }
  AppendNumber(header, structure.HeaderSize(), structure.OffsetSize(), order);
  const CodedLayout layout{order, structure.IsBig(), structure.HeaderSize()};
  return Copy(structure, file, directory, to, layout, header, {}).has_value();
}

std::optional<std::uint64_t> CopyTiffPageInto(const TiffStructure& structure, Stream& file, std::uint64_t directory,
                                              Stream& to, std::uint64_t position, const std::optional<TiffMark>& mark) {
  return Copy(structure, file, directory, to, {ByteOrder::Little, false, position}, {}, mark);
}

}  // namespace kw
