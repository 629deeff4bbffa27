#include "picture/effects/DepthEffects.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "picture/Depth.h"
#include "picture/effects/Bands.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

constexpr std::array<int, 5> Depths{1, 4, 8, 24, 32};

// Gives the brightness of each row's pixels, on white paper.
class BrightnessOf {
public:
  explicit BrightnessOf(const Bitmap& picture)
      : from(picture), width(static_cast<std::size_t>(picture.Width())), depth(picture.BitsPerPixel()) {
    for (std::size_t i = 0; i < picture.Palette().size(); ++i) levels[i] = Luma(picture.Palette()[i]);
  }

  // `to` has room for the row rounded up to RowAlignment.
  void Row(std::int32_t y, std::uint8_t* to) const {
    const std::uint8_t* const row = from.Row(y);
    if (depth == 24) {
      kernels::Brightness(row, to, width);
    } else if (depth == 32) {
      for (std::size_t x = 0; x < width; ++x) {
        const std::uint8_t* const at = row + x * 4;
        const auto onPaper = [alpha = at[3]](unsigned value) {
          return static_cast<std::uint8_t>((value * alpha + 255U * (255U - alpha) + 127) / 255);
        };
        to[x] = Luma({onPaper(at[2]), onPaper(at[1]), onPaper(at[0])});
      }
    } else if (depth == 8) {
      for (std::size_t x = 0; x < width; ++x) to[x] = levels[row[x]];
    } else {
      const std::span bytes(row, PackedRowBytes(static_cast<std::int32_t>(width), depth));
      for (std::size_t x = 0; x < width; ++x) to[x] = levels[PaletteIndexAt(bytes, x, depth)];
    }
  }

private:
  ConstPixels from;
  std::size_t width;
  int depth;
  ByteTable levels{};
};

std::vector<std::uint8_t> RowBuffer(const Bitmap& picture) {
  constexpr std::size_t alignment = Bitmap::RowAlignment;
  return std::vector<std::uint8_t>((static_cast<std::size_t>(picture.Width()) + alignment - 1) / alignment * alignment);
}

using Histogram = std::array<std::uint32_t, 256>;

Histogram HistogramOf(const Bitmap& picture) {
  const BrightnessOf brightness(picture);
  const auto bands = CutIntoBands(picture.Height(), BytesOf(picture));
  const auto width = static_cast<std::size_t>(picture.Width());
  std::vector<Histogram> parts(bands.size());
  std::vector<std::vector<std::uint8_t>> rows(bands.size(), RowBuffer(picture));
  RunTogether(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      brightness.Row(y, rows[i].data());
      for (std::size_t x = 0; x < width; ++x) ++parts[i][rows[i][x]];
    }
  });
  for (std::size_t i = 1; i < parts.size(); ++i) {
    for (std::size_t level = 0; level < 256; ++level) parts[0][level] += parts[i][level];
  }
  return parts[0];
}

// The least level that counts as white where the two classes lie farthest apart. Of equally good levels it is the
// middle one, so that the paper's and the ink's noise have the same room.
std::int32_t OtsuLevel(const Histogram& counts) {
  double all = 0;
  double sum = 0;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    all += counts[i];
    sum += static_cast<double>(i) * counts[i];
  }
  double best = 0;
  std::int32_t first = 128;
  std::int32_t last = 128;
  double below = 0;
  double sumBelow = 0;
  for (std::int32_t level = 1; level < 256; ++level) {
    const auto darker = static_cast<std::size_t>(level - 1);
    below += counts[darker];
    sumBelow += static_cast<double>(darker) * counts[darker];
    const double above = all - below;
    if (below == 0 || above == 0) continue;
    const double apart = sumBelow / below - (sum - sumBelow) / above;
    const double between = below * above * apart * apart;
    if (between > best) {
      best = between;
      first = last = level;
    } else if (between == best && last == level - 1) {
      last = level;
    }
  }
  return (first + last) / 2;
}

}  // namespace

void Threshold(Bitmap& picture, std::span<const double> values) {
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 1);
  const auto given = static_cast<std::int32_t>(values[0]);
  const auto level = static_cast<std::uint8_t>(given != 0 ? given : OtsuLevel(HistogramOf(picture)));
  const BrightnessOf brightness(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  const auto bands = CutIntoBands(picture.Height(), BytesOf(picture));
  std::vector<std::vector<std::uint8_t>> rows(bands.size(), RowBuffer(picture));
  RunTogether(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      brightness.Row(y, rows[i].data());
      kernels::PackAtLeast(rows[i].data(), to.Row(y), width, level);
    }
  });
  picture = std::move(result);
}

void Dither(Bitmap& picture, std::span<const double>) {
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 1);
  const BrightnessOf brightness(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  auto levels = RowBuffer(picture);
  // What the row above hands down, in sixteenths; one more pixel on either side takes what falls off the page.
  std::vector<std::int16_t> errors(width + 2);
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    brightness.Row(y, levels.data());
    kernels::DiffuseRow(levels.data(), errors.data(), to.Row(y), width);
  }
  picture = std::move(result);
}

void IncreaseBpp(Bitmap& picture, std::span<const double>) {
  const auto* const next = std::ranges::upper_bound(Depths, picture.BitsPerPixel());
  if (next != Depths.end()) picture = ToDepth(picture, *next);
}

void DecreaseBpp(Bitmap& picture, std::span<const double>) {
  const auto* const same = std::ranges::lower_bound(Depths, picture.BitsPerPixel());
  if (same != Depths.begin()) picture = ToDepth(picture, *(same - 1));
}

}  // namespace kw
