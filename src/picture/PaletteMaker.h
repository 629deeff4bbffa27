#pragma once

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
  void Make();

  // True where every counted colour is in the palette.
  bool IsExact() const { return exact; }
  const std::vector<Rgb>& Palette() const { return palette; }
  // The entry for a colour that was counted.
  std::uint8_t IndexOf(Rgb colour) const;

private:
  // Colours are counted in cells of 5 bits a channel.
  struct Cell {
    std::uint64_t count = 0;
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;
    std::uint8_t index = 0;
  };
  void Cut();

  std::size_t most;
  bool exact = true;
  std::vector<Rgb> palette;
  std::unordered_map<std::uint32_t, std::uint8_t> exactIndex;
  std::uint32_t lastKey = 0xFFFFFFFF;
  std::vector<Cell> cells;
};

}  // namespace kw
