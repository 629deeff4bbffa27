// SIMD kernels of 3x3 filters and of the blur, compiled once for each Highway target and dispatched at run time.

#include "picture/effects/ScalarKernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "picture/effects/FilterKernels.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kw::kernels::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
using scalar::BlurAcross;
using scalar::BlurDown;
using scalar::DilateAcross;
using scalar::DilateBits;
using scalar::DilateBytes;
using scalar::DilateDown;
using scalar::Edge;
using scalar::Emboss;
using scalar::ErodeAcross;
using scalar::ErodeBits;
using scalar::ErodeBytes;
using scalar::ErodeDown;
using scalar::Sharpen;
using scalar::Soften;
#else
namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
// Filters calculate in 16 bits; a vector of bytes makes two of these.
using Words = hn::ScalableTag<std::int16_t>;
using HalfBytes = hn::Half<Bytes>;
using Word = hn::Vec<Words>;

HWY_INLINE Word Widened(const std::uint8_t* at) { return hn::PromoteTo(Words(), hn::LoadU(HalfBytes(), at)); }

HWY_INLINE Word Twice(Word value) { return hn::Add(value, value); }

// The 3x3 neighbourhoods of the bytes from `at` on.
struct Around {
  HWY_INLINE Around(const std::uint8_t* const* rows, std::size_t at, std::size_t size)
      : NW(Widened(rows[0] + at - size)),
        N(Widened(rows[0] + at)),
        NE(Widened(rows[0] + at + size)),
        W(Widened(rows[1] + at - size)),
        Self(Widened(rows[1] + at)),
        E(Widened(rows[1] + at + size)),
        SW(Widened(rows[2] + at - size)),
        S(Widened(rows[2] + at)),
        SE(Widened(rows[2] + at + size)) {}
  HWY_INLINE Word Binomial() const {
    const Word corners = hn::Add(hn::Add(NW, NE), hn::Add(SW, SE));
    const Word sides = hn::Add(hn::Add(N, W), hn::Add(E, S));
    return hn::Add(corners, Twice(hn::Add(sides, Twice(Self))));
  }
  Word NW, N, NE, W, Self, E, SW, S, SE;
};

HWY_INLINE void Put(Word values, std::uint8_t* to) { hn::StoreU(hn::DemoteTo(HalfBytes(), values), HalfBytes(), to); }

void Soften(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  const Words d;
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    Put(hn::ShiftRight<4>(hn::Add(Around(rows, i, size).Binomial(), hn::Set(d, std::int16_t{8}))), to + i);
  }
}

void Sharpen(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
             std::int32_t amount) {
  const Words d;
  const Word weight = hn::Set(d, static_cast<std::int16_t>(amount));
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const Around at(rows, i, size);
    const Word rest = hn::Sub(hn::ShiftLeft<4>(at.Self), at.Binomial());
    Put(hn::Add(at.Self, hn::MulFixedPoint15(hn::ShiftLeft<3>(rest), weight)), to + i);
  }
}

void Emboss(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
            std::int32_t amount) {
  const Words d;
  const Word weight = hn::Set(d, static_cast<std::int16_t>(4 * amount));
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const Around at(rows, i, size);
    const Word lower = hn::Add(Twice(at.SE), hn::Add(at.S, at.E));
    const Word upper = hn::Add(Twice(at.NW), hn::Add(at.N, at.W));
    const Word slope = hn::Sub(lower, upper);
    Put(hn::Add(at.Self, hn::MulFixedPoint15(hn::ShiftLeft<5>(slope), weight)), to + i);
  }
}

