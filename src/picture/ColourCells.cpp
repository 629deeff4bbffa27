#include "picture/ColourCells.h"

#include <utility>

#include "picture/effects/Kernels.h"

namespace kw {
namespace {

// A count of recent pixels with this bit is put away: 8192 times 7 still fits into 16 bits.
constexpr std::uint64_t MostRecent = 8192;

}  // namespace

void ColourCells::Row::Split(const std::uint8_t* row, std::size_t pixels) {
  kernels::SplitColours(row, upper.data(), lower.data(), pixels);
}

ColourCells::ColourCells() : cells(Count), recent(Count), increments(512) {
  for (std::size_t i = 0; i < increments.size(); ++i) {
    const std::uint64_t rest = i;
    increments[i] = 1U | (rest >> 6U) << 16U | (rest >> 3U & 7U) << 32U | (rest & 7U) << 48U;
  }
}

std::size_t ColourCells::NumberOf(Rgb colour) {
  constexpr unsigned drop = 8 - Bits;
  return static_cast<std::size_t>(colour.red >> drop) << (2 * Bits) |
         static_cast<std::size_t>(colour.green >> drop) << Bits | static_cast<std::size_t>(colour.blue >> drop);
}

inline void ColourCells::Add(std::size_t number, unsigned rest) {
  const std::uint64_t sums = recent[number] + increments[rest];
  recent[number] = sums;
  // From here on a channel's sum could outgrow its 16 bits.
  if ((sums & MostRecent) != 0) PutAway(number);
}

void ColourCells::PutAway(std::size_t number) {
  const std::uint64_t sums = std::exchange(recent[number], 0);
  cells[number].count += sums & 0xFFFFU;
  cells[number].red += sums >> 16U & 0xFFFFU;
  cells[number].green += sums >> 32U & 0xFFFFU;
  cells[number].blue += sums >> 48U;
}

void ColourCells::Add(Rgb colour) {
  Add(NumberOf(colour), (colour.red & 7U) << 6U | (colour.green & 7U) << 3U | (colour.blue & 7U));
}

void ColourCells::Add(const Row& row, std::size_t pixels) {
  for (std::size_t i = 0; i < pixels; ++i) Add(row.Numbers()[i], row.Rests()[i]);
}

void ColourCells::Add(const ColourCells& other) {
  for (std::size_t i = 0; i < Count; ++i) {
    cells[i].count += other.cells[i].count;
    cells[i].red += other.cells[i].red;
    cells[i].green += other.cells[i].green;
    cells[i].blue += other.cells[i].blue;
  }
}

void ColourCells::Finish() {
  for (std::size_t i = 0; i < Count; ++i) PutAway(i);
}

}  // namespace kw
