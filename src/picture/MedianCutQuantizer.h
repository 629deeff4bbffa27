#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "components/base/Bitmap.h"
#include "picture/ColourHistogram.h"

namespace kw {

// Chooses the palette of a picture: its own colours if they are few enough, else a median cut of them.
// Order of use: Count() each pixel, or See() each and count some by Histogram(); Quantize() once, then Palette() and
// IndexOf().
class MedianCutQuantizer {
public:
  // `most` is 2 to 256.
  explicit MedianCutQuantizer(std::size_t most);

  // Only finds out whether there are few enough colours.
  void See(Rgb colour);
  void Count(Rgb colour);
  // The same for many pixels of one colour.
  void Count(Rgb colour, std::uint64_t times);
  // For threads that count pixels themselves. Only once IsExact() is false.
  ColourHistogram& Histogram() { return histogram; }
  void Quantize();
  // Gives colours that were not counted the entry of the nearest bin that was. After Quantize(), if not IsExact().
  void FillUncounted();

  // True if every counted colour is in the palette.
  bool IsExact() const { return exact; }
  const std::vector<Rgb>& Palette() const { return palette; }
  // The entry for a colour that was counted; if IsExact(), one that was seen.
  std::uint8_t IndexOf(Rgb colour) const;
  // The entries of pixels of these bins. Only if IsExact() is false.
  void IndexRow(const std::uint16_t* bins, std::uint8_t* to, std::size_t pixels) const;

private:
  void Cut();

  std::size_t most;
  bool exact = true;
  std::vector<Rgb> palette;
  std::unordered_map<std::uint32_t, std::uint8_t> exactIndex;
  std::uint32_t lastKey = 0xFFFFFFFF;
  ColourHistogram histogram;
  ColourHistogram::Counter counter{histogram};
  std::vector<std::uint8_t> indexOfBin;
};

}  // namespace kw
