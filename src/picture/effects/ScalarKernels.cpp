#include "picture/effects/ScalarKernels.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "picture/Depth.h"

namespace kw::kernels::scalar {
namespace {

// The nine values around byte i, for a 3x3 filter.
struct Around {
  Around(const std::uint8_t* const* rows, std::ptrdiff_t i, std::ptrdiff_t size)
      : north(rows[0] + i), middle(rows[1] + i), south(rows[2] + i), step(size) {}
  std::int32_t NW() const { return north[-step]; }
  std::int32_t N() const { return north[0]; }
  std::int32_t NE() const { return north[step]; }
  std::int32_t W() const { return middle[-step]; }
  std::int32_t Self() const { return middle[0]; }
  std::int32_t E() const { return middle[step]; }
  std::int32_t SW() const { return south[-step]; }
  std::int32_t S() const { return south[0]; }
  std::int32_t SE() const { return south[step]; }
  std::int32_t Binomial() const { return NW() + NE() + SW() + SE() + 2 * (N() + W() + E() + S()) + 4 * Self(); }

  const std::uint8_t* north;
  const std::uint8_t* middle;
  const std::uint8_t* south;
  std::ptrdiff_t step;
};

template <typename Result>
void ForEachAround(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
                   const Result& result) {
  for (std::size_t i = 0; i < count; ++i) {
    to[i] = ToByte(result(Around(rows, static_cast<std::ptrdiff_t>(i), static_cast<std::ptrdiff_t>(size))));
  }
}

std::int16_t MultiplyRounded(std::int32_t a, std::int32_t b) {
  return static_cast<std::int16_t>((a * b + 16384) >> 15);
}

}  // namespace

void ApplyLut(std::uint8_t* row, std::size_t count, const Lut& table) {
  for (std::size_t i = 0; i < count; ++i) row[i] = table[row[i]];
}

void ApplyLutToColours(std::uint8_t* row, std::size_t count, const Lut& table) {
  for (std::size_t i = 0; i < count; i += 4) {
    for (std::size_t c = i; c < i + 3; ++c) row[c] = table[row[c]];
  }
}

void ApplyLinearMap(std::uint8_t* row, std::size_t count, const LinearMap& map) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint32_t value = row[i] ^ std::uint32_t{map.flip};
    row[i] = ToByte((static_cast<std::int32_t>(value * 256 * map.gain >> 16U) + map.offset) >> 6);
  }
}

void Luma(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (std::size_t x = 0; x < pixels; ++x) to[x] = kw::Luma({from[x * 3 + 2], from[x * 3 + 1], from[x * 3]});
}

void SplitIntoBins(const std::uint8_t* from, std::uint16_t* bins, std::uint16_t* lowBits, std::size_t pixels) {
  FindBins(from, bins, pixels);
  for (std::size_t x = 0; x < pixels; ++x) {
    const unsigned blue = from[x * 3];
    const unsigned green = from[x * 3 + 1];
    const unsigned red = from[x * 3 + 2];
    lowBits[x] = static_cast<std::uint16_t>((red & 7U) << 6U | (green & 7U) << 3U | (blue & 7U));
  }
}

void FindBins(const std::uint8_t* from, std::uint16_t* bins, std::size_t pixels) {
  for (std::size_t x = 0; x < pixels; ++x) {
    const unsigned blue = from[x * 3];
    const unsigned green = from[x * 3 + 1];
    const unsigned red = from[x * 3 + 2];
    const unsigned block = (red & 0xE0U) << 7U | (green & 0xE0U) << 4U | (blue & 0xE0U) << 1U;
    const unsigned within = (red & 0x18U) << 1U | (green & 0x18U) >> 1U | (blue & 0x18U) >> 3U;
    bins[x] = static_cast<std::uint16_t>(block | within);
  }
}

void ThresholdToBits(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::uint8_t level) {
  for (std::size_t x = 0; x < pixels; ++x) {
    const auto bit = static_cast<std::uint8_t>(0x80U >> x % 8);
    to[x / 8] = static_cast<std::uint8_t>(from[x] >= level ? to[x / 8] | bit : to[x / 8] & ~bit);
  }
}

void UnpackLevels(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, int bitsPerPixel, const Lut& levels) {
  if (bitsPerPixel == 8) {
    for (std::size_t x = 0; x < pixels; ++x) to[x] = levels[from[x]];
    return;
  }
  const auto bits = static_cast<unsigned>(bitsPerPixel);
  const std::size_t perByte = 8 / bits;
  const unsigned mask = (1U << bits) - 1;
  for (std::size_t x = 0; x < pixels; ++x) {
    const auto shift = 8 - bits * (static_cast<unsigned>(x % perByte) + 1);
    to[x] = levels[static_cast<unsigned>(from[x / perByte]) >> shift & mask];
  }
}

