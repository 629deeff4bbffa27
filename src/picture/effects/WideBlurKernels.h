#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// The inner loops of a wide blur, over one row. Values are 64ths of a byte's, from 0 to 16383. Rows of 16 bits may lie
// anywhere; 64 elements behind each can be read and written. Weights are 32768ths.
namespace kw::kernels {

// Adds up rows of bytes, which begin at a multiple of Bitmap::RowAlignment or can be read 64 bytes further.
void SumDown(std::span<const std::uint8_t* const> rows, std::uint16_t* to, std::size_t count);

// row[i] += row[i + step], from the first one on; sums may overflow.
void AddShifted(std::uint16_t* row, std::size_t step, std::size_t count);

// Weighs values by a bell, the middle first: rows[radius] is the middle, rows[0] to rows[2 * radius] its surroundings.
// min(p(middle, w0) + sum of p(both of k, wk), 16383) with p(a, w) = floor((a * w + 16384) / 32768).
void BlurWords(const std::int16_t* const* rows, std::int16_t* to, std::size_t count,
               std::span<const std::int16_t> weights);

// How a row is enlarged by a factor: value i of the row lies between two of the smaller one. Both lists hold the values
// of StepPixels pixels, after which the places are `advance` further.
struct EnlargingSteps {
  std::size_t size = 0;                // values of a pixel
  std::size_t advance = 0;             // values
  std::vector<std::uint32_t> places;   // of the left one of the two; the right one is a pixel further
  std::vector<std::uint32_t> weights;  // of the left one, and 65536 times that of the right one
};
constexpr std::size_t StepPixels = 64;

// The smaller row begins one pixel before the larger one. `factor` is 2 or 4.
EnlargingSteps StepsOf(std::size_t size, std::size_t factor);

// p(left, its weight) + p(right, its weight).
void EnlargeWords(const std::int16_t* from, std::int16_t* to, std::size_t count, const EnlargingSteps& steps);

// Bytes between two rows: floor((upper + p(lower - upper, weight) + 32) / 64). `to` is a bitmap's row.
void MixWords(const std::int16_t* upper, const std::int16_t* lower, std::int16_t weight, std::uint8_t* to,
              std::size_t count);

namespace scalar {

void SumDown(std::span<const std::uint8_t* const> rows, std::uint16_t* to, std::size_t count);
void AddShifted(std::uint16_t* row, std::size_t step, std::size_t count);
void BlurWords(const std::int16_t* const* rows, std::int16_t* to, std::size_t count,
               std::span<const std::int16_t> weights);
void EnlargeWords(const std::int16_t* from, std::int16_t* to, std::size_t count, const EnlargingSteps& steps);
void MixWords(const std::int16_t* upper, const std::int16_t* lower, std::int16_t weight, std::uint8_t* to,
              std::size_t count);

}  // namespace scalar
}  // namespace kw::kernels
