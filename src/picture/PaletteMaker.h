#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "components/Bitmap.h"

namespace kw {

// Chooses the palette of a picture: its own colours where they are few enough, else a median cut of them.
// Order of use: Count() each pixel, Make() once, then Palette() and IndexOf().
class PaletteMaker {
public:
  // `most` is 2 to 256.
  explicit PaletteMaker(std::size_t most);

  void Count(Rgb colour);
  // The same for a row of pixels of 24 bits.
  void CountRow(const std::uint8_t* row, std::size_t pixels);
  void Make();

  // True where every counted colour is in the palette.
  bool IsExact() const { return exact; }
  const std::vector<Rgb>& Palette() const { return palette; }
  // The entry for a colour that was counted.
  std::uint8_t IndexOf(Rgb colour) const;
  // The same for a row of pixels of 24 bits.
  void IndexRow(const std::uint8_t* row, std::uint8_t* to, std::size_t pixels) const;

private:
  // Colours are counted in cells of 5 bits a channel. Halves of a number each hold one sum, so that two additions count
  // a pixel; what is summed are the 3 bits of each channel that the cell does not say. That is enough for 600 million
  // pixels in one cell.
  struct Cell {
    std::uint64_t redAndCount = 0;
    std::uint64_t blueAndGreen = 0;

    void Add(Rgb colour);
    std::uint64_t Pixels() const { return redAndCount & 0xFFFFFFFFU; }
  };
  static std::size_t CellOf(Rgb colour);
  void CountExactly(Rgb colour);
  void Cut();

  std::size_t most;
  bool exact = true;
  std::vector<Rgb> palette;
  std::unordered_map<std::uint32_t, std::uint8_t> exactIndex;
  std::uint32_t lastKey = 0xFFFFFFFF;
  // Two of each cell, for pixels in turn: neighbours of the same colour do not wait for one another.
  std::vector<Cell> cells;
  std::vector<std::uint8_t> cellIndex;
};

}  // namespace kw