// The rounded length of the vectors (across, down), for half a vector of values.
template <class HalfWord>
HWY_INLINE HalfWord Length(HalfWord across, HalfWord down) {
  const hn::RepartitionToWide<Words> wide;
  const hn::RebindToFloat<decltype(wide)> real;
  const auto a = hn::ConvertTo(real, hn::PromoteTo(wide, across));
  const auto b = hn::ConvertTo(real, hn::PromoteTo(wide, down));
  const auto root = hn::Sqrt(hn::Add(hn::Mul(a, a), hn::Mul(b, b)));
  return hn::DemoteTo(hn::Half<Words>(), hn::ConvertTo(wide, hn::Add(root, hn::Set(real, 0.5F))));
}

void Edge(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  const Words d;
  const hn::Half<Words> half;
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const Around at(rows, i, size);
    const Word diagonal = hn::Sub(at.SE, at.NW);
    const Word other = hn::Sub(at.NE, at.SW);
    const Word across = hn::Add(hn::Add(diagonal, other), Twice(hn::Sub(at.E, at.W)));
    const Word down = hn::Add(hn::Sub(diagonal, other), Twice(hn::Sub(at.S, at.N)));
    const auto lower = Length(hn::LowerHalf(half, across), hn::LowerHalf(half, down));
    const auto upper = Length(hn::UpperHalf(half, across), hn::UpperHalf(half, down));
    Put(hn::Combine(d, upper, lower), to + i);
  }
}

// The greatest or least value of each 3x3 neighbourhood.
template <class Choice>
HWY_INLINE void Choose(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
                       Choice choice) {
  const Bytes d;
  const auto step = static_cast<std::ptrdiff_t>(size);
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const auto here = static_cast<std::ptrdiff_t>(i);
    const auto column = [&](const std::ptrdiff_t at) HWY_ATTR {
      return choice(choice(hn::LoadU(d, rows[0] + at), hn::LoadU(d, rows[1] + at)), hn::LoadU(d, rows[2] + at));
    };
    hn::Store(choice(choice(column(here - step), column(here)), column(here + step)), d, to + i);
  }
}

// The greatest or least value of each value and its neighbours in the row, or above and below.
// ChooseAcross reads nothing beyond the neighbours; false if there are too few values for a vector.
template <class Choice>
HWY_INLINE bool ChooseAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size,
                             Choice choice) {
  const Bytes d;
  const std::size_t lanes = hn::Lanes(d);
  if (count < lanes) return false;
  const auto step = static_cast<std::ptrdiff_t>(size);
  const auto put = [&](std::size_t i) HWY_ATTR {
    const std::uint8_t* const at = from + i;
    hn::StoreU(choice(choice(hn::LoadU(d, at - step), hn::LoadU(d, at + step)), hn::LoadU(d, at)), d, to + i);
  };
  for (std::size_t i = 0; i + lanes <= count; i += lanes) put(i);
  put(count - lanes);
  return true;
}

template <class Choice>
HWY_INLINE void ChooseDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, Choice choice) {
  const Bytes d;
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const auto two = choice(hn::LoadU(d, rows[0] + i), hn::LoadU(d, rows[1] + i));
    hn::Store(choice(two, hn::LoadU(d, rows[2] + i)), d, to + i);
  }
}

struct Greater {
  HWY_INLINE hn::Vec<Bytes> operator()(hn::Vec<Bytes> a, hn::Vec<Bytes> b) const { return hn::Max(a, b); }
};
struct Lesser {
  HWY_INLINE hn::Vec<Bytes> operator()(hn::Vec<Bytes> a, hn::Vec<Bytes> b) const { return hn::Min(a, b); }
};

void DilateAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size) {
  if (!ChooseAcross(from, to, count, size, Greater())) scalar::DilateAcross(from, to, count, size);
}

void ErodeAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size) {
  if (!ChooseAcross(from, to, count, size, Lesser())) scalar::ErodeAcross(from, to, count, size);
}

void DilateDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  ChooseDown(rows, to, count, Greater());
}

void ErodeDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  ChooseDown(rows, to, count, Lesser());
}

void DilateBytes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  Choose(rows, to, count, size, Greater());
}

void ErodeBytes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  Choose(rows, to, count, size, Lesser());
}

