// SIMD kernels between levels and what stores them, and of what levels occur, compiled once for each Highway target and
// dispatched at run time.

#include <algorithm>
#include <cstring>

#include "picture/effects/ScalarKernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "picture/effects/LevelKernels.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kw::kernels::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
using scalar::FindThird;
using scalar::Triple;
using scalar::UnpackLevels;
#else
namespace hn = hwy::HWY_NAMESPACE;

// The bits of a vector fit into the number that they are loaded as.
using Bytes = hn::CappedTag<std::uint8_t, 64>;

// Calls work(x) for each vector of pixels. The last vector overlaps the one before it; it begins at a multiple of
// `unit` pixels and may end up to unit - 1 behind the pixels. False if there are too few pixels for one vector.
template <class Work>
HWY_INLINE bool ForLevels(std::size_t pixels, std::size_t unit, const Work& work) {
  const std::size_t step = hn::Lanes(Bytes());
  if (pixels < step) return false;
  for (std::size_t x = 0; x + step <= pixels; x += step) work(x);
  if (pixels % step != 0) work((pixels + unit - 1) / unit * unit - step);
  return true;
}

// Each byte of bits goes to eight lanes, each of which looks at its own bit.
HWY_INLINE bool UnpackBits(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, const Lut& levels) {
  constexpr std::size_t perByte = 8;
  const Bytes d;
  const hn::Repartition<std::uint64_t, Bytes> numbers;
  alignas(16) static constexpr std::uint8_t Own[16] = {128, 64, 32, 16, 8, 4, 2, 1, 128, 64, 32, 16, 8, 4, 2, 1};
  const auto own = hn::LoadDup128(d, Own);
  const auto source = hn::ShiftRight<3>(hn::Iota(d, 0));
  const auto zero = hn::Set(d, levels[0]);
  const auto one = hn::Set(d, levels[1]);
  const std::size_t taken = hn::Lanes(d) / perByte;
  return ForLevels(pixels, perByte, [&](const std::size_t x) HWY_ATTR {
    std::uint64_t bits = 0;
    std::memcpy(&bits, from + x / perByte, taken);
    const auto spread = hn::TableLookupBytes(hn::BitCast(d, hn::Set(numbers, bits)), source);
    hn::StoreU(hn::IfThenElse(hn::TestBit(spread, own), one, zero), d, to + x);
  });
}

HWY_INLINE bool UnpackHalfBytes(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, const Lut& levels) {
  constexpr std::size_t perByte = 2;
  const Bytes d;
  const hn::Repartition<std::uint16_t, Bytes> pairs;
  const auto table = hn::LoadDup128(d, levels.data());
  const auto low = hn::Set(pairs, std::uint16_t{15});
  return ForLevels(pixels, perByte, [&](const std::size_t x) HWY_ATTR {
    const auto both = hn::PromoteTo(pairs, hn::LoadU(hn::Half<Bytes>(), from + x / perByte));
    const auto indices = hn::Or(hn::ShiftRight<4>(both), hn::ShiftLeft<8>(hn::And(both, low)));
    hn::StoreU(hn::TableLookupBytes(table, hn::BitCast(d, indices)), d, to + x);
  });
}

void UnpackLevels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, int bitsPerPixel, const Lut& levels) {
  if (bitsPerPixel == 1 && UnpackBits(from, to, pixels, levels)) return;
  if (bitsPerPixel == 4 && UnpackHalfBytes(from, to, pixels, levels)) return;
  scalar::UnpackLevels(from, to, pixels, bitsPerPixel, levels);
}

std::size_t FindThird(const std::uint8_t* row, std::size_t count, std::uint8_t first, std::uint8_t second) {
  const Bytes d;
  const std::size_t step = hn::Lanes(d);
  if (count < step) return scalar::FindThird(row, count, first, second);
  const auto a = hn::Set(d, first);
  const auto b = hn::Set(d, second);
  for (std::size_t x = 0;; x = std::min(x + step, count - step)) {
    const auto values = hn::LoadU(d, row + x);
    const auto others = hn::Not(hn::Or(hn::Eq(values, a), hn::Eq(values, b)));
    if (!hn::AllFalse(d, others)) return x + hn::FindKnownFirstTrue(d, others);
    if (x + step == count) return count;
  }
}

void Triple(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  const Bytes d;
  const bool isDone = ForLevels(pixels, 1, [&](const std::size_t x) HWY_ATTR {
    const auto values = hn::LoadU(d, from + x);
    hn::StoreInterleaved3(values, values, values, d, to + 3 * x);
  });
  if (!isDone) scalar::Triple(from, to, pixels);
}
#endif

}  // namespace kw::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kw::kernels {

HWY_EXPORT(FindThird);
HWY_EXPORT(Triple);
HWY_EXPORT(UnpackLevels);

void UnpackLevels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, int bitsPerPixel, const Lut& levels) {
  HWY_DYNAMIC_DISPATCH(UnpackLevels)(from, to, pixels, bitsPerPixel, levels);
}

std::size_t FindThird(const std::uint8_t* row, std::size_t count, std::uint8_t first, std::uint8_t second) {
  return HWY_DYNAMIC_DISPATCH(FindThird)(row, count, first, second);
}

void Triple(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  HWY_DYNAMIC_DISPATCH(Triple)(from, to, pixels);
}

}  // namespace kw::kernels
#endif
