#pragma once

#include "picture/effects/Kernels.h"

// The kernels of Kernels.h without SIMD. They run on processors without a SIMD target, and they process what is too
// short for a vector. Highway's own emulation of vectors (HWY_EMU128) cannot replace them: GCC before 12.3 compiles it
// wrongly.
namespace kw::kernels::scalar {

void ApplyLut(std::uint8_t* row, std::size_t count, const Lut& table);
void ApplyLutToColours(std::uint8_t* row, std::size_t count, const Lut& table);
void ApplyLinearMap(std::uint8_t* row, std::size_t count, const LinearMap& map);
void Luma(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void SplitIntoBins(const std::uint8_t* from, std::uint16_t* bins, std::uint16_t* lowBits, std::size_t pixels);
void FindBins(const std::uint8_t* from, std::uint16_t* bins, std::size_t pixels);
void ThresholdToBits(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::uint8_t level);
void UnpackLevels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, int bitsPerPixel, const Lut& levels);
std::size_t FindThird(const std::uint8_t* row, std::size_t count, std::uint8_t first, std::uint8_t second);
void Triple(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void Diffuse(const DiffusedRows& rows, std::size_t pixels);
void DilateBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);
void ErodeBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);
void DilateBytes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
void ErodeBytes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
void DilateAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size);
void ErodeAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size);
void DilateDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);
void ErodeDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);
void Soften(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
void Edge(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
void Sharpen(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
             std::int32_t amount);
void Emboss(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
            std::int32_t amount);
void BlurDown(const std::uint8_t* const* rows, std::size_t margin, std::int16_t* to, std::size_t count,
              std::span<const std::int16_t> weights);
void BlurAcross(const std::int16_t* from, std::uint8_t* to, std::size_t count, std::size_t size,
                std::span<const std::int16_t> weights);
void BoxDownsample2(const std::uint8_t* upper, const std::uint8_t* lower, std::uint8_t* to, std::size_t pixels,
                    std::size_t size);
void MirrorBytes(std::uint8_t* row, std::size_t pixels, std::size_t size);
void ExchangeRows(std::uint8_t* row, std::uint8_t* other, std::size_t count);
void FindPlaces(const PlaceLine& line, std::int32_t* to, std::size_t count);
void Interpolate(const PlacedRow& row, std::uint8_t* to, std::size_t pixels, std::size_t size);
void ExchangeRedAndBlue(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size);
void StreamExchanged(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size);
void TransposeTiles(const Tiles& tiles, std::size_t size);
void StreamRows(const StreamedRows& rows);

}  // namespace kw::kernels::scalar
