// Per-pixel SIMD kernels, compiled once for each Highway target and dispatched at run time.

#include "picture/effects/ScalarKernels.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "picture/effects/PointKernels.cpp"
#include <hwy/foreach_target.h>
// Must follow foreach_target.h.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace kw::kernels::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR || HWY_TARGET == HWY_EMU128
using scalar::ApplyLinearMap;
using scalar::ApplyLut;
using scalar::ApplyLutToColours;
using scalar::ExchangeRedAndBlue;
using scalar::FindBins;
using scalar::SplitIntoBins;
using scalar::StreamExchanged;
using scalar::ThresholdToBits;
#else
namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::ScalableTag<std::uint8_t>;
using Words = hn::ScalableTag<std::uint16_t>;
using HalfBytes = hn::Half<Bytes>;

// A look-up table of 256 bytes in vectors of 16 entries.
class Table {
public:
  HWY_INLINE explicit Table(const Lut& table) {
    const hn::Full128<std::uint8_t> d;
    for (std::size_t block = 0; block < 256; block += 16) {
      const auto entries = hn::LoadU(d, table.data() + block);
      const bool isFirst = block % 128 == 0;
      hn::Store(isFirst ? entries : hn::Xor(entries, hn::LoadU(d, table.data() + block - 16)), d, differences + block);
    }
  }

  // A vector look-up gives 0 for an index whose highest bit is set. Each index starts at its value and loses 16 for
  // each block: as long as it is not negative, it collects the difference between this block and the one before, so
  // that the sum is the entry of its own block. The upper half works the same way with the highest bit inverted.
  HWY_INLINE hn::Vec<Bytes> At(hn::Vec<Bytes> values) const {
    const Bytes d;
    const hn::RebindToSigned<Bytes> numbers;
    const auto sixteen = hn::Set(numbers, std::int8_t{16});
    auto lower = hn::BitCast(numbers, values);
    auto upper = hn::BitCast(numbers, hn::Xor(values, hn::Set(d, std::uint8_t{0x80})));
    auto result = hn::Zero(d);
    for (std::size_t block = 0; block < 128; block += 16) {
      const auto low = hn::TableLookupBytesOr0(hn::LoadDup128(d, differences + block), hn::BitCast(d, lower));
      const auto high = hn::TableLookupBytesOr0(hn::LoadDup128(d, differences + 128 + block), hn::BitCast(d, upper));
      result = hn::Xor(result, hn::Xor(low, high));
      lower = hn::SaturatedSub(lower, sixteen);
      upper = hn::SaturatedSub(upper, sixteen);
    }
    return result;
  }

private:
  alignas(16) std::uint8_t differences[256];
};

void ApplyLut(std::uint8_t* row, std::size_t count, const Lut& table) {
  const Bytes d;
  const Table lookUp(table);
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) hn::Store(lookUp.At(hn::Load(d, row + i)), d, row + i);
}

void ApplyLutToColours(std::uint8_t* row, std::size_t count, const Lut& table) {
  const Bytes d;
  const Table lookUp(table);
  const auto alpha = hn::BitCast(d, hn::Set(hn::RepartitionToWide<hn::RepartitionToWide<Bytes> >(), 0xFF000000U));
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const auto values = hn::Load(d, row + i);
    hn::Store(hn::Or(hn::AndNot(alpha, lookUp.At(values)), hn::And(alpha, values)), d, row + i);
  }
}

// Words hold the even bytes in their upper halves, then the odd ones.
void ApplyLinearMap(std::uint8_t* row, std::size_t count, const LinearMap& map) {
  const Bytes d;
  const Words words;
  const hn::RebindToSigned<Words> numbers;
  const auto gain = hn::Set(words, map.gain);
  const auto offset = hn::Set(numbers, map.offset);
  const auto most = hn::Set(numbers, std::int16_t{255});
  const auto flip = hn::Set(d, map.flip);
  const auto odd = hn::Set(words, std::uint16_t{0xFF00});
  const auto along = [=](hn::Vec<Words> upper) HWY_ATTR {
    const auto scaled = hn::BitCast(numbers, hn::MulHigh(upper, gain));
    const auto value = hn::ShiftRight<6>(hn::SaturatedAdd(scaled, offset));
    return hn::BitCast(words, hn::Min(hn::Max(value, hn::Zero(numbers)), most));
  };
  for (std::size_t i = 0; i < count; i += hn::Lanes(d)) {
    const auto values = hn::BitCast(words, hn::Xor(hn::Load(d, row + i), flip));
    const auto result = hn::Or(along(hn::ShiftLeft<8>(values)), hn::ShiftLeft<8>(along(hn::And(values, odd))));
    hn::Store(hn::BitCast(d, result), d, row + i);
  }
}

