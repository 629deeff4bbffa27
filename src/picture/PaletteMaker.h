#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "components/base/Bitmap.h"
#include "picture/ColourCells.h"

namespace kw {

// Chooses the palette of a picture: its own colours where they are few enough, else a median cut of them.
// Order of use: Count() each pixel, Make() once, then Palette() and IndexOf().
class PaletteMaker {
public:
  // `most` is 2 to 256.
  explicit PaletteMaker(std::size_t most);

  void Count(Rgb colour);
  // Where pixels may be counted apart; only once IsExact() is false.
  ColourCells& Cells() { return cells; }
  void Make();

  // True where every counted colour is in the palette.
  bool IsExact() const { return exact; }
  const std::vector<Rgb>& Palette() const { return palette; }
  // The entry for a colour that was counted.
  std::uint8_t IndexOf(Rgb colour) const;
  // The entries of the first `pixels` of a row that was split; only where IsExact() is false.
  void IndexRow(const ColourCells::Row& row, std::uint8_t* to, std::size_t pixels) const;

private:
  void CountExactly(Rgb colour);
  void Cut();

  std::size_t most;
  bool exact = true;
  std::vector<Rgb> palette;
  std::unordered_map<std::uint32_t, std::uint8_t> exactIndex;
  std::uint32_t lastKey = 0xFFFFFFFF;
  ColourCells cells;
  ColourCells::Counter counter{cells};
  std::vector<std::uint8_t> cellIndex;
};

}  // namespace kw
