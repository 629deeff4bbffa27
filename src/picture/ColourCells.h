#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "components/Bitmap.h"

namespace kw {

// How often colours occur, in cells of 5 bits a channel: a cell's number has red in its upper bits and blue in its
// lower ones. What is summed are the 3 bits of each channel that the number does not say.
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

  ColourCells();

  static std::size_t NumberOf(Rgb colour);

  void Add(Rgb colour);
  // The first `pixels` of a row that was split.
  void Add(const Row& row, std::size_t pixels);
  void Add(const ColourCells& other);
  // Only after this do the cells tell all that was added.
  void Finish();
  const Cell& operator[](std::size_t number) const { return cells[number]; }

private:
  void Add(std::size_t number, unsigned rest);
  void PutAway(std::size_t number);

  std::vector<Cell> cells;
  // What is not yet in `cells`: count, red, green and blue in 16 bits each, so that one addition counts a pixel.
  std::vector<std::uint64_t> recent;
  // What a pixel adds there, by its lower bits.
  std::vector<std::uint64_t> increments;
};

}  // namespace kw