// Calls work(x) for each vector of pixels. The last vector overlaps the one before it, so that no pixel is left over.
// False if there are too few pixels for one vector.
template <class Work>
HWY_INLINE bool ForVectors(std::size_t pixels, std::size_t step, const Work& work) {
  if (pixels < step) return false;
  for (std::size_t x = 0; x + step <= pixels; x += step) work(x);
  if (pixels % step != 0) work(pixels - step);
  return true;
}

// Calls put(blue, green, red, x) for each half vector of pixels, which begins at pixel x. False if there are too few
// pixels for one vector.
template <class Put>
HWY_INLINE bool ForChannels(const std::uint8_t* from, std::size_t pixels, const Put& put) {
  const Bytes d;
  const Words words;
  const HalfBytes half;
  const std::size_t step = hn::Lanes(d);
  return ForVectors(pixels, step, [=](const std::size_t x) HWY_ATTR {
    hn::Vec<Bytes> blue;
    hn::Vec<Bytes> green;
    hn::Vec<Bytes> red;
    hn::LoadInterleaved3(d, from + x * 3, blue, green, red);
    put(hn::PromoteTo(words, hn::LowerHalf(half, blue)), hn::PromoteTo(words, hn::LowerHalf(half, green)),
        hn::PromoteTo(words, hn::LowerHalf(half, red)), x);
    put(hn::PromoteTo(words, hn::UpperHalf(half, blue)), hn::PromoteTo(words, hn::UpperHalf(half, green)),
        hn::PromoteTo(words, hn::UpperHalf(half, red)), x + step / 2);
  });
}

HWY_INLINE hn::Vec<Words> BinsOf(hn::Vec<Words> blue, hn::Vec<Words> green, hn::Vec<Words> red) {
  const auto bits = [](std::uint16_t mask) HWY_ATTR { return hn::Set(Words(), mask); };
  auto bins = hn::And(hn::ShiftLeft<7>(red), bits(0x7000));
  bins = hn::OrAnd(bins, hn::ShiftLeft<4>(green), bits(0x0E00));
  bins = hn::OrAnd(bins, hn::ShiftLeft<1>(blue), bits(0x01C0));
  bins = hn::OrAnd(bins, hn::ShiftLeft<1>(red), bits(0x0030));
  bins = hn::OrAnd(bins, hn::ShiftRight<1>(green), bits(0x000C));
  return hn::OrAnd(bins, hn::ShiftRight<3>(blue), bits(0x0003));
}

HWY_INLINE hn::Vec<Words> LowBitsOf(hn::Vec<Words> blue, hn::Vec<Words> green, hn::Vec<Words> red) {
  const auto bits = [](std::uint16_t mask) HWY_ATTR { return hn::Set(Words(), mask); };
  const auto lowBits = hn::And(hn::ShiftLeft<6>(red), bits(0x01C0));
  return hn::OrAnd(hn::OrAnd(lowBits, hn::ShiftLeft<3>(green), bits(0x0038)), blue, bits(0x0007));
}

void SplitIntoBins(const std::uint8_t* from, std::uint16_t* bins, std::uint16_t* lowBits, std::size_t pixels) {
  const auto put = [=](auto blue, auto green, auto red, std::size_t x) HWY_ATTR {
    hn::StoreU(BinsOf(blue, green, red), Words(), bins + x);
    hn::StoreU(LowBitsOf(blue, green, red), Words(), lowBits + x);
  };
  if (!ForChannels(from, pixels, put)) scalar::SplitIntoBins(from, bins, lowBits, pixels);
}

void FindBins(const std::uint8_t* from, std::uint16_t* bins, std::size_t pixels) {
  const auto put = [=](auto blue, auto green, auto red, std::size_t x)
                       HWY_ATTR { hn::StoreU(BinsOf(blue, green, red), Words(), bins + x); };
  if (!ForChannels(from, pixels, put)) scalar::FindBins(from, bins, pixels);
}

void ThresholdToBits(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::uint8_t level) {
  const Bytes d;
  const auto least = hn::Set(d, level);
  // Highway stores the first lane in the lowest bit.
  alignas(16) static constexpr std::uint8_t Backwards[16] = {7, 6, 5, 4, 3, 2, 1, 0, 15, 14, 13, 12, 11, 10, 9, 8};
  const auto backwards = hn::LoadDup128(d, Backwards);
  for (std::size_t x = 0; x < pixels; x += hn::Lanes(d)) {
    const auto values = hn::TableLookupBytes(hn::LoadU(d, from + x), backwards);
    hn::StoreMaskBits(d, hn::Eq(hn::Max(values, least), values), to + x / 8);
  }
}

