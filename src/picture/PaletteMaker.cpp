#include "picture/PaletteMaker.h"

#include <algorithm>
#include <array>
#include <utility>

#include "picture/effects/Kernels.h"

namespace kw {
namespace {

constexpr unsigned CellBits = 5;
constexpr std::size_t CellCount = std::size_t{1} << (3 * CellBits);
// A count of recent pixels with this bit is put away: 8192 times 7 still fits into 16 bits.
constexpr std::uint64_t MostRecent = 8192;

std::uint32_t KeyOf(Rgb colour) {
  return static_cast<std::uint32_t>(colour.red) << 16U | static_cast<std::uint32_t>(colour.green) << 8U | colour.blue;
}

std::size_t CellOf(Rgb colour) {
  constexpr unsigned drop = 8 - CellBits;
  return static_cast<std::size_t>(colour.red >> drop) << (2 * CellBits) |
         static_cast<std::size_t>(colour.green >> drop) << CellBits | static_cast<std::size_t>(colour.blue >> drop);
}

// Place of a cell along one channel (0 red, 1 green, 2 blue).
unsigned PlaceOf(std::uint16_t cell, unsigned channel) {
  return static_cast<unsigned>(cell) >> ((2 - channel) * CellBits) & ((1U << CellBits) - 1);
}

// A box of colours: a range of the list of used cells.
struct Box {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::uint64_t count = 0;
  unsigned widestChannel = 0;
  unsigned width = 0;

