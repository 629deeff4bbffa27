#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "picture/effects/Pixels.h"

// The loops over one row that the effects spend their time in. Rows begin at a multiple of Bitmap::RowAlignment bytes
// and take as many bytes as their alignment rounds them up to; what lies there behind the pixels may be read and
// written. `count` is a number of bytes that hold values, `size` the bytes of a pixel.
namespace kw::kernels {

// Each byte goes through the table; with MapColours each fourth, which is alpha, does not.
void MapBytes(std::uint8_t* row, std::size_t count, const ByteTable& table);
void MapColours(std::uint8_t* row, std::size_t count, const ByteTable& table);

// Bytes that go along a line: (((byte ^ flip) * 256 * slope / 65536) + offset) / 64, rounded down, from 0 to 255.
// A slope of 16384 is 1; it is less than 32768.
struct Line {
  std::uint8_t flip;
  std::uint16_t slope;
  std::int16_t offset;
};
void MapAlong(std::uint8_t* row, std::size_t count, const Line& line);

// (299 red + 587 green + 114 blue) / 1000, rounded, of pixels of 24 bits.
void Brightness(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);

// Pixels of 24 bits as their cells' numbers (see ColourCells) and, apart, the three lower bits of each channel.
void SplitColours(const std::uint8_t* from, std::uint16_t* upper, std::uint16_t* lower, std::size_t pixels);

// Bit 1 where a value is at least `level`; 0 in the bits of the last byte that have no pixel.
void PackAtLeast(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::uint8_t level);

// Levels of palette indices, 8 pixels at a time: `to` has room for a multiple of eight.
void Expand(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, int bitsPerPixel, const ByteTable& levels);

// Rows of error diffusion that run together, each two pixels behind the one above, because each pixel waits for the one
// before it. Row i takes levels[i] and makes to[i], 255 for white and 0 for black. errors[i][x + 1] is what is handed
// down to pixel x of it, in sixteenths; errors[Count] is handed to the next row. Each errors[i] has pixels + 2
// elements, of which the first and the last belong to no pixel.
struct DiffusedRows {
  static constexpr std::size_t Count = 4;
  std::array<const std::uint8_t*, Count> levels;
  std::array<std::int16_t*, Count + 1> errors;
  std::array<std::uint8_t*, Count> to;
};
void Diffuse(const DiffusedRows& rows, std::size_t pixels);

// Left becomes right: pixels of 1 or 4 bits, and pixels of `size` bytes.
void MirrorPacked(std::uint8_t* row, std::size_t pixels, int bitsPerPixel);
void MirrorBytes(std::uint8_t* row, std::size_t pixels, std::size_t size);

struct Area {
  const std::uint8_t* base;
  std::size_t stride;
  std::int32_t width;
  std::int32_t height;
};
struct TargetArea {
  std::uint8_t* base;
  std::size_t stride;
};

// A quarter turn of the area, rows [begin, end) of the result, which is as wide as the area is high.
void Turn(const Area& from, const TargetArea& to, int bitsPerPixel, bool clockwise, std::int32_t begin,
          std::int32_t end);

// A part of a quarter turn of pixels of `size` bytes: pixel (c, l) of the old picture goes to row c, place l of the new
// one. `columns` and `lines` are multiples of SquareSide(size). Of 3 bytes a pixel, each run of four pixels is read and
// written with 4 bytes more, which a later one puts right.
struct Squares {
  const std::uint8_t* from;
  std::ptrdiff_t lineStep;
  std::ptrdiff_t columns;
  std::ptrdiff_t lines;
  std::uint8_t* to;
  std::ptrdiff_t rowStep;
};
constexpr std::int32_t SquareSide(std::size_t size) { return size == 1 ? 16 : 4; }
void TurnSquares(const Squares& squares, std::size_t size);

// Rows of `bytes` bytes to copy past the caches. `from`, `to`, the steps and `bytes` are multiples of
// Bitmap::RowAlignment. Other threads see the copy once FinishStreams has returned.
struct StreamedRows {
  const std::uint8_t* from;
  std::size_t fromStep;
  std::uint8_t* to;
  std::ptrdiff_t toStep;
  std::int32_t count;
  std::size_t bytes;
};
void StreamRows(const StreamedRows& rows);
void FinishStreams();

// Bits of value 1 (or 0) spread to the eight pixels around them. rows[0..2] can be read one byte to either side.
void SpreadOnes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);
void SpreadZeros(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);

// 3x3 filters: rows[0..2] can be read one pixel to either side.
void Greatest(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
void Least(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
void Soften(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
void Edge(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
// `amount` in 256ths, 0 to 1024.
void Sharpen(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
             std::int32_t amount);
void Emboss(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
            std::int32_t amount);

// Blur of the rows in the middle of 2 * weights.size() - 1 into 64ths, and across them. weights[0] is the middle one,
// in 32768ths. BlurDown begins `margin` bytes before the rows' first pixel.
void BlurDown(const std::uint8_t* const* rows, std::size_t margin, std::int16_t* to, std::size_t count,
              std::span<const std::int16_t> weights);
void BlurAcross(const std::int16_t* from, std::uint8_t* to, std::size_t count, std::size_t size,
                std::span<const std::int16_t> weights);

// sums += weight * values; Narrow turns sums of weights that are 16384 together into 64ths.
void AddWeighted(const std::uint8_t* from, std::int32_t* sums, std::size_t count, std::int32_t weight);
void Narrow(const std::int32_t* sums, std::int16_t* to, std::size_t count);

// Means of two by two pixels.
void Halve(const std::uint8_t* upper, const std::uint8_t* lower, std::uint8_t* to, std::size_t pixels,
           std::size_t size);

}  // namespace kw::kernels