template <class Merge>
HWY_INLINE void MorphBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, Merge merge) {
  const Bytes d;
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const auto here = static_cast<std::ptrdiff_t>(i);
    const auto together = [&](const std::ptrdiff_t at) HWY_ATTR {
      return merge(merge(hn::LoadU(d, rows[0] + at), hn::LoadU(d, rows[1] + at)), hn::LoadU(d, rows[2] + at));
    };
    const auto middle = together(here);
    const auto fromRight = hn::Or(hn::ShiftLeft<1>(middle), hn::ShiftRight<7>(together(here + 1)));
    const auto fromLeft = hn::Or(hn::ShiftRight<1>(middle), hn::ShiftLeft<7>(together(here - 1)));
    hn::Store(merge(middle, merge(fromLeft, fromRight)), d, to + i);
  }
}

void DilateBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  MorphBits(rows, to, count, [](hn::Vec<Bytes> a, hn::Vec<Bytes> b) HWY_ATTR { return hn::Or(a, b); });
}

void ErodeBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  MorphBits(rows, to, count, [](hn::Vec<Bytes> a, hn::Vec<Bytes> b) HWY_ATTR { return hn::And(a, b); });
}

// Several vectors at a time: the weights and rows are looked up for all of them once.
template <std::size_t Count>
HWY_INLINE void BlurDownAt(const std::uint8_t* const* rows, std::ptrdiff_t at, std::int16_t* to,
                           std::span<const std::int16_t> weights) {
  const Words d;
  const std::size_t radius = weights.size() - 1;
  Word sums[Count];
  for (std::size_t v = 0; v < Count; ++v) {
    const Word middle = Widened(rows[radius] + at + v * hn::Lanes(d));
    sums[v] = hn::MulFixedPoint15(hn::ShiftLeft<6>(middle), hn::Set(d, weights[0]));
  }
  for (std::size_t k = 1; k <= radius; ++k) {
    const Word weight = hn::Set(d, weights[k]);
    const std::uint8_t* const upper = rows[radius - k] + at;
    const std::uint8_t* const lower = rows[radius + k] + at;
    for (std::size_t v = 0; v < Count; ++v) {
      const Word pair = hn::Add(Widened(upper + v * hn::Lanes(d)), Widened(lower + v * hn::Lanes(d)));
      sums[v] = hn::Add(sums[v], hn::MulFixedPoint15(hn::ShiftLeft<6>(pair), weight));
    }
  }
  for (std::size_t v = 0; v < Count; ++v) {
    hn::StoreU(hn::Min(sums[v], hn::Set(d, std::int16_t{16383})), d, to + v * hn::Lanes(d));
  }
}

void BlurDown(const std::uint8_t* const* rows, std::size_t margin, std::int16_t* to, std::size_t count,
              std::span<const std::int16_t> weights) {
  constexpr std::size_t Together = 4;
  const std::size_t step = hn::Lanes(Words());
  const auto before = static_cast<std::ptrdiff_t>(margin);
  std::size_t i = 0;
  for (; i + Together * step <= count; i += Together * step) {
    BlurDownAt<Together>(rows, static_cast<std::ptrdiff_t>(i) - before, to + i, weights);
  }
  for (; i < count; i += step) BlurDownAt<1>(rows, static_cast<std::ptrdiff_t>(i) - before, to + i, weights);
}

