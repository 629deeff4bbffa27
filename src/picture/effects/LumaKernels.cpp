// The SIMD kernel of luma, compiled once for each Highway target and dispatched at run time.

#include <cstddef>

#include "picture/effects/ScalarKernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "picture/effects/LumaKernels.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kw::kernels::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
using scalar::Luma;
#else
namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::Repartition<std::uint16_t, Bytes>;
using Numbers = hn::Repartition<std::uint32_t, Bytes>;

constexpr std::size_t Blocks = hn::MaxLanes(Bytes()) / 16;

// Where each lane of 32 bits is taken from.
struct LaneOrder {
  alignas(64) std::int32_t lanes[4 * Blocks];
};

// Four pixels of three bytes come to lie in the first three lanes of each block. They begin `skipped` lanes behind the
// first one.
constexpr LaneOrder Spread(std::size_t skipped) {
  LaneOrder order{};
  for (std::size_t i = 0; i < 4 * Blocks; ++i) order.lanes[i] = static_cast<std::int32_t>(skipped + i / 4 * 3 + i % 4);
  for (std::size_t i = 3; i < 4 * Blocks; i += 4) order.lanes[i] = 0;
  return order;
}

// The lanes of each block go to as many runs of lanes.
constexpr LaneOrder Gather() {
  LaneOrder order{};
  for (std::size_t i = 0; i < 4 * Blocks; ++i) {
    order.lanes[i] = static_cast<std::int32_t>(i % Blocks * 4 + i / Blocks);
  }
  return order;
}

constexpr LaneOrder SpreadFromFirst = Spread(0);
constexpr LaneOrder SpreadToLast = Spread(Blocks);
constexpr LaneOrder GatherRuns = Gather();

constexpr std::uint8_t None = 0x80;
alignas(16) constexpr std::uint8_t BlueAndGreen[16] = {0, None, 1, None, 3, None, 4,  None,
                                                       6, None, 7, None, 9, None, 10, None};
alignas(16) constexpr std::uint8_t RedAlone[16] = {2, None, None, None, 5,  None, None, None,
                                                   8, None, None, None, 11, None, None, None};
alignas(16) constexpr std::uint8_t OneOfEachLane[16] = {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15};

// A lane of 32 bits holds the weighted sum of a pixel's channels. The sum is divided by 8, which leaves 15 bits, and
// then by 125; that multiplication is exact for these numbers.
void Luma(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  const Bytes d;
  const Words words;
  const Numbers numbers;
  const hn::RebindToSigned<Words> factors;
  const hn::RebindToSigned<Numbers> sums;
  constexpr std::size_t Step = 16 * Blocks;
  // One vector holds a quarter of them.
  constexpr std::size_t QuarterBytes = 3 * Step / 4;
  if (pixels < Step) return scalar::Luma(from, to, pixels);

  const auto fromFirst = hn::SetTableIndices(numbers, SpreadFromFirst.lanes);
  const auto toLast = hn::SetTableIndices(numbers, SpreadToLast.lanes);
  const auto runs = hn::SetTableIndices(numbers, GatherRuns.lanes);
  const auto blueAndGreen = hn::LoadDup128(d, BlueAndGreen);
  const auto redAlone = hn::LoadDup128(d, RedAlone);
  const auto oneOfEach = hn::LoadDup128(d, OneOfEachLane);
  const auto weightsOfBlueAndGreen = hn::BitCast(factors, hn::Set(numbers, 587U << 16U | 114U));
  const auto weightOfRed = hn::BitCast(factors, hn::Set(numbers, 299U));
  const auto half = hn::Set(sums, 500);
  const auto sumsOf = [=](const std::uint8_t* at, auto spread) HWY_ATTR {
    const auto four = hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(numbers, hn::LoadU(d, at)), spread));
    auto rest = hn::Zero(sums);
    auto sum = hn::ReorderWidenMulAccumulate(sums, hn::BitCast(factors, hn::TableLookupBytesOr0(four, blueAndGreen)),
                                             weightsOfBlueAndGreen, hn::Zero(sums), rest);
    sum = hn::ReorderWidenMulAccumulate(sums, hn::BitCast(factors, hn::TableLookupBytesOr0(four, redAlone)),
                                        weightOfRed, sum, rest);
    return hn::BitCast(numbers, hn::Add(hn::RearrangeToOddPlusEven(sum, rest), half));
  };
  const auto lumaOf = [=](hn::Vec<Numbers> lower, hn::Vec<Numbers> upper) HWY_ATTR {
    const auto eighths = hn::OrAnd(hn::ShiftRight<3>(lower), hn::ShiftLeft<13>(upper), hn::Set(numbers, 0xFFFF0000U));
    return hn::ShiftRight<6>(hn::MulHigh(hn::BitCast(words, eighths), hn::Set(words, std::uint16_t{33555})));
  };
  const auto work = [=](std::size_t x) HWY_ATTR {
    const std::uint8_t* const at = from + 3 * x;
    const auto first = sumsOf(at, fromFirst);
    const auto second = sumsOf(at + QuarterBytes, fromFirst);
    const auto third = sumsOf(at + 2 * QuarterBytes, fromFirst);
    // The last quarter ends where the vector ends, so that nothing behind the pixels is read.
    const auto fourth = sumsOf(at + 4 * QuarterBytes - 16 * Blocks, toLast);
    const auto lanes = hn::Or(lumaOf(first, third), hn::ShiftLeft<8>(lumaOf(second, fourth)));
    const auto quarters = hn::BitCast(numbers, hn::TableLookupBytes(hn::BitCast(d, lanes), oneOfEach));
    hn::StoreU(hn::BitCast(d, hn::TableLookupLanes(quarters, runs)), d, to + x);
  };
  for (std::size_t x = 0; x + Step <= pixels; x += Step) work(x);
  if (pixels % Step != 0) work(pixels - Step);
}
#endif

}  // namespace kw::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kw::kernels {

HWY_EXPORT(Luma);

void Luma(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  HWY_DYNAMIC_DISPATCH(Luma)(from, to, pixels);
}

}  // namespace kw::kernels
#endif
