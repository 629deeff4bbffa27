#include "picture/PaletteMaker.h"

#include <algorithm>

namespace kw {
namespace {

constexpr unsigned CellBits = ColourCells::Bits;

std::uint32_t KeyOf(Rgb colour) {
  return static_cast<std::uint32_t>(colour.red) << 16U | static_cast<std::uint32_t>(colour.green) << 8U | colour.blue;
}

// Place of a cell along one channel (0 red, 1 green, 2 blue); a cell is known here by its places, red in the upper
// bits.
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

PaletteMaker::PaletteMaker(std::size_t mostEntries) : most(mostEntries), cellIndex(ColourCells::Count) {}

void PaletteMaker::Count(Rgb colour) {
  counter.Add(colour);
  if (exact) CountExactly(colour);
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
  counter.Finish();
  const auto at = [&](std::uint16_t cell) -> const ColourCells::Cell& { return cells[ColourCells::NumberOf(cell)]; };
  for (std::size_t i = 0; i < ColourCells::Count; ++i) {
    if (at(static_cast<std::uint16_t>(i)).count != 0) used.push_back(static_cast<std::uint16_t>(i));
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
    for (std::size_t i = begin; i < end; ++i) box.count += at(used[i]).count;
    return box;
  };

  std::vector<Box> boxes{measured(0, used.size())};
  while (boxes.size() < most) {
    const auto widest = std::ranges::max_element(boxes, {}, &Box::Weight);
    if (widest->width == 0) break;
    const Box box = *widest;
    // By place, and cells of one place by number, as one number each.
    std::vector<std::uint32_t> order;
    for (std::size_t i = box.begin; i < box.end; ++i) {
      order.push_back(PlaceOf(used[i], box.widestChannel) << 16U | used[i]);
    }
    std::ranges::sort(order);
    for (std::size_t i = 0; i < order.size(); ++i) used[box.begin + i] = static_cast<std::uint16_t>(order[i]);
    // The cut lies where half of the pixels are on either side, with at least one cell on each.
    std::size_t middle = box.begin + 1;
    std::uint64_t below = at(used[box.begin]).count;
    while (middle + 1 < box.end && below + at(used[middle]).count <= box.count / 2) {
      below += at(used[middle++]).count;
    }
    *widest = measured(box.begin, middle);
    boxes.push_back(measured(middle, box.end));
  }

  palette.clear();
  for (const Box& box : boxes) {
    std::uint64_t sums[3] = {};
    for (std::size_t i = box.begin; i < box.end; ++i) {
      cellIndex[ColourCells::NumberOf(used[i])] = static_cast<std::uint8_t>(palette.size());
      const ColourCells::Cell& cell = at(used[i]);
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
  return exact ? exactIndex.at(KeyOf(colour)) : cellIndex[ColourCells::NumberOf(colour)];
}

void PaletteMaker::IndexRow(const ColourCells::Row& row, std::uint8_t* to, std::size_t pixels) const {
  const std::uint8_t* const indices = cellIndex.data();
  const std::uint16_t* const of = row.Numbers();
  for (std::size_t x = 0; x < pixels; ++x) to[x] = indices[of[x]];
}

}  // namespace kw
