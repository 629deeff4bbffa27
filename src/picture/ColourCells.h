#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

#include "components/base/Bitmap.h"

namespace kw {

// How often colours occur, in cells of 5 bits a channel. What is summed are the 3 bits of each channel that a cell does
// not say. Cells of alike colours lie together, which fits a processor's caches: a cell's number has the 3 upper bits
// of red, of green and of blue, and then the 2 next bits of each.
class ColourCells {
public:
  static constexpr unsigned Bits = 5;
  static constexpr std::size_t Count = std::size_t{1} << (3 * Bits);

  struct Cell {
    std::uint64_t count = 0;
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;
  };

  // The cells' numbers of a row of pixels of 24 bits and, apart, what they leave out.
  class Row {
  public:
    explicit Row(std::size_t mostPixels) : upper(mostPixels), lower(mostPixels) {}
    void Split(const std::uint8_t* row, std::size_t pixels);
    const std::uint16_t* Numbers() const { return upper.data(); }
    const std::uint16_t* Rests() const { return lower.data(); }

  private:
    std::vector<std::uint16_t> upper;
    std::vector<std::uint16_t> lower;
  };

  // What one thread counts: it adds to the cells of all threads when it has to and, the rest, when it is told to.
  class Counter {
  public:
    // The sum outlives the counter.
    explicit Counter(ColourCells& sumOfAll);
    void Add(Rgb colour);
    // The first `pixels` of a row that was split.
    void Add(const Row& row, std::size_t pixels);
    // Only after this do the cells tell all that was added here.
    void Finish();

  private:
    [[gnu::noinline]] void PutAway(std::size_t number);

    ColourCells& sum;
    // Count, red, green and blue of a cell in 16 bits each, so that one addition counts a pixel.
    std::vector<std::uint64_t> recent;
  };

  ColourCells() : cells(Count) {}

  static std::size_t NumberOf(Rgb colour);
  // The same for a cell's place along red, green and blue, in 5 bits each, red in the upper ones.
  static constexpr std::size_t NumberOf(std::uint16_t place) {
    const unsigned bits = place;
    const unsigned upper = (bits & 0x7000U) | (bits & 0x0380U) << 2U | (bits & 0x001CU) << 4U;
    const unsigned lower = (bits & 0x0C00U) >> 6U | (bits & 0x0060U) >> 3U | (bits & 0x0003U);
    return upper | lower;
  }

  const Cell& operator[](std::size_t number) const { return cells[number]; }

private:
  void Take(std::size_t number, std::uint64_t sums);

  std::vector<Cell> cells;
  std::mutex mutex;
};

}  // namespace kw