template <std::size_t Count>
HWY_INLINE void BlurAcrossAt(const std::int16_t* from, std::uint8_t* to, std::size_t size,
                             std::span<const std::int16_t> weights) {
  const Words d;
  Word sums[Count];
  for (std::size_t v = 0; v < Count; ++v) {
    const Word middle = hn::MulFixedPoint15(hn::LoadU(d, from + v * hn::Lanes(d)), hn::Set(d, weights[0]));
    sums[v] = hn::Add(middle, hn::Set(d, std::int16_t{32}));
  }
  for (std::size_t k = 1; k < weights.size(); ++k) {
    const Word weight = hn::Set(d, weights[k]);
    const std::int16_t* const left = from - k * size;
    const std::int16_t* const right = from + k * size;
    for (std::size_t v = 0; v < Count; ++v) {
      const Word pair = hn::Add(hn::LoadU(d, left + v * hn::Lanes(d)), hn::LoadU(d, right + v * hn::Lanes(d)));
      sums[v] = hn::Add(sums[v], hn::MulFixedPoint15(pair, weight));
    }
  }
  for (std::size_t v = 0; v < Count; ++v) Put(hn::ShiftRight<6>(sums[v]), to + v * hn::Lanes(d));
}

void BlurAcross(const std::int16_t* from, std::uint8_t* to, std::size_t count, std::size_t size,
                std::span<const std::int16_t> weights) {
  constexpr std::size_t Together = 4;
  const std::size_t step = hn::Lanes(Words());
  std::size_t i = 0;
  for (; i + Together * step <= count; i += Together * step) BlurAcrossAt<Together>(from + i, to + i, size, weights);
  for (; i < count; i += step) BlurAcrossAt<1>(from + i, to + i, size, weights);
}
#endif

}  // namespace kw::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kw::kernels {

HWY_EXPORT(Soften);
HWY_EXPORT(Sharpen);
HWY_EXPORT(Emboss);
HWY_EXPORT(Edge);
HWY_EXPORT(DilateBytes);
HWY_EXPORT(ErodeBytes);
HWY_EXPORT(DilateAcross);
HWY_EXPORT(ErodeAcross);
HWY_EXPORT(DilateDown);
HWY_EXPORT(ErodeDown);
HWY_EXPORT(DilateBits);
HWY_EXPORT(ErodeBits);
HWY_EXPORT(BlurDown);
HWY_EXPORT(BlurAcross);

void Soften(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  HWY_DYNAMIC_DISPATCH(Soften)(rows, to, count, size);
}

void Sharpen(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
             std::int32_t amount) {
  HWY_DYNAMIC_DISPATCH(Sharpen)(rows, to, count, size, amount);
}

void Emboss(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
            std::int32_t amount) {
  HWY_DYNAMIC_DISPATCH(Emboss)(rows, to, count, size, amount);
}

void Edge(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  HWY_DYNAMIC_DISPATCH(Edge)(rows, to, count, size);
}

void DilateBytes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  HWY_DYNAMIC_DISPATCH(DilateBytes)(rows, to, count, size);
}

void ErodeBytes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  HWY_DYNAMIC_DISPATCH(ErodeBytes)(rows, to, count, size);
}

void DilateAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size) {
  HWY_DYNAMIC_DISPATCH(DilateAcross)(from, to, count, size);
}

void ErodeAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size) {
  HWY_DYNAMIC_DISPATCH(ErodeAcross)(from, to, count, size);
}

void DilateDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  HWY_DYNAMIC_DISPATCH(DilateDown)(rows, to, count);
}

void ErodeDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  HWY_DYNAMIC_DISPATCH(ErodeDown)(rows, to, count);
}

void DilateBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  HWY_DYNAMIC_DISPATCH(DilateBits)(rows, to, count);
}

void ErodeBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  HWY_DYNAMIC_DISPATCH(ErodeBits)(rows, to, count);
}

void BlurDown(const std::uint8_t* const* rows, std::size_t margin, std::int16_t* to, std::size_t count,
              std::span<const std::int16_t> weights) {
  HWY_DYNAMIC_DISPATCH(BlurDown)(rows, margin, to, count, weights);
}

void BlurAcross(const std::int16_t* from, std::uint8_t* to, std::size_t count, std::size_t size,
                std::span<const std::int16_t> weights) {
  HWY_DYNAMIC_DISPATCH(BlurAcross)(from, to, count, size, weights);
}

}  // namespace kw::kernels
#endif
