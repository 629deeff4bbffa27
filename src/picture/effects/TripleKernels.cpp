// SIMD kernels that move or mix neighbouring pixels, mostly of three bytes, or whole rows, compiled once for each
// Highway target and dispatched at run time.

#include <cstddef>

#include "picture/effects/ScalarKernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "picture/effects/TripleKernels.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kw::kernels::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
using scalar::BoxDownsample2;
using scalar::ExchangeRows;
using scalar::MirrorBytes;
#else
namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::ScalableTag<std::uint16_t>;
using HalfBytes = hn::Half<Bytes>;
using Block = hn::Full128<std::uint8_t>;

// The rounded mean of 2 x 2 neighbours.
HWY_INLINE hn::Vec<HalfBytes> MeanOfPairs(hn::Vec<Bytes> upper, hn::Vec<Bytes> lower) {
  const Words d;
  const hn::RebindToSigned<Words> narrow;
  const auto low = hn::Set(d, std::uint16_t{255});
  const auto a = hn::BitCast(d, upper);
  const auto b = hn::BitCast(d, lower);
  const auto sum =
      hn::Add(hn::Add(hn::And(a, low), hn::ShiftRight<8>(a)), hn::Add(hn::And(b, low), hn::ShiftRight<8>(b)));
  const auto mean = hn::ShiftRight<2>(hn::Add(sum, hn::Set(d, std::uint16_t{2})));
  return hn::DemoteTo(HalfBytes(), hn::BitCast(narrow, mean));
}

// A vector of B blocks holds 4 B pixels of three bytes in 3 B of its lanes of 32 bits: the first ones or the last ones.
// To reverse the pixels, these lanes go to the blocks from last to first, three to each, and then together again.
template <std::size_t Blocks>
struct TripleLanes {
  static constexpr std::size_t Count = 4 * Blocks;
  constexpr TripleLanes(bool fromFront, bool isJoin) : order{} {
    const std::size_t skipped = fromFront ? 0 : Blocks;
    for (std::size_t i = 0; i < Count; ++i) order[i] = static_cast<std::int32_t>(i);
    for (std::size_t block = 0; block < Blocks; ++block) {
      for (std::size_t i = 0; i < 3; ++i) {
        if (isJoin) {
          order[skipped + 3 * block + i] = static_cast<std::int32_t>(4 * block + i);
        } else {
          order[4 * block + i] = static_cast<std::int32_t>(skipped + 3 * (Blocks - 1 - block) + i);
        }
      }
    }
  }
  alignas(64) std::int32_t order[Count];
};

// Blocks of 16 bytes that begin `step` bytes apart; as many as the vector has.
template <class D>
HWY_INLINE hn::Vec<D> LoadBlocks(D d, const std::uint8_t* from, std::size_t step) {
  if constexpr (hn::MaxLanes(d) == 16) {
    return hn::LoadU(d, from);
  } else {
    const hn::Half<D> half;
    return hn::Combine(d, LoadBlocks(half, from + hn::MaxLanes(half) / 16 * step, step), LoadBlocks(half, from, step));
  }
}

