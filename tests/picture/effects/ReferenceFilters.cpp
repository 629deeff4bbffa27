#include "tests/picture/effects/ReferenceParts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kw::reference {
namespace {

// Pixel i of the 3x3 neighbourhood, row by row.
const Pixel& Neighbour(const Plain& p, std::int32_t x, std::int32_t y, std::int32_t i) {
  return p.Near(x + i % 3 - 1, y + i / 3 - 1);
}

// The same for filters that leave alpha: what is fully transparent, there or here, is left out.
const Pixel& VisibleNeighbour(const Plain& p, std::int32_t x, std::int32_t y, std::int32_t i) {
  const Pixel& other = Neighbour(p, x, y, i);
  return other[3] == 0 || p.At(x, y)[3] == 0 ? p.At(x, y) : other;
}

using Neighbouring = decltype(Neighbour)*;

// Weighted sum of the channel over a 3x3 neighbourhood; weights row by row.
std::int32_t Weighted(const Plain& p, std::int32_t x, std::int32_t y, std::size_t c,
                      const std::array<std::int32_t, 9>& weights, Neighbouring neighbour = VisibleNeighbour) {
  std::int32_t sum = 0;
  for (std::int32_t i = 0; i < 9; ++i) sum += weights[static_cast<std::size_t>(i)] * neighbour(p, x, y, i)[c];
  return sum;
}

constexpr std::array<std::int32_t, 9> Binomial{1, 2, 1, 2, 4, 2, 1, 2, 1};

Plain Spread(const Bitmap& picture, bool light) {
  const bool oneBit = picture.BitsPerPixel() == 1;
  const Plain plain = oneBit ? Read(picture) : PlainValues(picture);
  if (!oneBit) {
    return EachChannel(plain, [&](std::int32_t x, std::int32_t y, std::size_t c) {
      std::int32_t most = plain.At(x, y)[c];
      for (std::int32_t i = 0; i < 9; ++i) {
        const std::int32_t value = VisibleNeighbour(plain, x, y, i)[c];
        most = light ? std::max(most, value) : std::min(most, value);
      }
      return most;
    });
  }
  // Of two colours the lighter one spreads, or the darker.
  const auto weight = [](const Pixel& p) { return 299 * p[2] + 587 * p[1] + 114 * p[0]; };
  return Each(plain, [&](std::int32_t x, std::int32_t y) {
    Pixel most = plain.At(x, y);
    for (std::int32_t i = 0; i < 9; ++i) {
      const Pixel& other = Neighbour(plain, x, y, i);
      if (light ? weight(other) > weight(most) : weight(other) < weight(most)) most = other;
    }
    return most;
  });
}

// The middle of a bell and one side of it, in 32768ths.
std::vector<std::int32_t> Bell(double sigma, std::int32_t radius) {
  double sum = 0;
  const auto height = [sigma](std::int32_t i) { return std::exp(-0.5 * std::pow(i / sigma, 2)); };
  for (std::int32_t i = -radius; i <= radius; ++i) sum += height(i);
  std::vector<std::int32_t> weights{32768};
  for (std::int32_t i = 1; i <= radius; ++i) {
    weights.push_back(Round(32768 * height(i) / sum));
    weights[0] -= 2 * weights.back();
  }
  return weights;
}

std::int32_t Part(std::int32_t value, std::int32_t weight) { return Floored(value * weight + 16384, 32768); }

// Averages blocks, blurs them, first along the rows, and enlarges them again.
Plain WideBlur(const Plain& plain, double sigma) {
  const std::int32_t factor = sigma < 10 ? 2 : 4;
  const double reduced = std::sqrt(sigma * sigma / (factor * factor) - 0.25);
  const auto radius = static_cast<std::int32_t>(std::ceil(4 * reduced));
  const auto weights = Bell(reduced, radius);
  // Columns and rows of blocks as far as a blurred one is needed, and its surroundings.
  const std::int32_t around = radius + 2;
  const std::int32_t columns = plain.width / factor + 2 * around + 2;
  const std::int32_t rows = plain.height / factor + 2 * around + 2;
  using Blocks = std::vector<std::int32_t>;
  const auto at = [&](const Blocks& blocks, std::int32_t x, std::int32_t y) {
    const auto column = static_cast<std::size_t>(std::clamp(x + around, 0, columns - 1));
    const auto row = static_cast<std::size_t>(std::clamp(y + around, 0, rows - 1));
    return blocks[row * static_cast<std::size_t>(columns) + column];
  };
  const auto each = [&](const auto& make) {
    Blocks blocks;
    for (std::int32_t i = 0; i < columns * rows; ++i)
      blocks.push_back(make(i % columns - around, i / columns - around));
    return blocks;
  };
  const auto blurred = [&](const Blocks& of, std::int32_t x, std::int32_t y, std::int32_t dx, std::int32_t dy) {
    std::int32_t sum = Part(at(of, x, y), weights[0]);
    for (std::int32_t k = 1; k <= radius; ++k) {
      const std::int32_t both = at(of, x - k * dx, y - k * dy) + at(of, x + k * dx, y + k * dy);
      sum += Part(both, weights[static_cast<std::size_t>(k)]);
    }
    return std::min(sum, 16383);
  };
  Plain result = plain;
  for (std::size_t c = 0; c < 4; ++c) {
    const Blocks averages = each([&](std::int32_t x, std::int32_t y) {
      std::int32_t sum = 0;
      for (std::int32_t i = 0; i < factor * factor; ++i) {
        sum += plain.Near(x * factor + i % factor, y * factor + i / factor)[c];
      }
      return 64 * sum / (factor * factor);
    });
    const Blocks across = each([&](std::int32_t x, std::int32_t y) { return blurred(averages, x, y, 1, 0); });
    const Blocks both = each([&](std::int32_t x, std::int32_t y) { return blurred(across, x, y, 0, 1); });
    const auto weight = [&](std::int32_t place) { return (2 * (place % factor) + 1) * 16384 / factor; };
    for (std::int32_t y = 0; y < plain.height; ++y) {
      for (std::int32_t x = 0; x < plain.width; ++x) {
        const std::int32_t column = x + factor / 2;
        const std::int32_t row = (y + factor / 2) / factor;
        const auto between = [&](std::int32_t of) {
          return Part(at(both, column / factor - 1, of), 32768 - weight(column)) +
                 Part(at(both, column / factor, of), weight(column));
        };
        const std::int32_t upper = between(row - 1);
        result.At(x, y)[c] = (upper + Part(between(row) - upper, weight(y + factor / 2)) + 32) / 64;
      }
    }
  }
  return result;
}

}  // namespace

