#include "picture/formats/JpegScan.h"

#include <algorithm>
#include <cstring>

namespace kw {
namespace {

enum Marker : std::uint8_t {
  FirstFrame = 0xC0,
  SecondFrame = 0xC1,
  HuffmanTables = 0xC4,
  FirstRestart = 0xD0,
  LastRestart = 0xD7,
  StreamBegin = 0xD8,
  StreamEnd = 0xD9,
  ScanBegin = 0xDA,
  QuantizerTables = 0xDB,
  RestartInterval = 0xDD,
  FirstOfApplications = 0xE0,
  LastOfApplications = 0xEF,
  Comment = 0xFE,
};

constexpr std::uint8_t MarkerByte = 0xFF;
constexpr std::uint32_t BlockSide = 8;
constexpr std::uint64_t RestartNumbers = 8;
constexpr unsigned TableKinds = 3;
constexpr unsigned TablesOfKind = 4;

class ScanParser {
public:
  explicit ScanParser(std::span<const std::uint8_t> bytes) : stream(bytes) {}

  std::optional<JpegScan> Parse() {
    if (stream.size() < 2 || stream.size() > LongestJpegScan || stream[0] != MarkerByte || stream[1] != StreamBegin)
      return std::nullopt;
    at = 2;
    while (!isAtCodes) {
      if (!TakeSegment()) return std::nullopt;
    }
    scan.codesBegin = at;
    if (!TakeCodes()) return std::nullopt;
    return std::move(scan);
  }

private:
  std::uint32_t Word(std::size_t place) const { return std::uint32_t{stream[place]} << 8U | stream[place + 1]; }

  bool TakeSegment() {
    if (stream.size() - at < 4 || stream[at] != MarkerByte) return false;
    const std::uint8_t marker = stream[at + 1];
    const std::size_t size = Word(at + 2);
    if (size < 2 || size > stream.size() - at - 2) return false;
    const std::size_t begin = at + 4;
    const std::size_t end = at + 2 + size;
    const bool isTaken = Take(marker, begin, end);
    at = end;
    return isTaken;
  }

  bool Take(std::uint8_t marker, std::size_t begin, std::size_t end) {
    switch (marker) {
      case FirstFrame:
      case SecondFrame:
        return TakeFrame(begin, end);
      case RestartInterval:
        if (end - begin != 2) return false;
        scan.interval = Word(begin);
        return true;
      case HuffmanTables:
        return TakeHuffmanTables(begin, end);
      case QuantizerTables:
        return TakeQuantizerTables(begin, end);
      case ScanBegin:
        isAtCodes = true;
        return TakeScan(begin, end);
      default:
        return (marker >= FirstOfApplications && marker <= LastOfApplications) || marker == Comment;
    }
  }

  // Quantizers are bits 0 to 3, Huffman tables of the first coefficient 4 to 7, those of the others 8 to 11.
  static bool Note(std::uint16_t& tables, unsigned kind, unsigned number) {
    if (kind >= TableKinds || number >= TablesOfKind) return false;
    tables = static_cast<std::uint16_t>(tables | 1U << (kind * TablesOfKind + number));
    return true;
  }

  bool TakeQuantizerTables(std::size_t begin, std::size_t end) {
    constexpr std::size_t values = 64;
    while (begin < end) {
      const unsigned first = stream[begin];
      const std::size_t size = 1 + values * (first < 16 ? 1 : 2);
      if (size > end - begin || !Note(scan.definedTables, 0, first & 15U)) return false;
      begin += size;
    }
    return true;
  }

  bool TakeHuffmanTables(std::size_t begin, std::size_t end) {
    constexpr std::size_t fixedBytes = 17;
    while (begin < end) {
      if (end - begin < fixedBytes) return false;
      const unsigned first = stream[begin];
      std::size_t size = fixedBytes;
      for (const std::uint8_t codesOfLength : stream.subspan(begin + 1, fixedBytes - 1)) size += codesOfLength;
      if (size > end - begin || !Note(scan.definedTables, 1 + (first >> 4U), first & 15U)) return false;
      begin += size;
    }
    return true;
  }

  // All components have to be in the scan.
  bool TakeScan(std::size_t begin, std::size_t end) {
    constexpr std::size_t fixedBytes = 4;
    if (components == 0 || end - begin != fixedBytes + components * 2 || stream[begin] != components) return false;
    for (std::size_t i = 0; i < components; ++i) {
      const unsigned tables = stream[begin + 2 + i * 2];
      if (!Note(scan.neededTables, 1, tables >> 4U) || !Note(scan.neededTables, 2, tables & 15U)) return false;
    }
    return true;
  }

  bool TakeFrame(std::size_t begin, std::size_t end) {
    constexpr std::size_t fixedBytes = 6;
    constexpr std::size_t componentBytes = 3;
    if (components != 0 || end - begin < fixedBytes) return false;
    components = stream[begin + 5];
    if (components == 0 || end - begin != fixedBytes + components * componentBytes) return false;
    scan.heightAt = begin + 1;
    scan.height = Word(begin + 1);
    const std::uint32_t width = Word(begin + 3);
    if (scan.height == 0 || width == 0) return false;
    std::uint32_t across = 1;
    std::uint32_t down = 1;
    for (std::size_t i = 0; i < components; ++i) {
      const std::size_t place = begin + fixedBytes + i * componentBytes;
      if (!Note(scan.neededTables, 0, stream[place + 2])) return false;
      const std::uint32_t factors = stream[place + 1];
      across = std::max(across, factors >> 4U);
      down = std::max(down, factors & 15U);
    }
    if (components == 1 && (across != 1 || down != 1)) return false;
    scan.unitHeight = BlockSide * down;
    scan.unitsPerRow = (width + BlockSide * across - 1) / (BlockSide * across);
    return true;
  }

  // The codes end with the end of the stream. A marker in them is a restart, and has the number that it has to have.
  bool TakeCodes() {
    const std::uint64_t rows = (scan.height + scan.unitHeight - 1) / scan.unitHeight;
    const std::uint64_t restarts = scan.interval == 0 ? 0 : (rows * scan.unitsPerRow - 1) / scan.interval;
    while (at + 1 < stream.size()) {
      const void* found = std::memchr(stream.data() + at, MarkerByte, stream.size() - 1 - at);
      if (found == nullptr) return false;
      at = static_cast<std::size_t>(static_cast<const std::uint8_t*>(found) - stream.data());
      const std::uint8_t marker = stream[at + 1];
      if (marker == StreamEnd) {
        scan.codesEnd = at;
        return scan.restarts.size() == restarts;
      }
      if (marker >= FirstRestart && marker <= LastRestart) {
        const bool isNext = marker - FirstRestart == static_cast<int>(scan.restarts.size() % RestartNumbers);
        if (!isNext || scan.restarts.size() == restarts) return false;
        scan.restarts.push_back(static_cast<std::uint32_t>(at));
      } else if (marker != 0) {
        return false;
      }
      at += 2;
    }
    return false;
  }

  std::span<const std::uint8_t> stream;
  JpegScan scan;
  std::size_t at = 0;
  std::size_t components = 0;
  bool isAtCodes = false;
};

}  // namespace

std::optional<JpegScan> JpegScanOf(std::span<const std::uint8_t> stream) { return ScanParser(stream).Parse(); }

}  // namespace kw
