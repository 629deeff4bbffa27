// SIMD kernels that transpose tiles, and the error diffusion of transposed rows, compiled once for each Highway target
// and dispatched at run time.

#include <algorithm>
#include <cstddef>

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
using scalar::Diffuse;
using scalar::StreamRows;
using scalar::TransposeTiles;
#else
namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::Full128<std::uint8_t>;

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

// A block of 16 bytes of each of the lines 0, 4, 8 ... from `from` on; as many as the vector has blocks.
template <class D>
HWY_INLINE hn::Vec<D> LoadBlocks(D d, const std::uint8_t* from, std::ptrdiff_t lineStep) {
  if constexpr (hn::MaxLanes(d) == 16) {
    return hn::LoadU(d, from);
  } else {
    const hn::Half<D> half;
    constexpr auto lines = static_cast<std::ptrdiff_t>(hn::MaxLanes(half) / 4);
    return hn::Combine(d, LoadBlocks(half, from + lines * lineStep, lineStep), LoadBlocks(half, from, lineStep));
  }
}

// Removes the last four bytes of each block.
template <class D>
HWY_INLINE hn::Vec<D> WithoutGaps(D d, hn::Vec<D> blocks) {
  if constexpr (hn::MaxLanes(d) == 16) {
    return blocks;
  } else {
    const hn::Repartition<std::uint32_t, D> wide;
    alignas(64) static constexpr std::int32_t Order[16] = {0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 12, 13, 14, 15};
    alignas(64) static constexpr std::int32_t HalfOrder[8] = {0, 1, 2, 4, 5, 6, 6, 7};
    const auto order = hn::SetTableIndices(wide, hn::MaxLanes(d) == 64 ? Order : HalfOrder);
    return hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(wide, blocks), order));
  }
}

// Four columns of pixels of 3 or 4 bytes, a quarter as many lines as the vector has bytes.
template <std::size_t Size, class D>
HWY_INLINE void TransposeTile4(D d, const std::uint8_t* from, std::ptrdiff_t lineStep, std::uint8_t* to,
                               std::ptrdiff_t rowStep) {
  const hn::Repartition<std::uint32_t, D> pixels;
  alignas(16) static constexpr std::uint8_t Apart[16] = {0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11};
  alignas(16) static constexpr std::uint8_t Close[16] = {0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 12, 13, 14, 15};
  hn::Vec<decltype(pixels)> rows[4];
  for (std::ptrdiff_t i = 0; i < 4; ++i) {
    auto line = LoadBlocks(d, from + i * lineStep, lineStep);
    if (Size == 3) line = hn::TableLookupBytes(line, hn::LoadDup128(d, Apart));
    rows[i] = hn::BitCast(pixels, line);
  }
  Transpose(pixels, rows);
  for (std::ptrdiff_t i = 0; i < 4; ++i) {
    auto row = hn::BitCast(d, rows[i]);
    if (Size == 3) row = WithoutGaps(d, hn::TableLookupBytes(row, hn::LoadDup128(d, Close)));
    hn::StoreU(row, d, to + i * rowStep);
  }
}

template <std::size_t Size>
HWY_INLINE void TransposeAll(const Tiles& tiles) {
  const hn::ScalableTag<std::uint8_t> wide;
  constexpr auto Side = static_cast<std::ptrdiff_t>(TileSide(Size));
  constexpr auto Bytes1 = static_cast<std::ptrdiff_t>(Size);
  constexpr auto Much = static_cast<std::ptrdiff_t>(hn::MaxLanes(wide) / 4);
  // Copies, because the compiler cannot know that what is stored does not change the originals.
  const std::ptrdiff_t lineStep = tiles.lineStep;
  const std::ptrdiff_t rowStep = tiles.rowStep;
  const std::ptrdiff_t lines = tiles.lines;
  const std::ptrdiff_t columns = tiles.columns;
  const std::uint8_t* firstFrom = tiles.from;
  std::uint8_t* firstTo = tiles.to;
  for (std::ptrdiff_t column = 0; column + Side <= columns; column += Side) {
    const std::uint8_t* from = firstFrom;
    std::uint8_t* to = firstTo;
    std::ptrdiff_t line = 0;
    if constexpr (Size == 1) {
      for (; line + Side <= lines; line += Side, from += Side * lineStep, to += Side) {
        TransposeTile1(from, lineStep, to, rowStep);
      }
    } else {
      for (; line + Much <= lines; line += Much, from += Much * lineStep, to += Much * Bytes1) {
        TransposeTile4<Size>(wide, from, lineStep, to, rowStep);
      }
      for (; line + Side <= lines; line += Side, from += Side * lineStep, to += Side * Bytes1) {
        TransposeTile4<Size>(Bytes(), from, lineStep, to, rowStep);
      }
    }
    firstFrom += Side * Bytes1;
    firstTo += Side * rowStep;
  }
}

