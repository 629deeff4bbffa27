#include "picture/effects/ResizeWeights.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "picture/effects/Pixels.h"

namespace kw {
namespace {

constexpr std::int32_t Whole = 16384;

double Sinc(double x) { return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x); }

double Lanczos(double x) { return std::fabs(x) < 3 ? Sinc(x) * Sinc(x / 3) : 0; }

double CatmullRom(double x) {
  const double t = std::fabs(x);
  if (t < 1) return (1.5 * t - 2.5) * t * t + 1;
  if (t < 2) return ((-0.5 * t + 2.5) * t - 4) * t + 2;
  return 0;
}

}  // namespace

ResizeWeights::ResizeWeights(std::int32_t from, std::int32_t to, bool bicubic) : last(from - 1) {
  const double step = static_cast<double>(from) / to;
  std::vector<double> exact;
  for (std::int32_t i = 0; i < to; ++i) {
    exact.clear();
    if (from == to) {
      exact.push_back(1);
      Put(i, exact);
    } else if (from > to) {
      const double begin = i * step;
      const double end = (i + 1) * step;
      const auto first = static_cast<std::int32_t>(std::floor(begin));
      for (std::int32_t j = first; j < end && j < from; ++j)
        exact.push_back(std::min(end, j + 1.0) - std::max(begin, 1.0 * j));
      Put(first, exact);
    } else {
      const std::int32_t reach = bicubic ? 2 : 3;
      const double middle = (i + 0.5) * step - 0.5;
      const std::int32_t first = static_cast<std::int32_t>(std::floor(middle)) - reach + 1;
      for (std::int32_t j = first; j < first + 2 * reach; ++j) {
        exact.push_back(bicubic ? CatmullRom(middle - j) : Lanczos(middle - j));
      }
      Put(first, exact);
    }
  }
  pixels.push_back({0, weights.size()});
}

void ResizeWeights::Put(std::int32_t first, std::span<const double> exact) {
  double sum = 0;
  for (const double weight : exact) sum += weight;
  const std::size_t begin = weights.size();
  pixels.push_back({first, begin});
  // The rounding error of each weight goes into the next, so that many small weights keep their sum.
  double due = 0;
  std::int32_t given = 0;
  for (const double weight : exact) {
    due += weight / sum * Whole;
    const auto part = static_cast<std::int32_t>(std::lround(due)) - given;
    given += part;
    weights.push_back(static_cast<std::int16_t>(part));
  }
}

ResizeWeights::Taps ResizeWeights::At(std::int32_t to) const {
  const auto i = static_cast<std::size_t>(to);
  return {pixels[i].first, std::span(weights).subspan(pixels[i].begin, pixels[i + 1].begin - pixels[i].begin)};
}

void ResizeWeights::Row(const std::int16_t* from, std::uint8_t* to, std::size_t size) const {
  for (std::int32_t x = 0; x + 1 < static_cast<std::int32_t>(pixels.size()); ++x, to += size) {
    const Taps taps = At(x);
    for (std::size_t c = 0; c < size; ++c) {
      std::int32_t sum = 1 << 19;
      for (std::size_t tap = 0; tap < taps.weights.size(); ++tap) {
        const std::int32_t column = std::clamp(taps.first + static_cast<std::int32_t>(tap), 0, last);
        sum += taps.weights[tap] * from[static_cast<std::size_t>(column) * size + c];
      }
      to[c] = ToByte(sum >> 20);
    }
  }
}

}  // namespace kw
