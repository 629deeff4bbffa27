// SIMD kernels of free rotations, compiled once for each Highway target and dispatched at run time.

#include <algorithm>
#include <cstddef>

#include "picture/effects/ScalarKernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "picture/effects/RotateKernels.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kw::kernels::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
using scalar::FindPlaces;
using scalar::Interpolate;
#else
namespace hn = hwy::HWY_NAMESPACE;

using Numbers = hn::ScalableTag<std::int32_t>;

void FindPlaces(const PlaceLine& line, std::int32_t* to, std::size_t count) {
  const hn::ScalableTag<double> d;
  const hn::Rebind<std::int32_t, decltype(d)> whole;
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const auto away = hn::Iota(d, line.first + static_cast<double>(i));
    const auto along = hn::Add(hn::Mul(hn::Set(d, line.step), away), hn::Set(d, line.start));
    const auto place = hn::Sub(hn::Add(along, hn::Set(d, line.middle)), hn::Set(d, 0.5));
    const auto rounded = hn::Floor(hn::Add(hn::Mul(place, hn::Set(d, 256.0)), hn::Set(d, 0.5)));
    hn::StoreU(hn::DemoteTo(whole, rounded), whole, to + i);
  }
}

// A pixel of up to four channels: each lane of 32 bits is a channel.
template <std::size_t Size>
HWY_INLINE void InterpolateSome(const std::uint8_t* base, std::size_t stride, const std::int32_t* offsets,
                                const std::int32_t* across, const std::int32_t* down, std::uint8_t* to,
                                std::size_t pixels) {
  const hn::Full128<std::uint8_t> bytes;
  const hn::Full64<std::uint8_t> half;
  const hn::Full32<std::uint8_t> pixel;
  const hn::Full128<std::int16_t> words;
  const hn::Full128<std::int32_t> d;
  // Each channel of the left pixel beside that of the right one.
  alignas(16) static constexpr std::uint8_t Triples[16] = {0, 0x80, 3, 0x80, 1, 0x80, 4, 0x80,
                                                           2, 0x80, 5, 0x80, 3, 0x80, 6, 0x80};
  alignas(16) static constexpr std::uint8_t Fours[16] = {0, 0x80, 4, 0x80, 1, 0x80, 5, 0x80,
                                                         2, 0x80, 6, 0x80, 3, 0x80, 7, 0x80};
  alignas(16) static constexpr std::uint8_t Close[16] = {0, 4, 8, 12};
  const auto order = hn::Load(bytes, Size == 3 ? Triples : Fours);
  const auto close = hn::Load(bytes, Close);
  const auto mixed = [=](auto left, auto weights) HWY_ATTR {
    auto rest = hn::Zero(d);
    const auto sums = hn::ReorderWidenMulAccumulate(d, left, hn::BitCast(words, weights), hn::Zero(d), rest);
    return hn::RearrangeToOddPlusEven(sums, rest);
  };
  const auto pairs = [=](const std::uint8_t* at) HWY_ATTR {
    const auto both = hn::ZeroExtendVector(bytes, hn::LoadU(half, at));
    return hn::BitCast(words, hn::TableLookupBytesOr0(both, order));
  };
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::uint8_t* const at = base + offsets[i];
    const auto weights = hn::Set(d, across[i]);
    const auto upper = mixed(pairs(at), weights);
    const auto lower = mixed(pairs(at + stride), weights);
    // Both fit into 16 bits; made signed they lose 32768, and their weights add up to 256.
    const auto both =
        hn::Xor(hn::Or(upper, hn::ShiftLeft<16>(lower)), hn::Set(d, static_cast<std::int32_t>(0x80008000U)));
    const auto sums = mixed(hn::BitCast(words, both), hn::Set(d, down[i]));
    const auto values = hn::ShiftRight<16>(hn::Add(sums, hn::Set(d, 32768 * 256 + 32768)));
    const auto result = hn::TableLookupBytes(hn::BitCast(bytes, values), close);
    hn::StoreU(hn::LowerHalf(pixel, hn::LowerHalf(half, result)), pixel, to + i * Size);
  }
}

void Interpolate(const PlacedRow& row, std::uint8_t* to, std::size_t pixels, std::size_t size) {
  if (size == 1) return scalar::Interpolate(row, to, pixels, size);
  const Numbers d;
  constexpr std::size_t Together = 64;
  alignas(64) std::int32_t offsets[Together];
  alignas(64) std::int32_t across[Together];
  alignas(64) std::int32_t down[Together];
  const auto fraction = hn::Set(d, 255);
  const auto stride = hn::Set(d, static_cast<std::int32_t>(row.stride));
  // The weights of the first and the second of a pair, 16 bits each: 256 - f and f.
  const auto weights = [=](hn::Vec<Numbers> places) HWY_ATTR {
    const auto second = hn::And(places, fraction);
    return hn::Or(hn::Sub(hn::Set(d, 256), second), hn::ShiftLeft<16>(second));
  };
  for (std::size_t begin = 0; begin < pixels; begin += Together) {
    const std::size_t count = std::min(Together, pixels - begin);
    for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
      const auto columns = hn::LoadU(d, row.columns + begin + i);
      const auto lines = hn::LoadU(d, row.lines + begin + i);
      const auto inLine = hn::Mul(hn::ShiftRight<8>(columns), hn::Set(d, static_cast<std::int32_t>(size)));
      hn::Store(hn::Add(hn::Mul(hn::ShiftRight<8>(lines), stride), inLine), d, offsets + i);
      hn::Store(weights(columns), d, across + i);
      hn::Store(weights(lines), d, down + i);
    }
    if (size == 3) {
      InterpolateSome<3>(row.base, row.stride, offsets, across, down, to + begin * 3, count);
    } else {
      InterpolateSome<4>(row.base, row.stride, offsets, across, down, to + begin * 4, count);
    }
  }
}
#endif

}  // namespace kw::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kw::kernels {

HWY_EXPORT(FindPlaces);
HWY_EXPORT(Interpolate);

void FindPlaces(const PlaceLine& line, std::int32_t* to, std::size_t count) {
  HWY_DYNAMIC_DISPATCH(FindPlaces)(line, to, count);
}

void Interpolate(const PlacedRow& row, std::uint8_t* to, std::size_t pixels, std::size_t size) {
  HWY_DYNAMIC_DISPATCH(Interpolate)(row, to, pixels, size);
}

}  // namespace kw::kernels
#endif
