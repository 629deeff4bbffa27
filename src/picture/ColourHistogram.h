#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

#include "components/base/Bitmap.h"

namespace kw {

// A colour histogram of 32 x 32 x 32 bins (5 bits a channel). Each bin also sums the low 3 bits of its pixels, for the
// mean colour. Bins of similar colours lie close together, to use the processor's caches well: a bin's number has the 3
// high bits of red, green and blue, then the next 2 bits of each.
class ColourHistogram {
public:
  static constexpr unsigned Bits = 5;
  static constexpr std::size_t Count = std::size_t{1} << (3 * Bits);

  struct Bin {
    std::uint64_t count = 0;
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;
  };

  // The bin and the low bits of each pixel in a row of 24 bits per pixel.
  class BinnedRow {
  public:
    explicit BinnedRow(std::size_t mostPixels) : bins(mostPixels), lowBits(mostPixels) {}
    void Split(const std::uint8_t* row, std::size_t pixels);
    const std::uint16_t* Bins() const { return bins.data(); }
    const std::uint16_t* LowBits() const { return lowBits.data(); }

  private:
    std::vector<std::uint16_t> bins;
    std::vector<std::uint16_t> lowBits;
  };

  // One thread's part of the histogram. It is added to the whole when a bin is about to overflow, and by Finish().
  class Counter {
  public:
    // The histogram must outlive the counter.
    explicit Counter(ColourHistogram& wholeHistogram);
    void Add(Rgb colour);
    // Adds the first `pixels` pixels of a split row.
    void Add(const BinnedRow& row, std::size_t pixels);
    // The histogram holds all pixels of this counter only after this call.
    void Finish();

  private:
    [[gnu::noinline]] void Flush(std::size_t bin);

    ColourHistogram& whole;
    // Count, red, green and blue of a bin, 16 bits each: one addition counts a pixel.
    std::vector<std::uint64_t> packed;
  };

  ColourHistogram() : bins(Count) {}

  static std::size_t BinOf(Rgb colour);
  // The bin of each pixel of a row of 24 bits per pixel.
  static void FindBins(const std::uint8_t* row, std::uint16_t* bins, std::size_t pixels);
  // As above, for a colour of 5 bits a channel, red in the high bits.
  static constexpr std::size_t BinOf(std::uint16_t rgb555) {
    const unsigned bits = rgb555;
    const unsigned upper = (bits & 0x7000U) | (bits & 0x0380U) << 2U | (bits & 0x001CU) << 4U;
    const unsigned lower = (bits & 0x0C00U) >> 6U | (bits & 0x0060U) >> 3U | (bits & 0x0003U);
    return upper | lower;
  }

  // Counts a colour many times at once. Not while counters are at work.
  void Add(Rgb colour, std::uint64_t times);

  const Bin& operator[](std::size_t bin) const { return bins[bin]; }

private:
  void AddSums(std::size_t bin, std::uint64_t packedSums);

  std::vector<Bin> bins;
  std::mutex mutex;
};

}  // namespace kw