std::size_t FindThird(const std::uint8_t* row, std::size_t count, std::uint8_t first, std::uint8_t second) {
  const auto isThird = [=](std::uint8_t value) { return value != first && value != second; };
  return static_cast<std::size_t>(std::find_if(row, row + count, isThird) - row);
}

void Triple(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels) {
  for (std::size_t x = 0; x < pixels; ++x) std::fill_n(to + 3 * x, 3, from[x]);
}

void Diffuse(const DiffusedRows& rows, std::size_t pixels) {
  for (std::size_t row = 0; row < DiffusedRows::Count; ++row) {
    std::int32_t right = 0;
    std::int32_t below = 0;
    std::int32_t belowRight = 0;
    std::int16_t* errors = rows.errors;
    for (std::size_t x = 0; x < pixels; ++x, ++errors) {
      const std::int32_t value = rows.levels[row][x] + ((*errors + right + 8) >> 4);
      const std::int32_t shown = value >= 128 ? 255 : 0;
      rows.to[row][x] = static_cast<std::uint8_t>(shown);
      const std::int32_t error = value - shown;
      errors[-1] = static_cast<std::int16_t>(below + 3 * error);
      below = belowRight + 5 * error;
      belowRight = error;
      right = 7 * error;
    }
    errors[-1] = static_cast<std::int16_t>(below);
  }
}

void DilateBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  const auto together = [rows](std::ptrdiff_t i) {
    return static_cast<unsigned>(rows[0][i]) | static_cast<unsigned>(rows[1][i]) | static_cast<unsigned>(rows[2][i]);
  };
  for (std::ptrdiff_t i = 0; i < static_cast<std::ptrdiff_t>(count); ++i) {
    const unsigned middle = together(i);
    to[i] =
        static_cast<std::uint8_t>(middle | middle << 1U | middle >> 1U | together(i + 1) >> 7U | together(i - 1) << 7U);
  }
}

void ErodeBits(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  const auto together = [rows](std::ptrdiff_t i) {
    return static_cast<unsigned>(rows[0][i]) & static_cast<unsigned>(rows[1][i]) & static_cast<unsigned>(rows[2][i]);
  };
  for (std::ptrdiff_t i = 0; i < static_cast<std::ptrdiff_t>(count); ++i) {
    const unsigned middle = together(i);
    to[i] = static_cast<std::uint8_t>(middle & (middle << 1U | together(i + 1) >> 7U) &
                                      (middle >> 1U | together(i - 1) << 7U));
  }
}

void DilateBytes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  ForEachAround(rows, to, count, size, [](const Around& at) {
    return std::max({at.NW(), at.N(), at.NE(), at.W(), at.Self(), at.E(), at.SW(), at.S(), at.SE()});
  });
}

void ErodeBytes(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  ForEachAround(rows, to, count, size, [](const Around& at) {
    return std::min({at.NW(), at.N(), at.NE(), at.W(), at.Self(), at.E(), at.SW(), at.S(), at.SE()});
  });
}

void DilateAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size) {
  for (std::size_t i = 0; i < count; ++i) to[i] = std::max({*(from + i - size), from[i], from[i + size]});
}

void ErodeAcross(const std::uint8_t* from, std::uint8_t* to, std::size_t count, std::size_t size) {
  for (std::size_t i = 0; i < count; ++i) to[i] = std::min({*(from + i - size), from[i], from[i + size]});
}

void DilateDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to[i] = std::max({rows[0][i], rows[1][i], rows[2][i]});
}

void ErodeDown(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) to[i] = std::min({rows[0][i], rows[1][i], rows[2][i]});
}

void Soften(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  ForEachAround(rows, to, count, size, [](const Around& at) { return (at.Binomial() + 8) >> 4; });
}

void Edge(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size) {
  ForEachAround(rows, to, count, size, [](const Around& at) {
    const std::int32_t across = at.NE() + 2 * at.E() + at.SE() - at.NW() - 2 * at.W() - at.SW();
    const std::int32_t down = at.SW() + 2 * at.S() + at.SE() - at.NW() - 2 * at.N() - at.NE();
    return static_cast<std::int32_t>(std::lround(std::sqrt(static_cast<float>(across * across + down * down))));
  });
}

void Sharpen(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
             std::int32_t amount) {
  ForEachAround(rows, to, count, size, [amount](const Around& at) {
    return at.Self() + ((amount * (16 * at.Self() - at.Binomial()) + 2048) >> 12);
  });
}

void Emboss(const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count, std::size_t size,
            std::int32_t amount) {
  ForEachAround(rows, to, count, size, [amount](const Around& at) {
    const std::int32_t slope = 2 * at.SE() + at.S() + at.E() - 2 * at.NW() - at.N() - at.W();
    return at.Self() + ((amount * slope + 128) >> 8);
  });
}

