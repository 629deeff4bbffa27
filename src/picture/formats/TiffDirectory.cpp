#include "picture/formats/TiffDirectory.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string>
#include <unordered_set>

#include "picture/PictureFormat.h"
#include "picture/Unreadable.h"

namespace kw {
namespace {

// A directory that claims more entries is damaged.
constexpr std::uint64_t MostEntries = 65535;

[[noreturn]] void RaiseCutShort() { RaiseUnreadable("The TIFF file is damaged or cut short."); }

}  // namespace

std::size_t TiffTypeSize(std::uint16_t type) {
  constexpr std::array<std::uint8_t, 19> sizes{0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
  return type < sizes.size() ? sizes[type] : 0;
}

const TiffEntry* FindEntry(const std::vector<TiffEntry>& entries, std::uint16_t tag) {
  const auto found = std::ranges::find(entries, tag, &TiffEntry::tag);
  return found == entries.end() ? nullptr : &*found;
}

TiffStructure::TiffStructure(Stream& file, Chain chain) {
  std::array<std::uint8_t, 16> header{};
  if (!file.Seek(0) || !file.ReadAll(header.data(), 8)) RaiseCutShort();
  order = header[0] == 'M' ? ByteOrder::Big : ByteOrder::Little;
  big = NumberAt<std::uint16_t>(header, 2, order) == 43;
  if (big && !file.ReadAll(header.data() + 8, 8)) RaiseCutShort();

  std::unordered_set<std::uint64_t> seen;
  std::uint64_t next = ReadOffset(header, big ? 8 : 4);
  while (next != 0) {
    if (!seen.insert(next).second) RaiseUnreadable("The pages of the TIFF file run in a circle.");
    if (directories.size() == MostPages) RaiseUnreadable("The TIFF file has too many pages.");
    directories.push_back(next);
    if (chain == Chain::FirstOnly) break;
    std::array<std::uint8_t, 8> link{};
    if (!file.Seek(LinkOf(file, next)) || !file.ReadAll(link.data(), OffsetSize())) RaiseCutShort();
    next = ReadOffset(link, 0);
  }
  if (directories.empty()) RaiseUnreadable("The TIFF file holds no picture.");
}

std::uint64_t TiffStructure::ReadOffset(std::span<const std::uint8_t> bytes, std::size_t at) const {
  return big ? NumberAt<std::uint64_t>(bytes, at, order) : NumberAt<std::uint32_t>(bytes, at, order);
}

std::uint64_t TiffStructure::ReadEntryCount(Stream& file, std::uint64_t position) const {
  std::array<std::uint8_t, 8> bytes{};
  if (position >= file.Size() || !file.Seek(position) || !file.ReadAll(bytes.data(), CountSize())) RaiseCutShort();
  const std::uint64_t count = big ? NumberAt<std::uint64_t>(bytes, 0, order) : NumberAt<std::uint16_t>(bytes, 0, order);
  if (count == 0 || count > MostEntries) RaiseCutShort();
  return count;
}

std::vector<TiffEntry> TiffStructure::ReadDirectory(Stream& file, std::uint64_t position) const {
  const std::uint64_t count = ReadEntryCount(file, position);
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(count) * EntrySize());
  if (!file.ReadAll(bytes.data(), bytes.size())) RaiseCutShort();
  const std::uint64_t fileSize = file.Size();

  std::vector<TiffEntry> entries;
  for (std::size_t at = 0; at < bytes.size(); at += EntrySize()) {
    TiffEntry entry;
    entry.tag = NumberAt<std::uint16_t>(bytes, at, order);
    entry.type = NumberAt<std::uint16_t>(bytes, at + 2, order);
    entry.count = ReadOffset(bytes, at + 4);
    const std::size_t typeSize = TiffTypeSize(entry.type);
    if (typeSize == 0 || entry.count == 0 || entry.count > fileSize / typeSize) continue;
    entry.valueBytes = entry.count * typeSize;
    const std::size_t valueAt = at + 4 + OffsetSize();
    entry.valuePosition =
        entry.valueBytes <= OffsetSize() ? position + CountSize() + valueAt : ReadOffset(bytes, valueAt);
    if (entry.valuePosition > fileSize || entry.valueBytes > fileSize - entry.valuePosition) continue;
    entries.push_back(entry);
  }
  return entries;
}

std::vector<std::uint64_t> TiffStructure::ReadNumbers(Stream& file, const TiffEntry& entry) const {
  if (entry.type != TiffType::Short && entry.type != TiffType::Long && entry.type != TiffType::Long8) return {};
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(entry.valueBytes));
  if (!file.Seek(entry.valuePosition) || !file.ReadAll(bytes.data(), bytes.size())) return {};
  std::vector<std::uint64_t> numbers;
  numbers.reserve(static_cast<std::size_t>(entry.count));
  const std::size_t size = TiffTypeSize(entry.type);
  for (std::size_t at = 0; at < bytes.size(); at += size) {
    if (size == 2)
      numbers.push_back(NumberAt<std::uint16_t>(bytes, at, order));
    else if (size == 4)
      numbers.push_back(NumberAt<std::uint32_t>(bytes, at, order));
    else
      numbers.push_back(NumberAt<std::uint64_t>(bytes, at, order));
  }
  return numbers;
}

std::uint64_t TiffStructure::ReadNumber(Stream& file, const std::vector<TiffEntry>& entries, std::uint16_t tag,
                                        std::uint64_t missing) const {
  const TiffEntry* entry = FindEntry(entries, tag);
  if (entry == nullptr) return missing;
  TiffEntry first = *entry;
  first.count = 1;
  first.valueBytes = TiffTypeSize(first.type);
  const auto numbers = ReadNumbers(file, first);
  return numbers.empty() ? missing : numbers.front();
}

double TiffStructure::ReadReal(Stream& file, const std::vector<TiffEntry>& entries, std::uint16_t tag) const {
  const TiffEntry* entry = FindEntry(entries, tag);
  if (entry == nullptr) return 0;
  const std::size_t size = TiffTypeSize(entry->type);
  const bool isRational = entry->type == TiffType::Rational;
  const bool isFloat = entry->type == TiffType::Float;
  if (!isRational && !isFloat && entry->type != TiffType::Double) {
    return static_cast<float>(ReadNumber(file, entries, tag, 0));
  }
  std::array<std::uint8_t, 8> bytes{};
  if (!file.Seek(entry->valuePosition) || !file.ReadAll(bytes.data(), size)) return 0;
  const auto first = NumberAt<std::uint32_t>(bytes, 0, order);
  if (isFloat) return std::bit_cast<float>(first);
  if (!isRational) return static_cast<float>(std::bit_cast<double>(NumberAt<std::uint64_t>(bytes, 0, order)));
  const auto divisor = NumberAt<std::uint32_t>(bytes, 4, order);
  return divisor == 0 ? 0 : static_cast<float>(static_cast<double>(first) / static_cast<double>(divisor));
}

}  // namespace kw
