#include "tests/picture/effects/ReferenceParts.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace kw::reference {
namespace {

// Consecutive old pixels and their weights for a new one, in parts of 16384.
struct Taps {
  std::int32_t first = 0;
  std::vector<std::int32_t> weights;
};

// Lanczos' window over the sine, both multiplied out.
double LanczosAt(double x) {
  if (x == 0) return 1;
  if (std::fabs(x) >= 3) return 0;
  const double turn = std::numbers::pi * x;
  return 3 * std::sin(turn) * std::sin(turn / 3) / (turn * turn);
}

// The four weights of Catmull's and Rom's curve at the share t of the way from the second point to the third.
std::vector<double> CurveAt(double t) {
  return {(-t + 2 * t * t - t * t * t) / 2, (2 - 5 * t * t + 3 * t * t * t) / 2, (t + 4 * t * t - 3 * t * t * t) / 2,
          (-t * t + t * t * t) / 2};
}

// Each weight is what it adds to the rounded sum of all up to it.
Taps FromExact(std::int32_t first, const std::vector<double>& exact) {
  double whole = 0;
  for (const double weight : exact) whole += weight;
  Taps taps{first, {}};
  double sum = 0;
  for (const double weight : exact) {
    const std::int32_t before = Round(16384 * sum / whole);
    sum += weight;
    taps.weights.push_back(Round(16384 * sum / whole) - before);
  }
  return taps;
}

// Of new pixel i, which covers the old ones from i * from / to on, the part that lies before old pixel j: with the new
// pixel cut into `from` equal pieces and an old one into `to`, this is a whole number of pieces.
std::int32_t PartBefore(std::int32_t j, std::int32_t i, std::int32_t from, std::int32_t to) {
  const std::int32_t pieces = std::clamp(j * to - i * from, 0, from);
  return (2 * 16384 * pieces + from) / (2 * from);
}

Taps TapsOf(std::int32_t i, std::int32_t from, std::int32_t to, bool bicubic) {
  if (from >= to) {
    Taps taps{i * from / to, {}};
    for (std::int32_t j = taps.first; j < from && j * to < (i + 1) * from; ++j) {
      taps.weights.push_back(PartBefore(j + 1, i, from, to) - PartBefore(j, i, from, to));
    }
    return taps;
  }
  const double place = (2 * i + 1) * static_cast<double>(from) / (2 * to) - 0.5;
  const std::int32_t left = Floor(place);
  if (bicubic) return FromExact(left - 1, CurveAt(place - left));
  std::vector<double> exact;
  for (std::int32_t j = left - 2; j <= left + 3; ++j) exact.push_back(LanczosAt(place - j));
  return FromExact(left - 2, exact);
}

template <class Value>
std::int32_t Sum(const Taps& taps, const Value& value) {
  std::int32_t sum = 0;
  for (std::size_t i = 0; i < taps.weights.size(); ++i) {
    if (taps.weights[i] != 0) sum += taps.weights[i] * value(taps.first + static_cast<std::int32_t>(i));
  }
  return sum;
}

std::int32_t InProportion(std::int32_t side, std::int32_t other, double otherBecomes) {
  return std::max(1, Round(side * otherBecomes / other));
}

}  // namespace

Plain Resize(const Bitmap& picture, Values values) {
  const Plain plain = Premultiplied(PlainValues(picture));
  auto width = static_cast<std::int32_t>(values[1]);
  auto height = static_cast<std::int32_t>(values[2]);
  if (width == 0 && height == 0) {
    width = InProportion(plain.width, 100, values[0]);
    height = InProportion(plain.height, 100, values[0]);
  } else if (width == 0) {
    width = InProportion(plain.width, plain.height, height);
  } else if (height == 0) {
    height = InProportion(plain.height, plain.width, width);
  }
  const bool bicubic = values[3] != 0;
  std::vector<Taps> across;
  across.reserve(static_cast<std::size_t>(width));
  for (std::int32_t x = 0; x < width; ++x) across.push_back(TapsOf(x, plain.width, width, bicubic));
  std::vector<Taps> down;
  down.reserve(static_cast<std::size_t>(height));
  for (std::int32_t y = 0; y < height; ++y) down.push_back(TapsOf(y, plain.height, height, bicubic));
  return Unpremultiplied(Each({width, height, plain.bitsPerPixel}, [&](std::int32_t x, std::int32_t y) {
    Pixel pixel{};
    for (std::size_t c = 0; c < 4; ++c) {
      const auto mixed = [&](std::int32_t column) {
        const auto& taps = down[static_cast<std::size_t>(y)];
        return Floored(Sum(taps, [&](std::int32_t line) { return plain.Near(column, line)[c]; }) + 128, 256);
      };
      pixel[c] = Byte(Floored(Sum(across[static_cast<std::size_t>(x)], mixed) + (1 << 19), 1 << 20));
    }
    return pixel;
  }));
}

}  // namespace kw::reference