// What each byte of 48, 16 pixels of 3 bytes, is taken from: the first index is the vector of 16 bytes that it comes to
// lie in, the second one the vector that it comes from.
constexpr std::uint8_t None = 0x80;
alignas(16) constexpr std::uint8_t TripleOrder[3][3][16] = {
    {{2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, None},
     {None, None, None, None, None, None, None, None, None, None, None, None, None, None, None, 1},
     {}},
    {{None, 15, None, None, None, None, None, None, None, None, None, None, None, None, None, None},
     {0, None, 4, 3, 2, 7, 6, 5, 10, 9, 8, 13, 12, 11, None, 15},
     {None, None, None, None, None, None, None, None, None, None, None, None, None, None, 0, None}},
    {{},
     {14, None, None, None, None, None, None, None, None, None, None, None, None, None, None, None},
     {None, 3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10, 15, 14, 13}}};
alignas(16) constexpr std::uint8_t QuadrupleOrder[16] = {2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15};

// Exchanges whole vectors of pixels, whose bytes go to store(vector, place), and the rest one by one.
template <typename Store>
void ExchangeVectors(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size,
                     const Store& store) {
  const hn::FixedTag<std::uint8_t, 16> d;
  const std::size_t step = size == 3 ? 16 : 4;
  for (; pixels >= step; pixels -= step, from += step * size, to += step * size) {
    const auto a = hn::LoadU(d, from);
    if (size == 4) {
      store(hn::TableLookupBytes(a, hn::Load(d, QuadrupleOrder)), to);
      continue;
    }
    const auto b = hn::LoadU(d, from + 16);
    const auto c = hn::LoadU(d, from + 32);
    const auto part = [&](auto of, const std::uint8_t* order) {
      return hn::TableLookupBytesOr0(of, hn::Load(d, order));
    };
    store(hn::Or(part(a, TripleOrder[0][0]), part(b, TripleOrder[0][1])), to);
    store(hn::Or(hn::Or(part(a, TripleOrder[1][0]), part(b, TripleOrder[1][1])), part(c, TripleOrder[1][2])), to + 16);
    store(hn::Or(part(b, TripleOrder[2][1]), part(c, TripleOrder[2][2])), to + 32);
  }
  scalar::ExchangeRedAndBlue(from, to, pixels, size);
}

void ExchangeRedAndBlue(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size) {
  const hn::FixedTag<std::uint8_t, 16> d;
  ExchangeVectors(from, to, pixels, size, [&](auto bytes, std::uint8_t* place) { hn::StoreU(bytes, d, place); });
}

void StreamExchanged(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size) {
  const hn::FixedTag<std::uint8_t, 16> d;
  if (reinterpret_cast<std::uintptr_t>(to) % 16 != 0) return ExchangeRedAndBlue(from, to, pixels, size);
  ExchangeVectors(from, to, pixels, size, [&](auto bytes, std::uint8_t* place) { hn::Stream(bytes, d, place); });
}
#endif

}  // namespace kw::kernels::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kw::kernels {

HWY_EXPORT(ApplyLut);
HWY_EXPORT(ApplyLutToColours);
HWY_EXPORT(ApplyLinearMap);
HWY_EXPORT(ThresholdToBits);
HWY_EXPORT(SplitIntoBins);
HWY_EXPORT(FindBins);
HWY_EXPORT(ExchangeRedAndBlue);
HWY_EXPORT(StreamExchanged);

void ApplyLut(std::uint8_t* row, std::size_t count, const Lut& table) {
  HWY_DYNAMIC_DISPATCH(ApplyLut)(row, count, table);
}

void ApplyLutToColours(std::uint8_t* row, std::size_t count, const Lut& table) {
  HWY_DYNAMIC_DISPATCH(ApplyLutToColours)(row, count, table);
}

void ApplyLinearMap(std::uint8_t* row, std::size_t count, const LinearMap& map) {
  HWY_DYNAMIC_DISPATCH(ApplyLinearMap)(row, count, map);
}

void SplitIntoBins(const std::uint8_t* from, std::uint16_t* bins, std::uint16_t* lowBits, std::size_t pixels) {
  HWY_DYNAMIC_DISPATCH(SplitIntoBins)(from, bins, lowBits, pixels);
}

void FindBins(const std::uint8_t* from, std::uint16_t* bins, std::size_t pixels) {
  HWY_DYNAMIC_DISPATCH(FindBins)(from, bins, pixels);
}

void ThresholdToBits(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::uint8_t level) {
  HWY_DYNAMIC_DISPATCH(ThresholdToBits)(from, to, pixels, level);
  // The bits behind the pixels are invisible but would be written to files.
  if (pixels % 8 != 0) to[pixels / 8] = static_cast<std::uint8_t>(to[pixels / 8] & 0xFF00U >> pixels % 8);
}

void ExchangeRedAndBlue(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size) {
  HWY_DYNAMIC_DISPATCH(ExchangeRedAndBlue)(from, to, pixels, size);
}

void StreamExchanged(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size) {
  HWY_DYNAMIC_DISPATCH(StreamExchanged)(from, to, pixels, size);
}

}  // namespace kw::kernels
#endif