// As BoxDownsample2 for pixels of three bytes: a block makes two new pixels of four old ones, and the next four make
// the other half of its result.
HWY_INLINE void HalveTriples(const std::uint8_t* upper, const std::uint8_t* lower, std::uint8_t* to,
                             std::size_t pixels) {
  const Bytes d;
  const Words words;
  constexpr std::size_t Blocks = hn::MaxLanes(Bytes()) / 16;
  // The bytes that are added stand side by side.
  alignas(16) static constexpr std::uint8_t Pairs[16] = {0, 3, 1, 4, 2, 5, 6, 9, 7, 10, 8, 11, 12, 12, 12, 12};
  alignas(16) static constexpr std::uint8_t InTurn[16] = {0, 2, 4, 6, 8, 10, 1, 3, 5, 7, 9, 11, 12, 13, 14, 15};
  const auto pairs = hn::LoadDup128(d, Pairs);
  const auto inTurn = hn::LoadDup128(d, InTurn);
  const auto low = hn::Set(words, std::uint16_t{255});
  const auto rounding = hn::Set(words, std::uint16_t{2});
  const auto sums = [=](const std::uint8_t* at) HWY_ATTR {
    const auto both = hn::BitCast(words, hn::TableLookupBytes(LoadBlocks(d, at, 24), pairs));
    return hn::Add(hn::And(both, low), hn::ShiftRight<8>(both));
  };
  const auto means = [=](std::size_t at) HWY_ATTR {
    return hn::ShiftRight<2>(hn::Add(hn::Add(sums(upper + at), sums(lower + at)), rounding));
  };
  const hn::Repartition<std::uint32_t, Bytes> wide;
  static constexpr TripleLanes<Blocks> Join(true, true);
  const auto join = hn::SetTableIndices(wide, Join.order);
  constexpr std::size_t Step = 4 * Blocks;
  // Each step reads up to two pixels more and writes four bytes a block more.
  std::size_t x = 0;
  for (; x + Step + Step / 2 <= pixels; x += Step) {
    const auto both = hn::Or(means(6 * x), hn::ShiftLeft<8>(means(6 * x + 12)));
    const auto ordered = hn::BitCast(wide, hn::TableLookupBytes(hn::BitCast(d, both), inTurn));
    hn::StoreU(hn::BitCast(d, hn::TableLookupLanes(ordered, join)), d, to + 3 * x);
  }
  scalar::BoxDownsample2(upper + 6 * x, lower + 6 * x, to + 3 * x, pixels - x, 3);
}

void BoxDownsample2(const std::uint8_t* upper, const std::uint8_t* lower, std::uint8_t* to, std::size_t pixels,
                    std::size_t size) {
  const Bytes d;
  const HalfBytes half;
  if (size == 3) return HalveTriples(upper, lower, to, pixels);
  std::size_t x = 0;
  for (; size == 1 && x + hn::Lanes(half) <= pixels; x += hn::Lanes(half)) {
    hn::StoreU(MeanOfPairs(hn::LoadU(d, upper + 2 * x), hn::LoadU(d, lower + 2 * x)), half, to + x);
  }
  const std::size_t done = x * size;
  scalar::BoxDownsample2(upper + 2 * done, lower + 2 * done, to + done, pixels - x, size);
}

// Reverses all bytes.
HWY_INLINE hn::Vec<Bytes> Reversed(hn::Vec<Bytes> values) {
  const Bytes d;
  alignas(16) static constexpr std::uint8_t Backwards[16] = {15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0};
  return hn::ReverseBlocks(d, hn::TableLookupBytes(values, hn::LoadDup128(d, Backwards)));
}

