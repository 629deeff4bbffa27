#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kw {

// Which old pixels make each new one along one side, and with which weights: parts of 16384 that give 16384 together.
// A smaller side weighs old pixels by how much of the new one they cover; a larger side takes Lanczos' kernel of three
// lobes or the bicubic one of Catmull and Rom.
class ResizeWeights {
public:
  ResizeWeights(std::int32_t from, std::int32_t to, bool bicubic);

  // Weights of the old pixels from `first` on; those outside the side stand for the nearest one inside.
  struct Taps {
    std::int32_t first;
    std::span<const std::int16_t> weights;
  };
  Taps At(std::int32_t to) const;

  // Makes a row of pixels of `size` channels from old values in 64ths.
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