Plain Blur(const Bitmap& picture, Values values) {
  const Plain plain = Premultiplied(PlainValues(picture));
  const double sigma = values[0] != 0 ? values[0] : picture.BitsPerPixel() == 1 ? 0.8 : 1.5;
  if (sigma >= 5) return Unpremultiplied(WideBlur(plain, sigma));
  const auto radius = static_cast<std::int32_t>(std::ceil(3 * sigma));
  const auto weights = Bell(sigma, radius);
  if (weights[0] == 32768) return PlainValues(picture);
  const auto mixed = [&](std::int32_t x, std::int32_t y, std::size_t c) {
    std::int32_t total = Part(64 * plain.Near(x, y)[c], weights[0]);
    for (std::int32_t i = 1; i <= radius; ++i) {
      total += Part(64 * (plain.Near(x, y - i)[c] + plain.Near(x, y + i)[c]), weights[static_cast<std::size_t>(i)]);
    }
    return std::min(total, 16383);
  };
  std::vector<Pixel> columns;
  for (std::int32_t y = 0; y < plain.height; ++y) {
    for (std::int32_t x = 0; x < plain.width; ++x) {
      columns.push_back({mixed(x, y, 0), mixed(x, y, 1), mixed(x, y, 2), mixed(x, y, 3)});
    }
  }
  const auto column = [&](std::int32_t x, std::int32_t y, std::size_t c) {
    return columns[plain.Index(std::clamp(x, 0, plain.width - 1), y)][c];
  };
  return Unpremultiplied(Each(plain, [&](std::int32_t x, std::int32_t y) {
    Pixel pixel{};
    for (std::size_t c = 0; c < 4; ++c) {
      std::int32_t total = Part(column(x, y, c), weights[0]);
      for (std::int32_t i = 1; i <= radius; ++i) {
        total += Part(column(x - i, y, c) + column(x + i, y, c), weights[static_cast<std::size_t>(i)]);
      }
      pixel[c] = Byte(Floored(total + 32, 64));
    }
    return pixel;
  }));
}

Plain Soften(const Bitmap& picture, Values /*values*/) {
  const Plain plain = Premultiplied(PlainValues(picture));
  return Unpremultiplied(Each(plain, [&](std::int32_t x, std::int32_t y) {
    Pixel pixel{};
    for (std::size_t c = 0; c < 4; ++c) pixel[c] = (Weighted(plain, x, y, c, Binomial, Neighbour) + 8) / 16;
    return pixel;
  }));
}

Plain Sharpen(const Bitmap& picture, Values values) {
  const Plain plain = PlainValues(picture);
  const std::int32_t amount = Round(values[0] * 2.56);
  return EachChannel(plain, [&](std::int32_t x, std::int32_t y, std::size_t c) {
    const std::int32_t self = plain.At(x, y)[c];
    return self + Floored(amount * (16 * self - Weighted(plain, x, y, c, Binomial)) + 2048, 4096);
  });
}

Plain Emboss(const Bitmap& picture, Values values) {
  const Plain plain = PlainValues(picture);
  const std::int32_t amount = Round(values[0] * 2.56);
  return EachChannel(plain, [&](std::int32_t x, std::int32_t y, std::size_t c) {
    const std::int32_t slope = Weighted(plain, x, y, c, {-2, -1, 0, -1, 0, 1, 0, 1, 2});
    return plain.At(x, y)[c] + Floored(amount * slope + 128, 256);
  });
}

Plain Edge(const Bitmap& picture, Values /*values*/) {
  const Plain plain = PlainValues(picture);
  return EachChannel(plain, [&](std::int32_t x, std::int32_t y, std::size_t c) {
    if (plain.At(x, y)[3] == 0) return plain.At(x, y)[c];
    const double across = Weighted(plain, x, y, c, {-1, 0, 1, -2, 0, 2, -1, 0, 1});
    const double down = Weighted(plain, x, y, c, {-1, -2, -1, 0, 0, 0, 1, 2, 1});
    return Round(std::sqrt(across * across + down * down));
  });
}

Plain Dilate(const Bitmap& picture, Values /*values*/) { return Spread(picture, true); }
Plain Erode(const Bitmap& picture, Values /*values*/) { return Spread(picture, false); }

}  // namespace kw::reference