void TransposeTiles(const Tiles& tiles, std::size_t size) {
  if (size == 1) return TransposeAll<1>(tiles);
  if (size == 3) return TransposeAll<3>(tiles);
  TransposeAll<4>(tiles);
}

// Each lane is a row, the lowest row first, because each pixel waits for the one before it. A row is three pixels
// behind the one above: one more than its errors need, so that moving them to the next lane delays nobody.
using Errors = hn::CappedTag<std::int16_t, DiffusedRows::Count>;
using Error = hn::Vec<Errors>;
constexpr std::ptrdiff_t Lag = 3;
constexpr auto LaneCount = static_cast<std::ptrdiff_t>(hn::MaxLanes(Errors()));
constexpr std::ptrdiff_t TileSteps = 16;
static_assert(Lag * LaneCount + TileSteps <= static_cast<std::ptrdiff_t>(DiffusedRows::Margin));

HWY_INLINE Error FromNextLane(Error value) {
  const Errors d;
  if constexpr (LaneCount == 8) {
    return hn::ShiftRightLanes<1>(d, value);
  } else {
    return hn::CombineShiftRightBytes<2>(d, hn::ConcatUpperUpper(d, hn::Zero(d), value), value);
  }
}

struct Diffusion {
  // `late` is how many pixels each row is behind the first one.
  HWY_INLINE Diffusion() : last(hn::Zero(Errors())), before(last), third(last), fourth(last) {
    const Errors d;
    alignas(32) std::int16_t numbers[16];
    for (std::ptrdiff_t i = 0; i < LaneCount; ++i) {
      numbers[i] = static_cast<std::int16_t>(Lag * (LaneCount - 1 - i));
    }
    late = hn::Load(d, numbers);
  }

  // The errors that the next row's pixels get: one, five and three sixteenths.
  HWY_INLINE Error Under() const {
    const Error five = hn::Add(third, hn::ShiftLeft<2>(third));
    const Error three = hn::Add(before, hn::Add(before, before));
    return hn::Add(hn::Add(fourth, five), three);
  }

  // All bits of a lane are set if its pixel is black. `above` are the errors that the pixels get from above.
  HWY_INLINE Error Step(Error levels, Error above) {
    const Errors d;
    // In sixteenths and from 128 on, so that black is negative.
    const Error own = hn::Add(hn::ShiftLeft<4>(levels), hn::Set(d, std::int16_t{8 - 128 * 16}));
    const Error seven = hn::Sub(hn::ShiftLeft<3>(last), last);
    const Error sum = hn::Add(hn::Add(own, above), seven);
    const Error black = hn::ShiftRight<15>(sum);
    const Error towardWhite = hn::Sub(hn::ShiftRight<4>(sum), hn::Set(d, std::int16_t{127}));
    fourth = third;
    third = before;
    before = last;
    last = hn::Add(towardWhite, hn::And(black, hn::Set(d, std::int16_t{255})));
    return black;
  }

