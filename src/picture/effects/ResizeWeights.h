#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kw {

// The old pixels that contribute to each new one along one side, and their weights, in 16384ths that add up to 16384. A
// smaller side weighs an old pixel by its share of the new one's area; a larger side uses Lanczos' kernel of three
// lobes or the bicubic one of Catmull and Rom.
class ResizeWeights {
public:
  ResizeWeights(std::int32_t from, std::int32_t to, bool bicubic);

  // Weights of the old pixels from `first` on. An index outside stands for the nearest pixel inside.
  struct Taps {
    std::int32_t first;
    std::span<const std::int16_t> weights;
  };
  Taps At(std::int32_t to) const;

  // Computes a row of pixels of `size` channels from old values in 64ths.
  void Row(const std::int16_t* from, std::uint8_t* to, std::size_t size) const;

private:
  void Put(std::int32_t first, std::span<const double> exact);

  struct Pixel {
    std::int32_t first;
    std::size_t begin;
  };
  std::int32_t last;
  std::vector<Pixel> pixels;
  std::vector<std::int16_t> weights;
};

}  // namespace kw
