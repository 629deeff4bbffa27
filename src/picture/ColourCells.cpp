#include "picture/ColourCells.h"

#include <array>
#include <utility>

#include "picture/effects/Kernels.h"

namespace kw {
namespace {

// A count of recent pixels with this bit is put away: 8192 times 7 still fits into 16 bits.
constexpr std::uint64_t MostRecent = 8192;

// What a pixel adds to the recent ones, by its lower bits.
constexpr auto Increments = [] {
  std::array<std::uint64_t, 512> increments{};
  for (std::size_t i = 0; i < increments.size(); ++i) {
    const std::uint64_t rest = i;
    increments[i] = 1U | (rest >> 6U) << 16U | (rest >> 3U & 7U) << 32U | (rest & 7U) << 48U;
  }
  return increments;
}();

}  // namespace

void ColourCells::Row::Split(const std::uint8_t* row, std::size_t pixels) {
  kernels::SplitColours(row, upper.data(), lower.data(), pixels);
}

std::size_t ColourCells::NumberOf(Rgb colour) {
  constexpr unsigned drop = 8 - Bits;
  const unsigned place = static_cast<unsigned>(colour.red) >> drop << (2 * Bits) |
                         static_cast<unsigned>(colour.green) >> drop << Bits |
                         static_cast<unsigned>(colour.blue) >> drop;
  return NumberOf(static_cast<std::uint16_t>(place));
}

void ColourCells::Take(std::size_t number, std::uint64_t sums) {
  cells[number].count += sums & 0xFFFFU;
  cells[number].red += sums >> 16U & 0xFFFFU;
  cells[number].green += sums >> 32U & 0xFFFFU;
  cells[number].blue += sums >> 48U;
}

ColourCells::Counter::Counter(ColourCells& sumOfAll) : sum(sumOfAll), recent(Count) {}

void ColourCells::Counter::PutAway(std::size_t number) {
  const std::lock_guard lock(sum.mutex);
  sum.Take(number, std::exchange(recent[number], 0));
}

void ColourCells::Counter::Add(Rgb colour) {
  const std::size_t number = NumberOf(colour);
  const unsigned rest = (colour.red & 7U) << 6U | (colour.green & 7U) << 3U | (colour.blue & 7U);
  recent[number] += Increments[rest];
  if ((recent[number] & MostRecent) != 0) PutAway(number);
}

void ColourCells::Counter::Add(const Row& row, std::size_t pixels) {
  std::uint64_t* const counts = recent.data();
  const std::uint16_t* const numbers = row.Numbers();
  const std::uint16_t* const rests = row.Rests();
  for (std::size_t i = 0; i < pixels; ++i) {
    std::uint64_t& count = counts[numbers[i]];
    const std::uint64_t sums = count + Increments[rests[i]];
    count = sums;
    // From here on a channel's sum could outgrow its 16 bits.
    if ((sums & MostRecent) != 0) PutAway(numbers[i]);
  }
}

void ColourCells::Counter::Finish() {
  const std::lock_guard lock(sum.mutex);
  for (std::size_t i = 0; i < Count; ++i) {
    if (recent[i] != 0) sum.Take(i, std::exchange(recent[i], 0));
  }
}

}  // namespace kw
