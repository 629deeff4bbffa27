// SIMD kernels of the wide blur, compiled once for each Highway target and dispatched at run time.

#include "picture/effects/WideBlurKernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "picture/effects/WideBlurKernels.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kw::kernels::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
using scalar::AddShifted;
using scalar::BlurWords;
using scalar::EnlargeWords;
using scalar::MixWords;
using scalar::SumDown;
#else
namespace wide = hwy::HWY_NAMESPACE;

using Signed = wide::ScalableTag<std::int16_t>;
using Unsigned = wide::ScalableTag<std::uint16_t>;
using SignedWords = wide::Vec<Signed>;

void SumDown(std::span<const std::uint8_t* const> rows, std::uint16_t* to, std::size_t count) {
  const Unsigned d;
  const wide::Rebind<std::uint8_t, Unsigned> bytes;
  for (std::size_t i = 0; i < count; i += wide::Lanes(d)) {
    auto sum = wide::PromoteTo(d, wide::LoadU(bytes, rows[0] + i));
    for (std::size_t k = 1; k < rows.size(); ++k) {
      sum = wide::Add(sum, wide::PromoteTo(d, wide::LoadU(bytes, rows[k] + i)));
    }
    wide::StoreU(sum, d, to + i);
  }
}

void AddShifted(std::uint16_t* row, std::size_t step, std::size_t count) {
  const Unsigned d;
  for (std::size_t i = 0; i < count; i += wide::Lanes(d)) {
    wide::StoreU(wide::Add(wide::LoadU(d, row + i), wide::LoadU(d, row + i + step)), d, row + i);
  }
}

// Several vectors at a time: the weights and rows are looked up for all of them once.
template <std::size_t Count>
HWY_INLINE void BlurWordsAt(const std::int16_t* const* rows, std::size_t at, std::int16_t* to,
                            std::span<const std::int16_t> weights) {
  const Signed d;
  const std::size_t radius = weights.size() - 1;
  SignedWords sums[Count];
  for (std::size_t v = 0; v < Count; ++v) {
    const auto middle = wide::LoadU(d, rows[radius] + at + v * wide::Lanes(d));
    sums[v] = wide::MulFixedPoint15(middle, wide::Set(d, weights[0]));
  }
  for (std::size_t k = 1; k <= radius; ++k) {
    const auto weight = wide::Set(d, weights[k]);
    const std::int16_t* const before = rows[radius - k] + at;
    const std::int16_t* const behind = rows[radius + k] + at;
    for (std::size_t v = 0; v < Count; ++v) {
      const std::size_t there = v * wide::Lanes(d);
      const auto both = wide::Add(wide::LoadU(d, before + there), wide::LoadU(d, behind + there));
      sums[v] = wide::Add(sums[v], wide::MulFixedPoint15(both, weight));
    }
  }
  for (std::size_t v = 0; v < Count; ++v) {
    wide::StoreU(wide::Min(sums[v], wide::Set(d, std::int16_t{16383})), d, to + at + v * wide::Lanes(d));
  }
}

void BlurWords(const std::int16_t* const* rows, std::int16_t* to, std::size_t count,
               std::span<const std::int16_t> weights) {
  constexpr std::size_t Together = 4;
  const std::size_t step = wide::Lanes(Signed());
  std::size_t i = 0;
  for (; i + Together * step <= count; i += Together * step) BlurWordsAt<Together>(rows, i, to, weights);
  for (; i < count; i += step) BlurWordsAt<1>(rows, i, to, weights);
}

// Each vector of the steps serves all places that are a multiple of the steps' length further. Left and right values
// lie in the halves of a lane, which is looked up as a whole.
void EnlargeWords(const std::int16_t* from, std::int16_t* to, std::size_t count, const EnlargingSteps& steps) {
  const wide::ScalableTag<std::uint32_t> pairs;
  const wide::ScalableTag<std::int32_t> sums;
  const wide::Rebind<std::uint16_t, decltype(pairs)> values;
  const wide::Rebind<std::int16_t, decltype(pairs)> results;
  const Signed halves;
  const std::size_t period = steps.places.size();
  for (std::size_t first = 0; first < period && first < count; first += wide::Lanes(pairs)) {
    const auto places = wide::LoadU(pairs, steps.places.data() + first);
    const auto least = wide::GetLane(wide::MinOfLanes(pairs, places));
    const auto chosen = wide::IndicesFromVec(pairs, wide::Sub(places, wide::Set(pairs, least)));
    const auto weights = wide::BitCast(halves, wide::LoadU(pairs, steps.weights.data() + first));
    const auto* at = reinterpret_cast<const std::uint16_t*>(from) + least;
    for (std::size_t i = first; i < count; i += period, at += steps.advance) {
      const auto left = wide::PromoteTo(pairs, wide::LoadU(values, at));
      const auto right = wide::PromoteTo(pairs, wide::LoadU(values, at + steps.size));
      const auto both = wide::TableLookupLanes(wide::Or(left, wide::ShiftLeft<16>(right)), chosen);
      const auto parts = wide::BitCast(pairs, wide::MulFixedPoint15(wide::BitCast(halves, both), weights));
      const auto sum = wide::And(wide::Add(parts, wide::ShiftRight<16>(parts)), wide::Set(pairs, 0xFFFFU));
      wide::StoreU(wide::DemoteTo(results, wide::BitCast(sums, sum)), results, to + i);
    }
  }
}