  // Boxes with many pixels over a wide range are cut first.
  std::uint64_t Weight() const { return count * width; }
};

}  // namespace

PaletteMaker::PaletteMaker(std::size_t mostEntries)
    : most(mostEntries), cells(CellCount), recent(CellCount), increments(512), cellIndex(CellCount) {
  for (std::size_t i = 0; i < increments.size(); ++i) {
    const std::uint64_t rest = i;
    increments[i] = 1U | (rest >> 6U) << 16U | (rest >> 3U & 7U) << 32U | (rest & 7U) << 48U;
  }
}

inline void PaletteMaker::Add(std::size_t cell, unsigned rest) {
  const std::uint64_t sums = recent[cell] + increments[rest];
  recent[cell] = sums;
  // From here on a channel's sum could outgrow its 16 bits.
  if ((sums & MostRecent) != 0) Flush(cell);
}

void PaletteMaker::Flush(std::size_t cell) {
  const std::uint64_t sums = std::exchange(recent[cell], 0);
  cells[cell].count += sums & 0xFFFFU;
  cells[cell].red += sums >> 16U & 0xFFFFU;
  cells[cell].green += sums >> 32U & 0xFFFFU;
  cells[cell].blue += sums >> 48U;
}

void PaletteMaker::Count(Rgb colour) {
  Add(CellOf(colour), (colour.red & 7U) << 6U | (colour.green & 7U) << 3U | (colour.blue & 7U));
  if (exact) CountExactly(colour);
}

void PaletteMaker::CountRow(const std::uint8_t* row, std::size_t pixels) {
  std::size_t x = 0;
  for (; x < pixels && exact; ++x) Count({row[x * 3 + 2], row[x * 3 + 1], row[x * 3]});
  const std::size_t rest = pixels - x;
  upper.resize(std::max(upper.size(), rest));
  lower.resize(std::max(lower.size(), rest));
  kernels::SplitColours(row + x * 3, upper.data(), lower.data(), rest);
  for (std::size_t i = 0; i < rest; ++i) Add(upper[i], lower[i]);
}

void PaletteMaker::CountExactly(Rgb colour) {
  const std::uint32_t key = KeyOf(colour);
  if (key == lastKey) return;
  lastKey = key;
  if (exactIndex.contains(key)) return;
  if (palette.size() == most) {
    exact = false;
    return;
  }
  exactIndex.emplace(key, static_cast<std::uint8_t>(palette.size()));
  palette.push_back(colour);
}

void PaletteMaker::Make() {
  if (!exact) Cut();
}

void PaletteMaker::Cut() {
  std::vector<std::uint16_t> used;
  for (std::size_t i = 0; i < CellCount; ++i) {
    Flush(i);
    if (cells[i].count != 0) used.push_back(static_cast<std::uint16_t>(i));
  }
  const auto measured = [&](std::size_t begin, std::size_t end) {
    Box box{begin, end, 0, 0, 0};
    for (unsigned channel = 0; channel < 3; ++channel) {
      unsigned least = 1U << CellBits;
      unsigned greatest = 0;
      for (std::size_t i = begin; i < end; ++i) {
        least = std::min(least, PlaceOf(used[i], channel));
        greatest = std::max(greatest, PlaceOf(used[i], channel));
      }
      if (greatest - least > box.width) {
        box.width = greatest - least;
        box.widestChannel = channel;
      }
    }
    for (std::size_t i = begin; i < end; ++i) box.count += cells[used[i]].count;
    return box;
  };

  std::vector<Box> boxes{measured(0, used.size())};
  while (boxes.size() < most) {
    const auto widest = std::ranges::max_element(boxes, {}, &Box::Weight);
    if (widest->width == 0) break;
    const Box box = *widest;
    std::sort(used.begin() + static_cast<std::ptrdiff_t>(box.begin),
              used.begin() + static_cast<std::ptrdiff_t>(box.end), [&](std::uint16_t a, std::uint16_t b) {
                const unsigned placeA = PlaceOf(a, box.widestChannel);
                const unsigned placeB = PlaceOf(b, box.widestChannel);
                return placeA != placeB ? placeA < placeB : a < b;
              });
    // The cut lies where half of the pixels are on either side, with at least one cell on each.
    std::size_t middle = box.begin + 1;
    std::uint64_t below = cells[used[box.begin]].count;
    while (middle + 1 < box.end && below + cells[used[middle]].count <= box.count / 2) {
      below += cells[used[middle++]].count;
    }
    *widest = measured(box.begin, middle);
    boxes.push_back(measured(middle, box.end));
  }

  palette.clear();
  for (const Box& box : boxes) {
    std::uint64_t sums[3] = {};
    for (std::size_t i = box.begin; i < box.end; ++i) {
      cellIndex[used[i]] = static_cast<std::uint8_t>(palette.size());
      const Cell& cell = cells[used[i]];
      const std::uint64_t rests[3] = {cell.red, cell.green, cell.blue};
      for (unsigned channel = 0; channel < 3; ++channel) {
        sums[channel] += (cell.count * PlaceOf(used[i], channel) << (8 - CellBits)) + rests[channel];
      }
    }
    const auto mean = [&](unsigned channel) {
      return static_cast<std::uint8_t>((sums[channel] + box.count / 2) / box.count);
    };
    palette.push_back({mean(0), mean(1), mean(2)});
  }
}

std::uint8_t PaletteMaker::IndexOf(Rgb colour) const {
  return exact ? exactIndex.at(KeyOf(colour)) : cellIndex[CellOf(colour)];
}

void PaletteMaker::IndexRow(const std::uint8_t* row, std::uint8_t* to, std::size_t pixels) {
  if (!exact) {
    upper.resize(std::max(upper.size(), pixels));
    lower.resize(std::max(lower.size(), pixels));
    kernels::SplitColours(row, upper.data(), lower.data(), pixels);
    const std::uint8_t* const indices = cellIndex.data();
    const std::uint16_t* const of = upper.data();
    for (std::size_t x = 0; x < pixels; ++x) to[x] = indices[of[x]];
    return;
  }
  std::uint32_t key = 0xFFFFFFFF;
  std::uint8_t index = 0;
  for (std::size_t x = 0; x < pixels; ++x) {
    const Rgb colour{row[x * 3 + 2], row[x * 3 + 1], row[x * 3]};
    if (KeyOf(colour) != key) {
      key = KeyOf(colour);
      index = exactIndex.at(key);
    }
    to[x] = index;
  }
}

}  // namespace kw
