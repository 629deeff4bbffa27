#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "picture/effects/Kernels.h"

namespace kw::kernels {
namespace {

// Blocks of pixels that Rotate90 works on: lines of the old picture, and its columns. Larger blocks miss the caches and
// the TLB more often.
constexpr std::int32_t BlockLines = 64;
template <std::size_t Size>
constexpr std::int32_t BlockColumns = Size == 3 ? 128 : 64;

// A result of this size does not stay in the caches, so non-temporal stores are faster.
constexpr std::size_t MuchMemory = std::size_t{4} << 20U;

// Loads eight bytes, the first one highest.
std::uint64_t LoadWord(const std::uint8_t* at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
  return word;
}

void StoreWord(std::uint8_t* at, std::uint64_t word) {
  if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
  std::memcpy(at, &word, sizeof word);
}

// Reverses the order of groups of `bits` bits.
std::uint64_t Reversed(std::uint64_t word, unsigned bits) {
  word = __builtin_bswap64(word);
  word = (word >> 4U & 0x0F0F0F0F0F0F0F0FU) | (word & 0x0F0F0F0F0F0F0F0FU) << 4U;
  if (bits == 4) return word;
  word = (word >> 2U & 0x3333333333333333U) | (word & 0x3333333333333333U) << 2U;
  return (word >> 1U & 0x5555555555555555U) | (word & 0x5555555555555555U) << 1U;
}

std::uint8_t Reversed(std::uint8_t byte, unsigned bits) {
  return static_cast<std::uint8_t>(Reversed(std::uint64_t{byte}, bits) >> 56U);
}

void ReverseBytes(std::uint8_t* row, std::size_t count, unsigned bits) {
  std::uint8_t* left = row;
  std::uint8_t* right = row + count;
  for (; right - left >= 16; left += 8, right -= 8) {
    const std::uint64_t first = LoadWord(left);
    StoreWord(left, Reversed(LoadWord(right - 8), bits));
    StoreWord(right - 8, Reversed(first, bits));
  }
  for (; right - left >= 2; ++left, --right) {
    const std::uint8_t first = *left;
    *left = Reversed(right[-1], bits);
    right[-1] = Reversed(first, bits);
  }
  if (left != right) *left = Reversed(*left, bits);
}

void ShiftLeft(std::uint8_t* row, std::size_t count, unsigned shift) {
  if (shift == 0) return;
  std::size_t i = 0;
  for (; i + 9 <= count; i += 8) {
    StoreWord(row + i, LoadWord(row + i) << shift | static_cast<unsigned>(row[i + 8]) >> (8 - shift));
  }
  for (; i < count; ++i) {
    const unsigned next = i + 1 < count ? row[i + 1] : 0U;
    row[i] = static_cast<std::uint8_t>(static_cast<unsigned>(row[i]) << shift | next >> (8 - shift));
  }
}

// Transposes 8 x 8 bits; the first row is the highest byte.
std::uint64_t Transposed(std::uint64_t x) {
  std::uint64_t t = (x ^ x >> 7U) & 0x00AA00AA00AA00AAU;
  x = x ^ t ^ t << 7U;
  t = (x ^ x >> 14U) & 0x0000CCCC0000CCCCU;
  x = x ^ t ^ t << 14U;
  t = (x ^ x >> 28U) & 0x00000000F0F0F0F0U;
  return x ^ t ^ t << 28U;
}

// A rotation by 90 degrees: maps columns of the new picture to lines of the old one, and old columns to new rows.
struct Rotation90 {
  const Area& from;
  const TargetArea& to;
  bool clockwise;
  std::int32_t begin;
  std::int32_t end;