// Swaps runs of pixels at either end until the ends meet. Each store also writes the lanes beyond the run, which stay
// as they are. The next pixels are read before the store, because reading just after an overlapping store is slow.
template <class D>
HWY_INLINE void MirrorTriples(D d, std::uint8_t*& left, std::uint8_t*& right) {
  constexpr std::size_t Blocks = hn::MaxLanes(d) / 16;
  const hn::Repartition<std::uint32_t, D> wide;
  static constexpr TripleLanes<Blocks> ApartFront(true, false);
  static constexpr TripleLanes<Blocks> ApartBack(false, false);
  static constexpr TripleLanes<Blocks> JoinFront(true, true);
  static constexpr TripleLanes<Blocks> JoinBack(false, true);
  alignas(16) static constexpr std::uint8_t Backwards[16] = {9, 10, 11, 6, 7, 8, 3, 4, 5, 0, 1, 2, 12, 13, 14, 15};
  const auto backwards = hn::LoadDup128(d, Backwards);
  const auto apartFront = hn::SetTableIndices(wide, ApartFront.order);
  const auto apartBack = hn::SetTableIndices(wide, ApartBack.order);
  const auto joinFront = hn::SetTableIndices(wide, JoinFront.order);
  const auto joinBack = hn::SetTableIndices(wide, JoinBack.order);
  const auto front = hn::FirstN(wide, 3 * Blocks);
  const auto back = hn::Not(hn::FirstN(wide, Blocks));
  constexpr std::ptrdiff_t Step = 12 * Blocks;
  constexpr std::ptrdiff_t Room = 16 * Blocks;
  if (right - left < 2 * Room) return;
  const auto load = [=](const std::uint8_t* at) HWY_ATTR { return hn::BitCast(wide, hn::LoadU(d, at)); };
  const auto turned = [=](auto lanes) HWY_ATTR {
    return hn::BitCast(wide, hn::TableLookupBytes(hn::BitCast(d, lanes), backwards));
  };
  auto a = load(left);
  auto b = load(right - Room);
  while (right - left >= 2 * Room) {
    const auto nextA = load(left + Step);
    const auto nextB = load(right - Room - Step);
    const auto toLeft = hn::TableLookupLanes(turned(hn::TableLookupLanes(b, apartBack)), joinFront);
    const auto toRight = hn::TableLookupLanes(turned(hn::TableLookupLanes(a, apartFront)), joinBack);
    hn::StoreU(hn::BitCast(d, hn::IfThenElse(front, toLeft, a)), d, left);
    hn::StoreU(hn::BitCast(d, hn::IfThenElse(back, toRight, b)), d, right - Room);
    a = nextA;
    b = nextB;
    left += Step;
    right -= Step;
  }
}

// Swaps a vector of pixels at either end; the scalar kernel does the rest in the middle.
void MirrorBytes(std::uint8_t* row, std::size_t pixels, std::size_t size) {
  const Bytes d;
  std::uint8_t* left = row;
  std::uint8_t* right = row + pixels * size;
  const auto step = static_cast<std::ptrdiff_t>(hn::Lanes(d));
  if (size == 3) {
    MirrorTriples(d, left, right);
    MirrorTriples(Block(), left, right);
  }
  for (; size != 3 && right - left >= 2 * step; left += step, right -= step) {
    std::uint8_t* const other = right - step;
    const auto first = hn::LoadU(d, left);
    const auto last = hn::LoadU(d, other);
    if (size == 1) {
      hn::StoreU(Reversed(last), d, left);
      hn::StoreU(Reversed(first), d, other);
    } else {
      const hn::RepartitionToWide<hn::RepartitionToWide<Bytes> > wide;
      hn::StoreU(hn::BitCast(d, hn::Reverse(wide, hn::BitCast(wide, last))), d, left);
      hn::StoreU(hn::BitCast(d, hn::Reverse(wide, hn::BitCast(wide, first))), d, other);
    }
  }
  scalar::MirrorBytes(left, static_cast<std::size_t>(right - left) / size, size);
}

void ExchangeRows(std::uint8_t* row, std::uint8_t* other, std::size_t count) {
  const Bytes d;
  std::size_t i = 0;
  for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d)) {
    const auto bytes = hn::LoadU(d, row + i);
    hn::StoreU(hn::LoadU(d, other + i), d, row + i);
    hn::StoreU(bytes, d, other + i);
  }
  scalar::ExchangeRows(row + i, other + i, count - i);
}
#endif

}  // namespace kw::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kw::kernels {

HWY_EXPORT(BoxDownsample2);
HWY_EXPORT(MirrorBytes);
HWY_EXPORT(ExchangeRows);

void BoxDownsample2(const std::uint8_t* upper, const std::uint8_t* lower, std::uint8_t* to, std::size_t pixels,
                    std::size_t size) {
  HWY_DYNAMIC_DISPATCH(BoxDownsample2)(upper, lower, to, pixels, size);
}

void MirrorBytes(std::uint8_t* row, std::size_t pixels, std::size_t size) {
  HWY_DYNAMIC_DISPATCH(MirrorBytes)(row, pixels, size);
}

void ExchangeRows(std::uint8_t* row, std::uint8_t* other, std::size_t count) {
  HWY_DYNAMIC_DISPATCH(ExchangeRows)(row, other, count);
}

}  // namespace kw::kernels
#endif
