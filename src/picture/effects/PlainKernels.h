#pragma once

#include "picture/effects/Kernels.h"

// The loops of Kernels.h that exist twice, without vector registers: for processors that have none of those that the
// others ask for.
namespace kw::kernels::plain {

void MapBytes(std::uint8_t* row, std::size_t count, const ByteTable& table);
void MapColours(std::uint8_t* row, std::size_t count, const ByteTable& table);
void MapAlong(std::uint8_t* row, std::size_t count, const Line& line);
void Brightness(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels);
void SplitColours(const std::uint8_t* from, std::uint16_t* upper, std::uint16_t* lower, std::size_t pixels);
void PackAtLeast(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::uint8_t level);
void SpreadOnes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);
void SpreadZeros(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count);
void Greatest(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
void Least(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size);
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
void Halve(const std::uint8_t* upper, const std::uint8_t* lower, std::uint8_t* to, std::size_t pixels,
           std::size_t size);
void MirrorBytes(std::uint8_t* row, std::size_t pixels, std::size_t size);
void TurnSquares(const Squares& squares, std::size_t size);
void StreamRows(const StreamedRows& rows);

}  // namespace kw::kernels::plain