void BlurDown(const std::uint8_t* const* rows, std::size_t margin, std::int16_t* to, std::size_t count,
              std::span<const std::int16_t> weights) {
  const std::size_t radius = weights.size() - 1;
  for (std::size_t i = 0; i < count; ++i) {
    std::int32_t sum = MultiplyRounded((rows[radius] - margin)[i] << 6, weights[0]);
    for (std::size_t k = 1; k <= radius; ++k) {
      sum += MultiplyRounded(((rows[radius - k] - margin)[i] + (rows[radius + k] - margin)[i]) << 6, weights[k]);
    }
    // Twice this value must fit into 16 bits.
    to[i] = static_cast<std::int16_t>(std::min(sum, 16383));
  }
}

void BlurAcross(const std::int16_t* from, std::uint8_t* to, std::size_t count, std::size_t size,
                std::span<const std::int16_t> weights) {
  for (std::size_t i = 0; i < count; ++i) {
    std::int32_t sum = MultiplyRounded(from[i], weights[0]) + 32;
    for (std::size_t k = 1; k < weights.size(); ++k) {
      sum += MultiplyRounded(*(from + i - k * size) + from[i + k * size], weights[k]);
    }
    to[i] = ToByte(sum >> 6);
  }
}

void BoxDownsample2(const std::uint8_t* upper, const std::uint8_t* lower, std::uint8_t* to, std::size_t pixels,
                    std::size_t size) {
  for (std::size_t x = 0; x < pixels; ++x) {
    for (std::size_t c = 0; c < size; ++c) {
      const std::size_t left = 2 * x * size + c;
      const unsigned sum = upper[left] + upper[left + size] + lower[left] + lower[left + size] + 2U;
      to[x * size + c] = static_cast<std::uint8_t>(sum >> 2U);
    }
  }
}

void MirrorBytes(std::uint8_t* row, std::size_t pixels, std::size_t size) {
  if (pixels == 0) return;
  for (std::size_t left = 0, right = pixels - 1; left < right; ++left, --right) {
    std::swap_ranges(row + left * size, row + (left + 1) * size, row + right * size);
  }
}

void ExchangeRows(std::uint8_t* row, std::uint8_t* other, std::size_t count) {
  std::swap_ranges(row, row + count, other);
}

void FindPlaces(const PlaceLine& line, std::int32_t* to, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const double along = line.step * (line.first + static_cast<double>(i)) + line.start;
    to[i] = static_cast<std::int32_t>(std::floor((along + line.middle - 0.5) * 256 + 0.5));
  }
}

void Interpolate(const PlacedRow& row, std::uint8_t* to, std::size_t pixels, std::size_t size) {
  for (std::size_t i = 0; i < pixels; ++i, to += size) {
    const auto right = static_cast<std::uint32_t>(row.columns[i] & 255);
    const auto below = static_cast<std::uint32_t>(row.lines[i] & 255);
    const std::uint8_t* const at = row.base + static_cast<std::size_t>(row.lines[i] >> 8) * row.stride +
                                   static_cast<std::size_t>(row.columns[i] >> 8) * size;
    for (std::size_t c = 0; c < size; ++c) {
      const std::uint32_t upper = (256 - right) * at[c] + right * at[c + size];
      const std::uint32_t lower = (256 - right) * at[c + row.stride] + right * at[c + row.stride + size];
      to[c] = static_cast<std::uint8_t>(((256 - below) * upper + below * lower + 32768) >> 16U);
    }
  }
}

void ExchangeRedAndBlue(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size) {
  for (const std::uint8_t* const end = from + pixels * size; from != end; from += size, to += size) {
    const std::array<std::uint8_t, 3> colour{from[2], from[1], from[0]};
    if (size == 4) to[3] = from[3];
    std::ranges::copy(colour, to);
  }
}

void StreamExchanged(const std::uint8_t* from, std::uint8_t* to, std::size_t pixels, std::size_t size) {
  ExchangeRedAndBlue(from, to, pixels, size);
}

void TransposeTiles(const Tiles& tiles, std::size_t size) {
  const auto bytes = static_cast<std::ptrdiff_t>(size);
  for (std::ptrdiff_t column = 0; column < tiles.columns; ++column) {
    for (std::ptrdiff_t line = 0; line < tiles.lines; ++line) {
      std::copy_n(tiles.from + line * tiles.lineStep + column * bytes, size,
                  tiles.to + column * tiles.rowStep + line * bytes);
    }
  }
}

void StreamRows(const StreamedRows& rows) {
  for (std::int32_t y = 0; y < rows.count; ++y) {
    std::copy_n(rows.from + static_cast<std::size_t>(y) * rows.fromStep, rows.bytes, rows.to + y * rows.toStep);
  }
}

}  // namespace kw::kernels::scalar
