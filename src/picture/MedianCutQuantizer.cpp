#include "picture/MedianCutQuantizer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace kw {
namespace {

constexpr unsigned BinBits = ColourHistogram::Bits;

std::uint32_t KeyOf(Rgb colour) {
  return static_cast<std::uint32_t>(colour.red) << 16U | static_cast<std::uint32_t>(colour.green) << 8U | colour.blue;
}

// One channel (0 red, 1 green, 2 blue) of a colour of 5 bits a channel, red in the high bits.
unsigned ChannelOf(std::uint16_t rgb555, unsigned channel) {
  return static_cast<unsigned>(rgb555) >> ((2 - channel) * BinBits) & ((1U << BinBits) - 1);
}

// A box of colours: a range of the list of used bins.
struct Box {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::uint64_t count = 0;
  unsigned widestChannel = 0;
  unsigned width = 0;

  // The box of greatest weight is cut next.
  std::uint64_t Weight() const { return count * width; }
};

}  // namespace

MedianCutQuantizer::MedianCutQuantizer(std::size_t mostEntries)
    : most(mostEntries), indexOfBin(ColourHistogram::Count) {}

void MedianCutQuantizer::Count(Rgb colour) {
  counter.Add(colour);
  See(colour);
}

void MedianCutQuantizer::Count(Rgb colour, std::uint64_t times) {
  histogram.Add(colour, times);
  See(colour);
}

void MedianCutQuantizer::See(Rgb colour) {
  if (!exact) return;
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

void MedianCutQuantizer::Quantize() {
  if (!exact) Cut();
}

void MedianCutQuantizer::Cut() {
  std::vector<std::uint16_t> used;
  counter.Finish();
  const auto at = [&](std::uint16_t rgb555) -> const ColourHistogram::Bin& {
    return histogram[ColourHistogram::BinOf(rgb555)];
  };
  for (std::size_t i = 0; i < ColourHistogram::Count; ++i) {
    if (at(static_cast<std::uint16_t>(i)).count != 0) used.push_back(static_cast<std::uint16_t>(i));
  }
  const auto measured = [&](std::size_t begin, std::size_t end) {
    Box box{begin, end, 0, 0, 0};
    for (unsigned channel = 0; channel < 3; ++channel) {
      unsigned least = 1U << BinBits;
      unsigned greatest = 0;
      for (std::size_t i = begin; i < end; ++i) {
        least = std::min(least, ChannelOf(used[i], channel));
        greatest = std::max(greatest, ChannelOf(used[i], channel));
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
    // Sorted by the channel's value, then by all channels; one number holds both.
    std::vector<std::uint32_t> order;
    for (std::size_t i = box.begin; i < box.end; ++i) {
      order.push_back(ChannelOf(used[i], box.widestChannel) << 16U | used[i]);
    }
    std::ranges::sort(order);
    for (std::size_t i = 0; i < order.size(); ++i) used[box.begin + i] = static_cast<std::uint16_t>(order[i]);
    // The cut leaves about half of the pixels, and at least one bin, on either side.
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
      indexOfBin[ColourHistogram::BinOf(used[i])] = static_cast<std::uint8_t>(palette.size());
      const ColourHistogram::Bin& bin = at(used[i]);
      const std::uint64_t lowBits[3] = {bin.red, bin.green, bin.blue};
      for (unsigned channel = 0; channel < 3; ++channel) {
        sums[channel] += (bin.count * ChannelOf(used[i], channel) << (8 - BinBits)) + lowBits[channel];
      }
    }
    const auto mean = [&](unsigned channel) {
      return static_cast<std::uint8_t>((sums[channel] + box.count / 2) / box.count);
    };
    palette.push_back({mean(0), mean(1), mean(2)});
  }
}

// The distance of bins is the sum of those along the channels, so that it can be found along one channel after the
// other. It is quick along a channel whose neighbours lie far apart, because many lines are gone through at once.
void MedianCutQuantizer::FillUncounted() {
  constexpr std::size_t count = ColourHistogram::Count;
  constexpr std::size_t side = std::size_t{1} << BinBits;
  constexpr std::size_t plane = side * side;
  constexpr int far = 3 * side;
  constexpr int unit = 256;
  const auto binAt = [](std::size_t rgb555) { return ColourHistogram::BinOf(static_cast<std::uint16_t>(rgb555)); };
  // The distance of the nearest bin in units, and its entry.
  std::vector<std::int16_t> nearest(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t bin = binAt(i);
    nearest[i] = static_cast<std::int16_t>(histogram[bin].count == 0 ? far * unit : indexOfBin[bin]);
  }
  const auto take = [&](std::size_t to, std::size_t from, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
      const auto own = nearest[to + i];
      const auto other = static_cast<std::int16_t>(nearest[from + i] + unit);
      nearest[to + i] = other < static_cast<std::int16_t>(own & ~(unit - 1)) ? other : own;
    }
  };
  const auto takeFromNeighbours = [&](std::size_t step) {
    for (std::size_t first = 0; first < count; first += step * side) {
      for (std::size_t i = 1; i < side; ++i) take(first + i * step, first + (i - 1) * step, step);
      for (std::size_t i = side - 1; i-- > 0;) take(first + i * step, first + (i + 1) * step, step);
    }
  };
  takeFromNeighbours(plane);
  takeFromNeighbours(side);
  // Those along blue lie side by side: they are moved apart.
  std::vector<std::int16_t> byBlue(count);
  for (std::size_t blue = 0; blue < side; ++blue) {
    for (std::size_t i = 0; i < plane; ++i) byBlue[blue * plane + i] = nearest[i * side + blue];
  }
  nearest.swap(byBlue);
  takeFromNeighbours(plane);
  for (std::size_t i = 0; i < plane; ++i) {
    for (std::size_t blue = 0; blue < side; ++blue) {
      indexOfBin[binAt(i * side + blue)] = static_cast<std::uint8_t>(nearest[blue * plane + i]);
    }
  }
}

std::uint8_t MedianCutQuantizer::IndexOf(Rgb colour) const {
  return exact ? exactIndex.at(KeyOf(colour)) : indexOfBin[ColourHistogram::BinOf(colour)];
}

void MedianCutQuantizer::IndexRow(const std::uint16_t* bins, std::uint8_t* to, std::size_t pixels) const {
  const std::uint8_t* const indices = indexOfBin.data();
  // Four entries at a time: the processor writes one word sooner than four bytes.
  constexpr std::size_t together = 4;
  std::size_t x = 0;
  for (; x + together <= pixels; x += together) {
    const std::array<std::uint8_t, together> entries = {indices[bins[x]], indices[bins[x + 1]], indices[bins[x + 2]],
                                                        indices[bins[x + 3]]};
    const auto word = std::bit_cast<std::uint32_t>(entries);
    std::memcpy(to + x, &word, sizeof word);
  }
  for (; x < pixels; ++x) to[x] = indices[bins[x]];
}

}  // namespace kw
