// SIMD kernels that transpose tiles, compiled once for each Highway target and dispatched at run time.

#include "picture/effects/ScalarKernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "picture/effects/TransposeKernels.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/cache_control.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kw::kernels::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
using scalar::StreamRows;
using scalar::TransposeTiles;
#else
namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::Full128<std::uint8_t>;
using Pixels32 = hn::Full128<std::uint32_t>;

// Transposes a square in log2(Count) rounds; each round interleaves row i with row i + Count / 2.
template <class D, std::size_t Count>
HWY_INLINE void Transpose(D d, hn::Vec<D> (&rows)[Count]) {
  for (std::size_t round = 1; round < Count; round *= 2) {
    hn::Vec<D> mixed[Count];
    for (std::size_t i = 0; i < Count / 2; ++i) {
      mixed[2 * i] = hn::InterleaveLower(d, rows[i], rows[i + Count / 2]);
      mixed[2 * i + 1] = hn::InterleaveUpper(d, rows[i], rows[i + Count / 2]);
    }
    for (std::size_t i = 0; i < Count; ++i) rows[i] = mixed[i];
  }
}

HWY_INLINE void TransposeTile1(const std::uint8_t* from, std::ptrdiff_t lineStep, std::uint8_t* to,
                               std::ptrdiff_t rowStep) {
  const Bytes d;
  hn::Vec<Bytes> rows[16];
  for (std::ptrdiff_t i = 0; i < 16; ++i) rows[i] = hn::LoadU(d, from + i * lineStep);
  Transpose(d, rows);
  for (std::ptrdiff_t i = 0; i < 16; ++i) hn::StoreU(rows[i], d, to + i * rowStep);
}

template <std::size_t Size>
HWY_INLINE void TransposeTile4(const std::uint8_t* from, std::ptrdiff_t lineStep, std::uint8_t* to,
                               std::ptrdiff_t rowStep) {
  const Bytes d;
  const Pixels32 pixels;
  alignas(16) static constexpr std::uint8_t Apart[16] = {0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11};
  alignas(16) static constexpr std::uint8_t Close[16] = {0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 12, 13, 14, 15};
  hn::Vec<Pixels32> rows[4];
  for (std::ptrdiff_t i = 0; i < 4; ++i) {
    auto line = hn::LoadU(d, from + i * lineStep);
    if (Size == 3) line = hn::TableLookupBytes(line, hn::Load(d, Apart));
    rows[i] = hn::BitCast(pixels, line);
  }
  Transpose(pixels, rows);
  for (std::ptrdiff_t i = 0; i < 4; ++i) {
    auto row = hn::BitCast(d, rows[i]);
    if (Size == 3) row = hn::TableLookupBytes(row, hn::Load(d, Close));
    hn::StoreU(row, d, to + i * rowStep);
  }
}

template <std::size_t Size>
HWY_INLINE void TransposeAll(const Tiles& tiles) {
  constexpr auto Side = static_cast<std::ptrdiff_t>(TileSide(Size));
  constexpr auto SideBytes = Side * static_cast<std::ptrdiff_t>(Size);
  const std::ptrdiff_t lineStep = tiles.lineStep;
  const std::ptrdiff_t rowStep = tiles.rowStep;
  const std::uint8_t* firstFrom = tiles.from;
  std::uint8_t* firstTo = tiles.to;
  for (std::ptrdiff_t column = 0; column + Side <= tiles.columns; column += Side) {
    const std::uint8_t* from = firstFrom;
    std::uint8_t* to = firstTo;
    for (std::ptrdiff_t line = 0; line + Side <= tiles.lines; line += Side) {
      if constexpr (Size == 1) {
        TransposeTile1(from, lineStep, to, rowStep);
      } else {
        TransposeTile4<Size>(from, lineStep, to, rowStep);
      }
      from += Side * lineStep;
      to += SideBytes;
    }
    firstFrom += SideBytes;
    firstTo += Side * rowStep;
  }
}

void TransposeTiles(const Tiles& tiles, std::size_t size) {
  if (size == 1) return TransposeAll<1>(tiles);
  if (size == 3) return TransposeAll<3>(tiles);
  TransposeAll<4>(tiles);
}

void StreamRows(const StreamedRows& rows) {
  const hn::ScalableTag<std::uint8_t> d;
  for (std::int32_t y = 0; y < rows.count; ++y) {
    const std::uint8_t* const from = rows.from + static_cast<std::size_t>(y) * rows.fromStep;
    std::uint8_t* const to = rows.to + y * rows.toStep;
    for (std::size_t i = 0; i < rows.bytes; i += hn::Lanes(d)) hn::Stream(hn::Load(d, from + i), d, to + i);
  }
}
#endif

}  // namespace kw::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kw::kernels {

HWY_EXPORT(StreamRows);
HWY_EXPORT(TransposeTiles);

void TransposeTiles(const Tiles& tiles, std::size_t size) { HWY_DYNAMIC_DISPATCH(TransposeTiles)(tiles, size); }

void StreamRows(const StreamedRows& rows) { HWY_DYNAMIC_DISPATCH(StreamRows)(rows); }
void FinishStreams() { hwy::FlushStream(); }

}  // namespace kw::kernels
#endif
