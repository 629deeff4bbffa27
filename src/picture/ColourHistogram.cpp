#include "picture/ColourHistogram.h"

#include <array>
#include <utility>

#include "picture/effects/Kernels.h"

namespace kw {
namespace {

// A packed count is flushed when it reaches this bit: 8192 times 7 still fits into 16 bits.
constexpr std::uint64_t FlushBit = 8192;

// What a pixel adds to a packed count, by its low bits.
constexpr auto Increments = [] {
  std::array<std::uint64_t, 512> increments{};
  for (std::size_t i = 0; i < increments.size(); ++i) {
    const std::uint64_t lowBits = i;
    increments[i] = 1U | (lowBits >> 6U) << 16U | (lowBits >> 3U & 7U) << 32U | (lowBits & 7U) << 48U;
  }
  return increments;
}();

}  // namespace

void ColourHistogram::BinnedRow::Split(const std::uint8_t* row, std::size_t pixels) {
  kernels::SplitIntoBins(row, bins.data(), lowBits.data(), pixels);
}

std::size_t ColourHistogram::BinOf(Rgb colour) {
  constexpr unsigned drop = 8 - Bits;
  const unsigned rgb555 = static_cast<unsigned>(colour.red) >> drop << (2 * Bits) |
                          static_cast<unsigned>(colour.green) >> drop << Bits |
                          static_cast<unsigned>(colour.blue) >> drop;
  return BinOf(static_cast<std::uint16_t>(rgb555));
}

void ColourHistogram::FindBins(const std::uint8_t* row, std::uint16_t* bins, std::size_t pixels) {
  kernels::FindBins(row, bins, pixels);
}

void ColourHistogram::Add(Rgb colour, std::uint64_t times) {
  Bin& bin = bins[BinOf(colour)];
  bin.count += times;
  bin.red += times * (colour.red & 7U);
  bin.green += times * (colour.green & 7U);
  bin.blue += times * (colour.blue & 7U);
}

void ColourHistogram::AddSums(std::size_t bin, std::uint64_t packedSums) {
  bins[bin].count += packedSums & 0xFFFFU;
  bins[bin].red += packedSums >> 16U & 0xFFFFU;
  bins[bin].green += packedSums >> 32U & 0xFFFFU;
  bins[bin].blue += packedSums >> 48U;
}

ColourHistogram::Counter::Counter(ColourHistogram& wholeHistogram) : whole(wholeHistogram), packed(Count) {}

void ColourHistogram::Counter::Flush(std::size_t bin) {
  const std::lock_guard lock(whole.mutex);
  whole.AddSums(bin, std::exchange(packed[bin], 0));
}

void ColourHistogram::Counter::Add(Rgb colour) {
  const std::size_t bin = BinOf(colour);
  const unsigned lowBits = (colour.red & 7U) << 6U | (colour.green & 7U) << 3U | (colour.blue & 7U);
  packed[bin] += Increments[lowBits];
  if ((packed[bin] & FlushBit) != 0) Flush(bin);
}

void ColourHistogram::Counter::Add(const BinnedRow& row, std::size_t pixels) {
  std::uint64_t* const counts = packed.data();
  const std::uint16_t* const binOfPixel = row.Bins();
  const std::uint16_t* const lowBitsOfPixel = row.LowBits();
  for (std::size_t i = 0; i < pixels; ++i) {
    std::uint64_t& count = counts[binOfPixel[i]];
    const std::uint64_t sums = count + Increments[lowBitsOfPixel[i]];
    count = sums;
    if ((sums & FlushBit) != 0) Flush(binOfPixel[i]);
  }
}

void ColourHistogram::Counter::Finish() {
  const std::lock_guard lock(whole.mutex);
  for (std::size_t i = 0; i < Count; ++i) {
    if (packed[i] != 0) whole.AddSums(i, std::exchange(packed[i], 0));
  }
}

}  // namespace kw