void MixWords(const std::int16_t* upper, const std::int16_t* lower, std::int16_t weight, std::uint8_t* to,
              std::size_t count) {
  const Signed d;
  const wide::Rebind<std::uint8_t, Signed> bytes;
  const auto part = wide::Set(d, weight);
  const auto half = wide::Set(d, std::int16_t{32});
  for (std::size_t i = 0; i < count; i += wide::Lanes(d)) {
    const auto above = wide::LoadU(d, upper + i);
    const auto apart = wide::Sub(wide::LoadU(d, lower + i), above);
    const auto mixed = wide::Add(wide::Add(above, half), wide::MulFixedPoint15(apart, part));
    wide::StoreU(wide::DemoteTo(bytes, wide::ShiftRight<6>(mixed)), bytes, to + i);
  }
}
#endif

}  // namespace kw::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kw::kernels {

HWY_EXPORT(SumDown);
HWY_EXPORT(AddShifted);
HWY_EXPORT(BlurWords);
HWY_EXPORT(EnlargeWords);
HWY_EXPORT(MixWords);

void SumDown(std::span<const std::uint8_t* const> rows, std::uint16_t* to, std::size_t count) {
  HWY_DYNAMIC_DISPATCH(SumDown)(rows, to, count);
}

void AddShifted(std::uint16_t* row, std::size_t step, std::size_t count) {
  HWY_DYNAMIC_DISPATCH(AddShifted)(row, step, count);
}

void BlurWords(const std::int16_t* const* rows, std::int16_t* to, std::size_t count,
               std::span<const std::int16_t> weights) {
  HWY_DYNAMIC_DISPATCH(BlurWords)(rows, to, count, weights);
}

void EnlargeWords(const std::int16_t* from, std::int16_t* to, std::size_t count, const EnlargingSteps& steps) {
  HWY_DYNAMIC_DISPATCH(EnlargeWords)(from, to, count, steps);
}

void MixWords(const std::int16_t* upper, const std::int16_t* lower, std::int16_t weight, std::uint8_t* to,
              std::size_t count) {
  HWY_DYNAMIC_DISPATCH(MixWords)(upper, lower, weight, to, count);
}

EnlargingSteps StepsOf(std::size_t size, std::size_t factor) {
  EnlargingSteps steps{.size = size, .advance = StepPixels / factor * size, .places = {}, .weights = {}};
  for (std::size_t pixel = 0; pixel < StepPixels; ++pixel) {
    const std::size_t place = pixel + factor / 2;
    const auto right = static_cast<std::uint32_t>((2 * (place % factor) + 1) * (16384 / factor));
    for (std::size_t c = 0; c < size; ++c) {
      steps.places.push_back(static_cast<std::uint32_t>(place / factor * size + c));
      steps.weights.push_back((right << 16U) + 32768U - right);
    }
  }
  return steps;
}

namespace scalar {
namespace {

std::int32_t PartOf(std::int32_t value, std::int32_t weight) { return (value * weight + 16384) >> 15; }

}  // namespace

void SumDown(std::span<const std::uint8_t* const> rows, std::uint16_t* to, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    unsigned sum = 0;
    for (const std::uint8_t* const row : rows) sum += row[i];
    to[i] = static_cast<std::uint16_t>(sum);
  }
}

void AddShifted(std::uint16_t* row, std::size_t step, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) row[i] = static_cast<std::uint16_t>(row[i] + row[i + step]);
}

void BlurWords(const std::int16_t* const* rows, std::int16_t* to, std::size_t count,
               std::span<const std::int16_t> weights) {
  const std::size_t radius = weights.size() - 1;
  for (std::size_t i = 0; i < count; ++i) {
    std::int32_t sum = PartOf(rows[radius][i], weights[0]);
    for (std::size_t k = 1; k <= radius; ++k) sum += PartOf(rows[radius - k][i] + rows[radius + k][i], weights[k]);
    to[i] = static_cast<std::int16_t>(sum < 16383 ? sum : 16383);
  }
}

void EnlargeWords(const std::int16_t* from, std::int16_t* to, std::size_t count, const EnlargingSteps& steps) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t step = i % steps.places.size();
    const std::int16_t* const left = from + i / steps.places.size() * steps.advance + steps.places[step];
    const auto weights = steps.weights[step];
    to[i] = static_cast<std::int16_t>(PartOf(*left, static_cast<std::int32_t>(weights & 0xFFFFU)) +
                                      PartOf(left[steps.size], static_cast<std::int32_t>(weights >> 16U)));
  }
}

void MixWords(const std::int16_t* upper, const std::int16_t* lower, std::int16_t weight, std::uint8_t* to,
              std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    to[i] = static_cast<std::uint8_t>((upper[i] + PartOf(lower[i] - upper[i], weight) + 32) >> 6);
  }
}

}  // namespace scalar
}  // namespace kw::kernels
#endif
