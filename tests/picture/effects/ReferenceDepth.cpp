#include "tests/picture/effects/ReferenceParts.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <vector>

namespace kw::reference {
namespace {

// Place of a colour's cell along red, green and blue, 0 to 31 each.
using Place = std::array<std::int32_t, 3>;

struct Cell {
  Place place{};
  std::int64_t count = 0;
  std::array<std::int64_t, 3> sums{};  // of red, green and blue
};

struct Box {
  std::vector<Cell> cells;

  std::int64_t Count() const {
    std::int64_t count = 0;
    for (const Cell& cell : cells) count += cell.count;
    return count;
  }
  std::int32_t Width(std::size_t channel) const {
    std::int32_t least = 31;
    std::int32_t greatest = 0;
    for (const Cell& cell : cells) {
      least = std::min(least, cell.place[channel]);
      greatest = std::max(greatest, cell.place[channel]);
    }
    return greatest - least;
  }
  std::size_t WidestChannel() const {
    std::size_t widest = 0;
    for (const std::size_t channel : {std::size_t{1}, std::size_t{2}}) {
      if (Width(channel) > Width(widest)) widest = channel;
    }
    return widest;
  }
  std::int64_t Weight() const { return Count() * Width(WidestChannel()); }
};

std::array<std::int32_t, 3> ColourOf(const Pixel& p) { return {p[2], p[1], p[0]}; }
Place PlaceOf(const Pixel& p) { return {p[2] / 8, p[1] / 8, p[0] / 8}; }

// The half of fewer pixels and the rest, by the place along the box's widest channel.
std::array<Box, 2> Halves(Box box) {
  const std::size_t channel = box.WidestChannel();
  std::ranges::sort(box.cells, [channel](const Cell& a, const Cell& b) {
    return a.place[channel] != b.place[channel] ? a.place[channel] < b.place[channel] : a.place < b.place;
  });
  const std::int64_t half = box.Count() / 2;
  std::array<Box, 2> halves;
  for (const Cell& cell : box.cells) {
    const bool isFirst = halves[0].cells.empty();
    const bool isLast = halves[0].cells.size() + 1 == box.cells.size();
    const bool fits = halves[0].Count() + cell.count <= half;
    halves[isFirst || (fits && !isLast && halves[1].cells.empty()) ? 0 : 1].cells.push_back(cell);
  }
  return halves;
}

// Of a large picture, every fourth run of a row is counted.
bool IsCounted(const Plain& plain, std::size_t pixel) {
  if (plain.pixels.size() < 1048576) return true;
  const auto width = static_cast<std::size_t>(plain.width);
  return pixel % width / 64 % 4 == std::array<std::size_t, 4>{0, 2, 1, 3}[pixel / width % 4];
}

std::vector<Box> MedianCut(const Plain& plain, std::size_t entries) {
  std::map<Place, Cell> cells;
  for (std::size_t i = 0; i < plain.pixels.size(); ++i) {
    if (!IsCounted(plain, i)) continue;
    const auto colour = ColourOf(plain.pixels[i]);
    const Place place = PlaceOf(plain.pixels[i]);
    Cell& cell = cells[place];
    cell.place = place;
    ++cell.count;
    for (std::size_t channel = 0; channel < 3; ++channel) cell.sums[channel] += colour[channel];
  }
  std::vector<Box> boxes(1);
  for (const auto& [place, cell] : cells) boxes[0].cells.push_back(cell);
  while (boxes.size() < entries) {
    std::size_t heaviest = 0;
    for (std::size_t i = 1; i < boxes.size(); ++i) {
      if (boxes[i].Weight() > boxes[heaviest].Weight()) heaviest = i;
    }
    if (boxes[heaviest].Weight() == 0) break;
    const auto halves = Halves(boxes[heaviest]);
    boxes[heaviest] = halves[0];
    boxes.push_back(halves[1]);
  }
  return boxes;
}

// What is shown for a colour's cell.
struct Shown {
  std::int32_t distance = 1000;  // of the cell that it was made for
  Pixel colour{};
};

// Gives the other cells what is shown for the nearest of those, along one channel after the other.
void FillCells(std::map<Place, Shown>& cells) {
  for (std::size_t channel = 0; channel < 3; ++channel) {
    for (const std::int32_t direction : {1, -1}) {
      for (std::int32_t to = 1; to < 32; ++to) {
        for (std::int32_t other = 0; other < 32 * 32; ++other) {
          Place place{};
          place[channel] = direction > 0 ? to : 31 - to;
          place[(channel + 1) % 3] = other / 32;
          place[(channel + 2) % 3] = other % 32;
          Place before = place;
          before[channel] -= direction;
          const Shown from = cells[before];
          Shown& own = cells[place];
          if (from.distance + 1 < own.distance) own = {from.distance + 1, from.colour};
        }
      }
    }
  }
}

Plain WithPalette(Plain plain, int bitsPerPixel) {
  const std::size_t entries = std::size_t{1} << static_cast<unsigned>(bitsPerPixel);
  plain.bitsPerPixel = bitsPerPixel;
  std::set<Pixel> colours(plain.pixels.begin(), plain.pixels.end());
  if (colours.size() <= entries) return plain;
  if (bitsPerPixel == 1) {
    for (Pixel& p : plain.pixels) p = Grey(Luma(p) > 128 ? 255 : 0);
    return plain;
  }
  std::map<Place, Shown> shown;
  for (const Box& box : MedianCut(plain, entries)) {
    Pixel mean{0, 0, 0, 255};
    const std::int64_t count = std::max<std::int64_t>(1, box.Count());
    for (std::size_t channel = 0; channel < 3; ++channel) {
      std::int64_t sum = 0;
      for (const Cell& cell : box.cells) sum += cell.sums[channel];
      mean[2 - channel] = static_cast<std::int32_t>((sum + count / 2) / count);
    }
    for (const Cell& cell : box.cells) shown[cell.place] = {0, mean};
  }
  if (!std::ranges::all_of(plain.pixels, [&](const Pixel& p) { return shown.contains(PlaceOf(p)); })) FillCells(shown);
  for (Pixel& p : plain.pixels) p = shown.at(PlaceOf(p)).colour;
  return plain;
}

}  // namespace

Plain IncreaseBpp(const Bitmap& picture, Values /*values*/) {
  Plain plain = Read(picture);
  plain.bitsPerPixel = plain.bitsPerPixel == 1 ? 4 : plain.bitsPerPixel == 4 ? 8 : plain.bitsPerPixel == 8 ? 24 : 32;
  return plain;
}

Plain DecreaseBpp(const Bitmap& picture, Values /*values*/) {
  if (picture.BitsPerPixel() == 1) return Read(picture);
  Plain plain = OnPaper(picture);
  if (picture.BitsPerPixel() == 32) {
    plain.bitsPerPixel = 24;
    for (Pixel& p : plain.pixels) p[3] = 255;
    return plain;
  }
  return WithPalette(plain, picture.BitsPerPixel() == 24 ? 8 : picture.BitsPerPixel() == 8 ? 4 : 1);
}

}  // namespace kw::reference
