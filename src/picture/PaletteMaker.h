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
  void IndexRow(const std::uint8_t* row, std::uint8_t* to, std::size_t pixels);

private:
  // Colours are counted in cells of 5 bits a channel. What is summed are the 3 bits of each channel that the cell does
  // not say.
  struct Cell {
    std::uint64_t count = 0;
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;
  };
  void CountExactly(Rgb colour);
  void Add(std::size_t cell, unsigned rest);
  void Flush(std::size_t cell);
  void Cut();

  std::size_t most;
  bool exact = true;
  std::vector<Rgb> palette;
  std::unordered_map<std::uint32_t, std::uint8_t> exactIndex;
  std::uint32_t lastKey = 0xFFFFFFFF;
  std::vector<Cell> cells;
  // What is not yet in `cells`: count, red, green and blue in 16 bits each, so that one addition counts a pixel.
  std::vector<std::uint64_t> recent;
  // What a pixel adds there, by its lower bits.
  std::vector<std::uint64_t> increments;
  std::vector<std::uint8_t> cellIndex;
  // The parts of a row's colours.
  std::vector<std::uint16_t> upper;
  std::vector<std::uint16_t> lower;
};

}  // namespace kw