  // Pixels before the first one and behind the last one have no error.
  HWY_INLINE void Restrict(std::ptrdiff_t step, std::ptrdiff_t pixels) {
    const Errors d;
    constexpr std::ptrdiff_t Most = 1000;
    const auto next = static_cast<std::int16_t>(std::min(step + 1, Most));
    const auto ended = static_cast<std::int16_t>(std::clamp(step - pixels, std::ptrdiff_t{-1}, Most));
    const auto begun = hn::Lt(late, hn::Set(d, next));
    last = hn::IfThenElseZero(hn::And(begun, hn::Gt(late, hn::Set(d, ended))), last);
  }

  Error last, before, third, fourth;
  Error late;
};

// As many rows as there are lanes, from `first` on.
HWY_INLINE void DiffuseLanes(const DiffusedRows& rows, std::size_t first, std::ptrdiff_t pixels) {
  const Bytes bytes;
  const Errors d;
  const hn::Rebind<std::uint8_t, Errors> narrow;
  const hn::Rebind<std::int8_t, Errors> flags;
  Diffusion state;
  const auto top = hn::Eq(state.late, hn::Zero(d));
  alignas(64) std::uint8_t levels[TileSteps][16];
  alignas(64) std::uint8_t black[TileSteps][16] = {};
  const auto rowOf = [first](std::ptrdiff_t lane) { return first + static_cast<std::size_t>(LaneCount - 1 - lane); };
  for (std::ptrdiff_t begin = 0; begin < pixels + Lag * LaneCount; begin += TileSteps) {
    hn::Vec<Bytes> tile[16];
    for (std::ptrdiff_t i = 0; i < 16; ++i) {
      tile[i] =
          i < LaneCount ? hn::LoadU(bytes, rows.levels[rowOf(i)] + begin - Lag * (LaneCount - 1 - i)) : hn::Zero(bytes);
    }
    Transpose(bytes, tile);
    for (std::ptrdiff_t i = 0; i < 16; ++i) hn::Store(tile[i], bytes, levels[i]);
    const bool isWhole = begin >= Lag * LaneCount && begin + TileSteps <= pixels;
    for (std::ptrdiff_t i = 0; i < TileSteps; ++i) {
      const std::ptrdiff_t step = begin + i;
      const Error fromGroup = hn::LoadU(d, rows.errors + step - (LaneCount - 1));
      const Error under = state.Under();
      // Only the first lane counts; the next steps overwrite the others.
      hn::StoreU(under, d, rows.errors + step - Lag * LaneCount);
      const Error above = hn::IfThenElse(top, fromGroup, FromNextLane(under));
      const Error shown = state.Step(hn::PromoteTo(d, hn::Load(narrow, levels[i])), above);
      hn::Store(hn::BitCast(narrow, hn::DemoteTo(flags, shown)), narrow, black[i]);
      if (!isWhole) state.Restrict(step, pixels);
    }
    for (std::ptrdiff_t i = 0; i < 16; ++i) tile[i] = hn::Load(bytes, black[i]);
    Transpose(bytes, tile);
    for (std::ptrdiff_t i = 0; i < LaneCount; ++i) {
      hn::StoreU(hn::Not(tile[i]), bytes, rows.to[rowOf(i)] + begin - Lag * (LaneCount - 1 - i));
    }
  }
}

void Diffuse(const DiffusedRows& rows, std::size_t pixels) {
  for (std::size_t first = 0; first < DiffusedRows::Count; first += static_cast<std::size_t>(LaneCount)) {
    DiffuseLanes(rows, first, static_cast<std::ptrdiff_t>(pixels));
  }
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

HWY_EXPORT(Diffuse);
HWY_EXPORT(StreamRows);
HWY_EXPORT(TransposeTiles);

void TransposeTiles(const Tiles& tiles, std::size_t size) { HWY_DYNAMIC_DISPATCH(TransposeTiles)(tiles, size); }

void Diffuse(const DiffusedRows& rows, std::size_t pixels) { HWY_DYNAMIC_DISPATCH(Diffuse)(rows, pixels); }

void StreamRows(const StreamedRows& rows) { HWY_DYNAMIC_DISPATCH(StreamRows)(rows); }
void FinishStreams() { hwy::FlushStream(); }

}  // namespace kw::kernels
#endif
