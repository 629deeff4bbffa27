#include "picture/formats/TiffParts.h"

#include <algorithm>
#include <array>

#include "picture/Unreadable.h"
#include "picture/formats/TiffBounds.h"

namespace kw {
namespace {

// A stream of the XZ format: a header of 12 bytes, blocks, an index. Each block states the size of its dictionary.
constexpr std::array<std::uint8_t, 6> Mark{0xFD, '7', 'z', 'X', 'Z', 0};
constexpr std::size_t StreamHeader = 12;
constexpr std::array<std::uint8_t, 16> CheckSizes{0, 4, 4, 4, 8, 8, 8, 16, 16, 16, 32, 32, 32, 64, 64, 64};
constexpr std::uint64_t Lzma2 = 0x21;

using Code = std::span<const std::uint8_t>;

// Reads a number in groups of 7 bits, the lowest first, and moves `at` behind it.
std::uint64_t Number(Code code, std::size_t& at) {
  std::uint64_t value = 0;
  for (unsigned shift = 0; at < code.size() && shift < 63; shift += 7) {
    const std::uint64_t byte = code[at++];
    value |= (byte & 0x7F) << shift;
    if (byte < 0x80) break;
  }
  return value;
}

std::uint64_t DictionaryOf(Code header) {
  const unsigned flags = header[1];
  std::size_t at = 2;
  if ((flags & 0x40U) != 0) Number(header, at);
  if ((flags & 0x80U) != 0) Number(header, at);
  for (unsigned filters = (flags & 3U) + 1; filters != 0 && at < header.size(); --filters) {
    const std::uint64_t filter = Number(header, at);
    const std::uint64_t size = Number(header, at);
    if (size > header.size() - at) break;
    if (filter == Lzma2 && size == 1) {
      const unsigned bits = header[at] & 0x3FU;
      return std::uint64_t{2U | (bits & 1U)} << (bits / 2 + 11);
    }
    at += static_cast<std::size_t>(size);
  }
  return 0;
}

// The end of the chunks of a block that begin at `at`.
std::size_t EndOfChunks(Code code, std::size_t at) {
  const auto sizeAt = [&](std::size_t place) {
    return place + 2 <= code.size() ? std::size_t{code[place]} * 256 + code[place + 1] + 1 : code.size();
  };
  while (at < code.size() && code[at] != 0) {
    const unsigned control = code[at];
    const bool isCoded = control >= 0x80;
    const std::size_t header = isCoded ? control >= 0xC0 ? 6 : 5 : 3;
    at += header + sizeAt(at + (isCoded ? 3 : 1));
  }
  return std::min(at + 1, code.size());
}

// The largest dictionary that the blocks ask for; any number if the decoder refuses the code anyway.
std::uint64_t LargestDictionary(Code code) {
  if (code.size() < StreamHeader || !std::equal(Mark.begin(), Mark.end(), code.begin())) return 0;
  const std::size_t check = CheckSizes[code[7] & 15U];
  std::uint64_t largest = 0;
  for (std::size_t at = StreamHeader; at < code.size() && code[at] != 0;) {
    const std::size_t headerSize = (std::size_t{code[at]} + 1) * 4;
    if (headerSize > code.size() - at) break;
    largest = std::max(largest, DictionaryOf(code.subspan(at, headerSize)));
    at = (EndOfChunks(code, at + headerSize) + 3) / 4 * 4 + check;
  }
  return largest;
}

}  // namespace

void RequireLzmaFits(const TiffHandle& tiff, std::uint64_t fileSize, std::uint64_t most) {
  const bool reversed = tiff.Field(TIFFTAG_FILLORDER, std::uint16_t{FILLORDER_MSB2LSB}) == FILLORDER_LSB2MSB;
  ForCodedPieces(tiff, fileSize, [&](std::span<std::uint8_t> code) {
    if (reversed) TIFFReverseBits(code.data(), static_cast<tmsize_t>(code.size()));
    if (LargestDictionary(code) > most) RaiseUnreadable("The picture is too large: its coding needs too much memory.");
  });
}

}  // namespace kw
