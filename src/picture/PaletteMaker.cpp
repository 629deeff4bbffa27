#include "picture/PaletteMaker.h"

#include <algorithm>
#include <array>

namespace kw {
namespace {

constexpr unsigned CellBits = 5;
constexpr std::size_t CellCount = std::size_t{1} << (3 * CellBits);

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

PaletteMaker::PaletteMaker(std::size_t mostEntries) : most(mostEntries), cells(CellCount) {}

void PaletteMaker::Count(Rgb colour) {
  Cell& cell = cells[CellOf(colour)];
  ++cell.count;
  cell.red += colour.red;
  cell.green += colour.green;
  cell.blue += colour.blue;
  const std::uint32_t key = KeyOf(colour);
  if (!exact || key == lastKey) return;
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
  for (std::size_t i = 0; i < cells.size(); ++i) {
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
    while (middle + 1 < box.end && below + cells[used[middle]].count <= box.count / 2)
      below += cells[used[middle++]].count;
    *widest = measured(box.begin, middle);
    boxes.push_back(measured(middle, box.end));
  }

  palette.clear();
  for (const Box& box : boxes) {
    Cell sum;
    for (std::size_t i = box.begin; i < box.end; ++i) {
      Cell& cell = cells[used[i]];
      cell.index = static_cast<std::uint8_t>(palette.size());
      sum.red += cell.red;
      sum.green += cell.green;
      sum.blue += cell.blue;
    }
    const std::uint64_t count = std::max<std::uint64_t>(box.count, 1);
    const auto mean = [count](std::uint64_t total) { return static_cast<std::uint8_t>((total + count / 2) / count); };
    palette.push_back({mean(sum.red), mean(sum.green), mean(sum.blue)});
  }
}

std::uint8_t PaletteMaker::IndexOf(Rgb colour) const {
  return exact ? exactIndex.at(KeyOf(colour)) : cells[CellOf(colour)].index;
}

}  // namespace kw
