#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "picture/effects/Pixels.h"

// The inner loops of the effects, over one row. Rows begin at a multiple of Bitmap::RowAlignment bytes and their length
// is rounded up to it; the bytes behind the pixels may be read and written. `count` is the number of bytes that hold
// values, `size` the bytes of a pixel.
namespace kw::kernels {

// Replaces each byte by its entry in the look-up table. ApplyLutToColours leaves each fourth byte, which is alpha.
void ApplyLut(std::uint8_t* row, std::size_t count, const Lut& table);
void ApplyLutToColours(std::uint8_t* row, std::size_t count, const Lut& table);

// A clamped linear map of bytes in fixed point: (((byte ^ flip) * 256 * gain / 65536) + offset) / 64, rounded down,
// from 0 to 255. A gain of 16384 is 1; it is below 32768.
struct LinearMap {
  std::uint8_t flip;
  std::uint16_t gain;
  std::int16_t offset;
};
void ApplyLinearMap(std::uint8_t* row, std::size_t count, const LinearMap& map);

// The luma of pixels of 24 bits: (299 red + 587 green + 114 blue) / 1000, rounded.
void Luma(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);

// Splits pixels of 24 bits into their bins (see ColourHistogram) and the low 3 bits of each channel.
void SplitIntoBins(const std::uint8_t* from, std::uint16_t* bins, std::uint16_t* lowBits, std::size_t pixels);
// The bins alone.
void FindBins(const std::uint8_t* from, std::uint16_t* bins, std::size_t pixels);

// A bit is 1 if its value is at least `level`. The bits of the last byte that have no pixel are 0.
void ThresholdToBits(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::uint8_t level);

// Unpacks palette indices of 1, 4 or 8 bits and looks up their levels: `to` has room for a multiple of 8. Both may lie
// anywhere.
void UnpackLevels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, int bitsPerPixel, const Lut& levels);

// The place of the first byte that is neither of two; `count` if there is none. Reads no further.
std::size_t FindThird(const std::uint8_t* row, std::size_t count, std::uint8_t first, std::uint8_t second);

// Writes each byte three times: greys as pixels of 24 bits. Both may lie anywhere but do not overlap.
void Triple(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);

// Rows of error diffusion that are worked on together. levels[i] is row i, to[i] gets 255 for white and 0 for black.
// errors[x] is what pixel x gets from the row above, in sixteenths; it becomes what the row below the last one gets. Of
// levels, errors and to, Margin elements before the first pixel and behind the last one are read and written.
struct DiffusedRows {
  static constexpr std::size_t Count = 16;
  static constexpr std::size_t Margin = 64;
  std::array<const std::uint8_t*, Count> levels;
  std::int16_t* errors;
  std::array<std::uint8_t*, Count> to;
};
void Diffuse(const DiffusedRows& rows, std::size_t pixels);

// Mirrors a row of pixels of 1 or 4 bits, or of `size` bytes.
void MirrorPacked(std::uint8_t* row, std::size_t pixels, int bitsPerPixel);
void MirrorBytes(std::uint8_t* row, std::size_t pixels, std::size_t size);

// Exchanges the bytes of two rows that do not overlap.
void ExchangeRows(std::uint8_t* row, std::uint8_t* other, std::size_t count);

// Copies pixels of 3 or 4 bytes and exchanges the first and the third byte of each: files have red first, bitmaps blue.
// Both may lie anywhere; if they overlap, `to` is not behind `from`.
void ExchangeRedAndBlue(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size);

// The same for a page that is larger than the caches: with non-temporal stores if `to` is a multiple of 16. The pixels
// do not overlap. Other threads see them after FinishStreams has returned.
void StreamExchanged(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size);

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

// Rotates the area by 90 degrees; makes rows [begin, end) of the result, which is as wide as the area is high.
void Rotate90(const Area& from, const TargetArea& to, int bitsPerPixel, bool clockwise, std::int32_t begin,
              std::int32_t end);

// Transposes tiles of pixels of `size` bytes: pixel (c, l) becomes pixel l of row c. `columns` and `lines` are
// multiples of TileSide(size). With 3 bytes a pixel, up to TileExcess pixels more are read and written, which are
// overwritten later.
struct Tiles {
  const std::uint8_t* from;
  std::ptrdiff_t lineStep;
  std::ptrdiff_t columns;
  std::ptrdiff_t lines;
  std::uint8_t* to;
  std::ptrdiff_t rowStep;
};
constexpr std::int32_t TileSide(std::size_t size) { return size == 1 ? 16 : 4; }
constexpr std::int32_t TileExcess = 6;
void TransposeTiles(const Tiles& tiles, std::size_t size);

// Places in 256ths of a pixel: floor(((step * (first + i) + start) + middle - 0.5) * 256 + 0.5). They are less than
// 2^31 either way. `to` has room for PlacesExcess more.
struct PlaceLine {
  double first;
  double step;
  double start;
  double middle;
};
constexpr std::size_t PlacesExcess = 16;
void FindPlaces(const PlaceLine& line, std::int32_t* to, std::size_t count);

// Mixes the four pixels around each place by their nearness: (sum of w * v + 32768) / 65536 with the weights
// (256 - a)(256 - b), a(256 - b), (256 - a)b and ab. columns and lines can be read PlacesExcess further. All four
// pixels lie in the picture, and with 3 bytes a pixel one more to the right; then a byte more is written, too.
struct PlacedRow {
  const std::uint8_t* base;
  std::size_t stride;
  const std::int32_t* columns;
  const std::int32_t* lines;
};
void Interpolate(const PlacedRow& row, std::uint8_t* to, std::size_t pixels, std::size_t size);

// Copies rows of `bytes` bytes with non-temporal stores. `from`, `to`, the steps and `bytes` are multiples of
// Bitmap::RowAlignment. Other threads see the copy after FinishStreams has returned.
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

// Dilates or erodes the bits of value 1 by a 3x3 square. rows[0..2] can be read one byte to either side.
void DilateBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);
void ErodeBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);

// 3x3 filters. rows[0..2] can be read one pixel to either side.
void DilateBytes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
void ErodeBytes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
// Their two halves: a row to either side, then three such rows.
void DilateAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size);
void ErodeAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size);
void DilateDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);
void ErodeDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);
void Soften(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
void Edge(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
// `amount` in 256ths, 0 to 1024.
void Sharpen(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
             std::int32_t amount);
void Emboss(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
            std::int32_t amount);

// The two passes of a blur. BlurDown filters the columns of 2 * weights.size() - 1 rows into 64ths, from `margin` bytes
// before the rows' first pixel on; BlurAcross filters that row. weights[0] is the middle one, in 32768ths.
void BlurDown(const std::uint8_t* const* rows, std::size_t margin, std::int16_t* to, std::size_t count,
              std::span<const std::int16_t> weights);
void BlurAcross(const std::int16_t* from, std::uint8_t* to, std::size_t count, std::size_t size,
                std::span<const std::int16_t> weights);

// sums += weight * values. PackSums converts sums whose weights add up to 16384 into 64ths.
void AddWeighted(const std::uint8_t* from, std::int32_t* sums, std::size_t count, std::int32_t weight);
void PackSums(const std::int32_t* sums, std::int16_t* to, std::size_t count);

// Each new pixel is the mean of 2 x 2 pixels.
void BoxDownsample2(const std::uint8_t* upper, const std::uint8_t* lower, std::uint8_t* to, std::size_t pixels,
                    std::size_t size);

}  // namespace kw::kernels
