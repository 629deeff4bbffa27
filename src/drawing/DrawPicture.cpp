#include "drawing/DrawPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "drawing/Blend.h"
#include "drawing/RowReader.h"

namespace kw {
namespace {

constexpr std::int32_t RowsAhead = 2;
constexpr float RoundingHalf = 0.5F;

std::int64_t Span(std::int32_t from, std::int32_t to) { return std::int64_t{to} - from; }

// Blends pixels with straight alpha over a row of the buffer.
void BlendRow(std::span<std::uint32_t> row, std::span<const std::uint32_t> above, bool isMasked) {
  if (isMasked) {
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = above[i] == 0 ? row[i] : above[i] & ColourBits;
    return;
  }
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::uint32_t alpha = above[i] >> 24U;
    if (alpha == 255) {
      row[i] = above[i] & ColourBits;
    } else if (alpha != 0) {
      row[i] = Mix(row[i], above[i], alpha);
    }
  }
}

// Prefetches the next rows of a small picture, because its short rows are far apart in the buffer.
void PrefetchShort(std::span<const std::uint32_t> row) {
  if (row.size() > 512) return;
  constexpr std::size_t step = 64 / sizeof(std::uint32_t);
  for (std::size_t i = 0; i < row.size(); i += step) __builtin_prefetch(&row[i], 1);
}

void DrawUnscaled(const FrameBuffer& target, const RowReader& reader, const PixelRect& bounds, const PixelRect& part) {
  const auto x = static_cast<std::int32_t>(Span(bounds.left, part.left));
  std::vector<std::uint32_t> pixels;
  if (!reader.IsOpaque()) pixels.resize(static_cast<std::size_t>(part.Width()));
  for (std::int32_t y = part.top; y < part.bottom; ++y) {
    const auto row = target.Row(y, part.left, part.right);
    const auto sourceY = static_cast<std::int32_t>(Span(bounds.top, y));
    if (reader.IsOpaque()) {
      reader.Read(x, sourceY, row);
    } else {
      if (part.bottom - y > RowsAhead) PrefetchShort(target.Row(y + RowsAhead, part.left, part.right));
      reader.Read(x, sourceY, pixels);
      BlendRow(row, pixels, reader.IsMasked());
    }
  }
}

// The source pixels that one target pixel averages in one direction; their weights add up to 1.
struct Taps {
  std::int32_t first = 0;
  std::vector<float> weights;
};

Taps TapsOf(std::int64_t at, std::int32_t sourceSize, std::int64_t targetSize) {
  const double scale = static_cast<double>(sourceSize) / static_cast<double>(targetSize);
  Taps taps;
  if (scale < 1) {
    const double middle = (static_cast<double>(at) + 0.5) * scale - 0.5;
    const double low = std::floor(middle);
    const auto share = static_cast<float>(middle - low);
    taps.first = static_cast<std::int32_t>(low);
    // Beyond the picture's edges its edge pixels repeat.
    if (taps.first < 0 || taps.first + 1 >= sourceSize) {
      taps.first = std::clamp(taps.first, 0, sourceSize - 1);
      taps.weights = {1.0F};
    } else {
      taps.weights = {1 - share, share};
    }
    return taps;
  }
  const double start = static_cast<double>(at) * scale;
  const double end = static_cast<double>(at + 1) * scale;
  taps.first = std::min(static_cast<std::int32_t>(start), sourceSize - 1);
  const std::int32_t last = std::clamp(static_cast<std::int32_t>(std::ceil(end)) - 1, taps.first, sourceSize - 1);
  for (std::int32_t i = taps.first; i <= last; ++i) {
    const double covered = std::min<double>(end, i + 1) - std::max<double>(start, i);
    taps.weights.push_back(static_cast<float>(covered / scale));
  }
  return taps;
}

// A pixel's channels in the order blue, green, red, alpha; premultiplied.
using Channels = std::array<float, 4>;

// Converts straight to premultiplied alpha. Not for opaque pictures: their alpha byte is 0.
void Multiply(std::span<std::uint32_t> pixels) {
  for (std::uint32_t& pixel : pixels) {
    const std::uint32_t alpha = pixel >> 24U;
    if (alpha != 255) pixel = Mix(0, pixel, alpha) | (alpha << 24U);
  }
}

void AddWeighted(std::span<Channels> sums, std::span<const std::uint32_t> pixels, float weight) {
  float* const to = sums.front().data();
  const auto bytes = std::as_bytes(pixels);
  for (std::size_t i = 0; i < bytes.size(); ++i)
    to[i] += weight * static_cast<float>(static_cast<std::uint8_t>(bytes[i]));
}

// Rounds to nearest, faster than the library.
std::uint32_t RoundedByte(float value) {
  return static_cast<std::uint32_t>(static_cast<std::int32_t>(value + RoundingHalf));
}

void DrawScaled(const FrameBuffer& target, const Bitmap& picture, const RowReader& reader, const PixelRect& bounds,
                const PixelRect& part) {
  std::vector<Taps> columns;
  columns.reserve(static_cast<std::size_t>(part.Width()));
  for (std::int32_t x = part.left; x < part.right; ++x) {
    columns.push_back(TapsOf(Span(bounds.left, x), picture.Width(), Span(bounds.left, bounds.right)));
  }
  const std::int32_t firstColumn = columns.front().first;
  const auto count = static_cast<std::size_t>(columns.back().first - firstColumn) + columns.back().weights.size();
  std::vector<std::uint32_t> source(count);
  std::vector<Channels> sums(count);
  for (std::int32_t y = part.top; y < part.bottom; ++y) {
    const Taps rows = TapsOf(Span(bounds.top, y), picture.Height(), Span(bounds.top, bounds.bottom));
    std::ranges::fill(sums, Channels{});
    for (std::size_t i = 0; i < rows.weights.size(); ++i) {
      reader.Read(firstColumn, rows.first + static_cast<std::int32_t>(i), source);
      if (!reader.IsOpaque() && !reader.IsMasked()) Multiply(source);
      AddWeighted(sums, source, rows.weights[i]);
    }
    const auto row = target.Row(y, part.left, part.right);
    for (std::size_t i = 0; i < row.size(); ++i) {
      Channels pixel = {};
      const Channels* from = &sums[static_cast<std::size_t>(columns[i].first - firstColumn)];
      for (const float weight : columns[i].weights) {
        for (std::size_t channel = 0; channel < 4; ++channel) pixel[channel] += weight * (*from)[channel];
        ++from;
      }
      if (!reader.IsOpaque()) {
        const float rest = std::max(0.0F, 1 - pixel[3] / 255);
        for (unsigned channel = 0; channel < 3; ++channel) {
          const auto below = static_cast<std::int32_t>((row[i] >> (channel * 8)) & 0xFFU);
          pixel[channel] = std::min(pixel[channel] + rest * static_cast<float>(below), 255.0F);
        }
      }
      row[i] = RoundedByte(pixel[0]) | (RoundedByte(pixel[1]) << 8U) | (RoundedByte(pixel[2]) << 16U);
    }
  }
}

}  // namespace

void DrawPicture(const FrameBuffer& target, const Bitmap& picture, const PixelRect& bounds,
                 const DrawOptions& options) {
  const PixelRect part = Common(bounds, target.area);
  if (picture.IsEmpty() || part.IsEmpty()) return;
  const RowReader reader(picture, options);
  if (Span(bounds.left, bounds.right) == picture.Width() && Span(bounds.top, bounds.bottom) == picture.Height()) {
    DrawUnscaled(target, reader, bounds, part);
  } else {
    DrawScaled(target, picture, reader, bounds, part);
  }
}

}  // namespace kw