  const std::uint8_t* Line(std::int32_t x) const {
    const std::int32_t line = clockwise ? from.height - 1 - x : x;
    return from.base + static_cast<std::size_t>(line) * from.stride;
  }
  // nullptr if the row is not in [begin, end).
  std::uint8_t* RowOf(std::int32_t column) const {
    const std::int32_t row = clockwise ? column : from.width - 1 - column;
    return row < begin || row >= end ? nullptr : to.base + static_cast<std::size_t>(row) * to.stride;
  }
  // The old columns that make rows [begin, end).
  std::int32_t FirstColumn() const { return clockwise ? begin : from.width - end; }
  std::int32_t EndColumn() const { return clockwise ? end : from.width - begin; }
};

// Rotates lines [first, last) of one byte of old columns.
template <unsigned Bits>
void Rotate90Byte(const Rotation90& rotation, std::int32_t byte, std::int32_t first, std::int32_t last) {
  constexpr std::int32_t PerByte = 8 / Bits;
  std::array<std::uint8_t*, PerByte> rows{};
  for (std::int32_t i = 0; i < PerByte; ++i) rows[static_cast<std::size_t>(i)] = rotation.RowOf(byte * PerByte + i);
  for (std::int32_t x = first; x < last; x += PerByte) {
    std::uint64_t block = 0;
    for (std::int32_t i = 0; i < PerByte; ++i) {
      block = block << 8U | (x + i < rotation.from.height ? rotation.Line(x + i)[byte] : 0U);
    }
    if constexpr (Bits == 1) {
      block = Transposed(block);
    } else {
      block = (block & 0xF00FU) | (block & 0x0F00U) >> 4U | (block & 0x00F0U) << 4U;
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (rows[i] == nullptr) continue;
      rows[i][x / PerByte] = static_cast<std::uint8_t>(block >> (8 * (rows.size() - 1 - i)));
    }
  }
}

// Rotates packed pixels in blocks of as many bytes as a line of the caches has. Bits is 1 or 4.
template <unsigned Bits>
void Rotate90Packed(const Rotation90& rotation) {
  constexpr std::int32_t PerByte = 8 / Bits;
  constexpr std::int32_t Bytes = 64;
  constexpr std::int32_t Lines = Bytes * PerByte;
  const std::int32_t end = (rotation.EndColumn() + PerByte - 1) / PerByte;
  for (std::int32_t begin = rotation.FirstColumn() / PerByte; begin < end; begin += Bytes) {
    for (std::int32_t x = 0; x < rotation.from.height; x += Lines) {
      const std::int32_t last = rotation.from.height - x > Lines ? x + Lines : rotation.from.height;
      for (std::int32_t byte = begin; byte < std::min(begin + Bytes, end); ++byte) {
        Rotate90Byte<Bits>(rotation, byte, x, last);
      }
    }
  }
}

// How many of the `count` pixels from `begin` on are in whole tiles, in a row or column of `length` pixels.
std::int32_t InTiles(std::int32_t begin, std::int32_t count, std::int32_t length, std::size_t size) {
  const std::int32_t most = size == 3 ? length - TileExcess - begin : count;
  return std::max(0, std::min(count, most)) / TileSide(size) * TileSide(size);
}

// A block is rotated here and then copied to the result, because writing many rows a little at a time is far slower.
// The last pixels of a row may write a few bytes behind it.
template <std::size_t Size>
struct RotatedBlock {
  static constexpr std::size_t RowBytes = BlockLines * Size;
  static constexpr std::size_t Stride = RowBytes + Bitmap::RowAlignment;
  alignas(Bitmap::RowAlignment) std::array<std::uint8_t, BlockColumns<Size> * Stride> rows;
};

template <std::size_t Size>
void Rotate90Bytes(const Rotation90& rotation) {
  const auto stride = static_cast<std::ptrdiff_t>(rotation.from.stride);
  const std::ptrdiff_t lineStep = rotation.clockwise ? -stride : stride;
  const auto rowStep = static_cast<std::ptrdiff_t>(rotation.to.stride) * (rotation.clockwise ? 1 : -1);
  const bool isMuch = rotation.to.stride * static_cast<std::size_t>(rotation.from.width) >= MuchMemory;
  RotatedBlock<Size> block;
  for (std::int32_t column = rotation.FirstColumn(); column < rotation.EndColumn(); column += BlockColumns<Size>) {
    const std::int32_t columns = std::min(BlockColumns<Size>, rotation.EndColumn() - column);
    for (std::int32_t x = 0; x < rotation.from.height; x += BlockLines) {
      const std::int32_t lines = std::min(BlockLines, rotation.from.height - x);
      const std::int32_t tileColumns = InTiles(column, columns, rotation.from.width, Size);
      const std::int32_t tileLines = InTiles(x, lines, rotation.from.height, Size);
      const std::uint8_t* const from = rotation.Line(x) + static_cast<std::size_t>(column) * Size;
      std::uint8_t* const to = rotation.RowOf(column) + static_cast<std::size_t>(x) * Size;
      if (isMuch && tileColumns == BlockColumns<Size> && tileLines == BlockLines) {
        constexpr std::int32_t Together = std::max(8, TileSide(Size));
        for (std::int32_t c = 0; c < BlockColumns<Size>; c += Together) {
          // The hardware cannot predict which lines come next. This is not a function of its own, because the compiler
          // would remove a call without effect.
          constexpr std::int32_t Ahead = Together * BlockLines / BlockColumns<Size>;
          const std::int32_t next = x + BlockLines + c / Together * Ahead;
          for (std::int32_t i = next; i < std::min(next + Ahead, rotation.from.height); ++i) {
            const std::uint8_t* const line = rotation.Line(i) + static_cast<std::size_t>(column) * Size;
            for (std::size_t at = 0; at < BlockColumns<Size> * Size; at += Bitmap::RowAlignment)
              __builtin_prefetch(line + at);
          }
          const auto place = static_cast<std::size_t>(c);
          TransposeTiles({from + place * Size, lineStep, Together, BlockLines,
                          &block.rows[place * RotatedBlock<Size>::Stride], RotatedBlock<Size>::Stride},
                         Size);
        }
        StreamRows({block.rows.data(), RotatedBlock<Size>::Stride, to, rowStep, BlockColumns<Size>,
                    RotatedBlock<Size>::RowBytes});
        continue;
      }
      TransposeTiles({from, lineStep, tileColumns, tileLines, to, rowStep}, Size);
      for (std::int32_t c = 0; c < columns; ++c) {
        for (std::int32_t line = c < tileColumns ? tileLines : 0; line < lines; ++line) {
          std::memcpy(to + c * rowStep + line * static_cast<std::ptrdiff_t>(Size),
                      from + line * lineStep + c * static_cast<std::ptrdiff_t>(Size), Size);
        }
      }
    }
  }
  FinishStreams();
}

}  // namespace

void MirrorPacked(std::uint8_t* row, std::size_t pixels, int bitsPerPixel) {
  const auto bits = static_cast<unsigned>(bitsPerPixel);
  const std::size_t count = (pixels * bits + 7) / 8;
  ReverseBytes(row, count, bits);
  ShiftLeft(row, count, static_cast<unsigned>(count * 8 - pixels * bits));
}

void Rotate90(const Area& from, const TargetArea& to, int bitsPerPixel, bool clockwise, std::int32_t begin,
              std::int32_t end) {
  const Rotation90 rotation{from, to, clockwise, begin, end};
  switch (bitsPerPixel) {
    case 1:
      return Rotate90Packed<1>(rotation);
    case 4:
      return Rotate90Packed<4>(rotation);
    case 8:
      return Rotate90Bytes<1>(rotation);
    case 24:
      return Rotate90Bytes<3>(rotation);
    default:
      return Rotate90Bytes<4>(rotation);
  }
}

void AddWeighted(const std::uint8_t* from, std::int32_t* sums, std::size_t count, std::int32_t weight) {
  for (std::size_t i = 0; i < count; ++i) sums[i] += weight * from[i];
}

void PackSums(const std::int32_t* sums, std::int16_t* to, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to[i] = static_cast<std::int16_t>((sums[i] + 128) >> 8);
}

}  // namespace kw::kernels
