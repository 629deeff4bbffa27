#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

#include "picture/Depth.h"
#include "picture/effects/Families.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/LumaHistogram.h"
#include "picture/effects/LumaRows.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

constexpr std::array<int, 5> Depths{1, 4, 8, 24, 32};

using Row = std::vector<std::uint8_t>;

// Otsu's level: the least white level of the two classes that lie farthest apart. Of equally good levels it is the
// middle one, which leaves the same margin to the paper and to the ink.
std::int32_t OtsuLevel(const LevelHistogram& counts) {
  double all = 0;
  double sum = 0;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const auto count = static_cast<double>(counts[i]);
    all += count;
    sum += static_cast<double>(i) * count;
  }
  double best = 0;
  std::int32_t first = 128;
  std::int32_t last = 128;
  double below = 0;
  double sumBelow = 0;
  for (std::int32_t level = 1; level < 256; ++level) {
    const auto darker = static_cast<std::size_t>(level - 1);
    const auto count = static_cast<double>(counts[darker]);
    below += count;
    sumBelow += static_cast<double>(darker) * count;
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

// Replaces level 0 by Otsu's level of the picture.
void FindLevel(const Bitmap& picture, std::span<double> values) {
  if (values[0] == 0) values[0] = OtsuLevel(LumaHistogramOf(picture));
}

// White if the luma is at least the level, else black; level 0 means Otsu's level. The result has 1 bit per pixel;
// transparent pixels are blended with a white background.
void Threshold(Bitmap& picture, std::span<const double> values) {
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 1);
  std::array found{values[0]};
  FindLevel(picture, found);
  const auto level = static_cast<std::uint8_t>(found[0]);
  const LumaRows luma(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  const auto bands = CutIntoRowBands(picture.Height(), BytesOf(picture));
  std::vector<Row> scratch(bands.size(), Row(luma.ScratchBytes()));
  ParallelFor(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      if (y + 1 < bands[i].end) luma.Prefetch(y + 1);
      kernels::ThresholdToBits(luma.Row(y, scratch[i].data()), to.Row(y), width, level);
    }
  });
  picture = std::move(result);
}

// Black and white by Floyd and Steinberg's error diffusion of the luma. Otherwise as Threshold.
void Dither(Bitmap& picture, std::span<const double> /*values*/) {
  constexpr std::size_t together = kernels::DiffusedRows::Count;
  constexpr std::size_t margin = kernels::DiffusedRows::Margin;
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 1);
  const LumaRows luma(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  std::array<Row, together> levels;
  std::array<Row, together> shown;
  std::vector<std::int16_t> errors(width + 2 * margin);
  kernels::DiffusedRows rows{};
  for (std::size_t i = 0; i < together; ++i) {
    levels[i].resize(luma.ScratchBytes() + 2 * margin);
    shown[i].resize(luma.ScratchBytes() + 2 * margin);
    rows.levels[i] = levels[i].data() + margin;
    rows.to[i] = shown[i].data() + margin;
  }
  rows.errors = errors.data() + margin;
  for (std::int32_t y = 0; y < picture.Height(); y += static_cast<std::int32_t>(together)) {
    // The last group may have fewer rows; the others of it are computed but not stored.
    const auto count = std::min(together, static_cast<std::size_t>(picture.Height() - y));
    for (std::size_t i = 0; i < count; ++i) {
      std::uint8_t* const own = levels[i].data() + margin;
      const std::uint8_t* const row = luma.Row(y + static_cast<std::int32_t>(i), own);
      if (row != own) std::memcpy(own, row, width);
    }
    kernels::Diffuse(rows, width);
    for (std::size_t i = 0; i < count; ++i) {
      kernels::ThresholdToBits(rows.to[i], to.Row(y + static_cast<std::int32_t>(i)), width, 128);
    }
  }
  picture = std::move(result);
}

std::uint64_t MemoryOfIncrease(const Bitmap& picture, std::span<const double> /*values*/) {
  const auto* const next = std::ranges::upper_bound(Depths, picture.BitsPerPixel());
  return PixelMemory(picture.Width(), picture.Height(), next != Depths.end() ? *next : picture.BitsPerPixel());
}

// Converts to the next depth above; 32 bits stay.
void IncreaseBpp(Bitmap& picture, std::span<const double> /*values*/) {
  const auto* const next = std::ranges::upper_bound(Depths, picture.BitsPerPixel());
  if (next != Depths.end()) picture = ToDepth(picture, *next);
}

// Converts to the next depth below; 1 bit stays.
void DecreaseBpp(Bitmap& picture, std::span<const double> /*values*/) {
  const auto* const same = std::ranges::lower_bound(Depths, picture.BitsPerPixel());
  if (same != Depths.begin()) picture = ToDepth(picture, *(same - 1));
}

constexpr Parameter ThresholdParameters[] = {
    {.name = "Level", .least = 0, .greatest = 255, .standard = 0, .whole = true, .zero = "found automatically"}};

constexpr Effect DepthEffectsRows[] = {
    {.command = "DecreaseBpp", .procedure = DecreaseBpp, .resultingDepth = "the next below among 32, 24, 8, 4, 1"},
    {.command = "Dither", .procedure = Dither, .resultingDepth = "1"},
    {.command = "IncreaseBpp",
     .procedure = IncreaseBpp,
     .resultingDepth = "the next above among 1, 4, 8, 24, 32",
     .memory = MemoryOfIncrease},
    {.command = "Threshold",
     .procedure = Threshold,
     .parameters = ThresholdParameters,
     .resultingDepth = "1",
     .asks = true,
     .find = FindLevel},
};

}  // namespace

std::span<const Effect> DepthEffects() { return DepthEffectsRows; }

}  // namespace kw
