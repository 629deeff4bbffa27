#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstring>
#include <utility>
#include <vector>

#include "picture/Depth.h"
#include "picture/effects/Families.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

constexpr std::array<int, 5> Depths{1, 4, 8, 24, 32};

// The luma of the pixels of each row, on a white background.
class LumaRows {
public:
  explicit LumaRows(const Bitmap& picture)
      : from(picture),
        width(static_cast<std::size_t>(picture.Width())),
        depth(picture.BitsPerPixel()),
        isRamp(HasGreyRamp(picture)) {
    for (std::size_t i = 0; i < picture.Palette().size(); ++i) levels[i] = Luma(picture.Palette()[i]);
  }

  // The row, computed into `scratch` or as it is stored. `scratch` holds the width rounded up to RowAlignment.
  const std::uint8_t* Row(std::int32_t y, std::uint8_t* scratch) const {
    const std::uint8_t* const row = from.Row(y);
    if (isRamp) return row;
    if (depth == 24) {
      kernels::Luma(row, scratch, width);
    } else if (depth == 32) {
      for (std::size_t x = 0; x < width; ++x) scratch[x] = OnPaper(row + x * 4);
    } else {
      kernels::UnpackLevels(row, scratch, width, depth, levels);
    }
    return scratch;
  }

  void Prefetch(std::int32_t y) const { PrefetchRow(from.Row(y), (width * static_cast<std::size_t>(depth) + 7) / 8); }

private:
  static std::uint8_t OnPaper(const std::uint8_t* pixel) {
    const auto mixed = [alpha = pixel[3]](unsigned value) {
      return static_cast<std::uint8_t>((value * alpha + 255U * (255U - alpha) + 127) / 255);
    };
    return Luma({mixed(pixel[2]), mixed(pixel[1]), mixed(pixel[0])});
  }

  ConstPixels from;
  std::size_t width;
  int depth;
  bool isRamp;
  Lut levels{};
};

std::size_t RoundedWidth(const Bitmap& picture) {
  constexpr std::size_t alignment = Bitmap::RowAlignment;
  return (static_cast<std::size_t>(picture.Width()) + alignment - 1) / alignment * alignment;
}

using Row = std::vector<std::uint8_t>;

// 32 bits are too few for the pixels of the largest page of 1 bit.
using Histogram = std::array<std::uint64_t, 256>;

// Counts levels, a pair of neighbours in one step: a step ends with a write to memory, and these take the time.
class LevelCounter {
public:
  LevelCounter() : pairs(Levels * Levels) {}

  void Add(const std::uint8_t* row, std::size_t count) {
    // Wider rows than half of what a counter holds are more than a picture can have.
    constexpr std::size_t most = std::size_t{1} << 31U;
    if ((counted += count) > most) Flush();
    const auto wordAt = [row](std::size_t x) {
      std::uint64_t word = 0;
      std::memcpy(&word, row + x, sizeof word);
      return word;
    };
    std::uint32_t* const counts = pairs.data();
    constexpr std::size_t wordBytes = sizeof(std::uint64_t);
    constexpr unsigned pairBits = 16;
    std::size_t x = 0;
    for (; x + 2 * wordBytes <= count; x += 2 * wordBytes) {
      const std::uint64_t words[] = {wordAt(x), wordAt(x + wordBytes)};
      // Paper without noise: many writes to one counter would wait for each other.
      if (words[0] == words[1] && words[0] == std::rotl(words[0], 8)) {
        sum[words[0] % Levels] += 2 * wordBytes;
        continue;
      }
      for (const std::uint64_t word : words) {
        for (unsigned shift = 0; shift < 8 * wordBytes; shift += pairBits) ++counts[word >> shift & 0xFFFFU];
      }
    }
    for (; x < count; ++x) ++sum[row[x]];
  }

  void AddTo(Histogram& whole) {
    Flush();
    for (std::size_t level = 0; level < Levels; ++level) whole[level] += sum[level];
  }

private:
  static constexpr std::size_t Levels = 256;

  void Flush() {
    std::array<std::uint32_t, Levels> lowers{};
    for (std::size_t upper = 0; upper < Levels; ++upper) {
      std::uint32_t* const own = pairs.data() + upper * Levels;
      std::uint32_t both = 0;
      for (std::size_t lower = 0; lower < Levels; ++lower) {
        both += own[lower];
        lowers[lower] += own[lower];
      }
      sum[upper] += both;
      std::fill_n(own, Levels, 0);
    }
    for (std::size_t lower = 0; lower < Levels; ++lower) sum[lower] += lowers[lower];
    counted = 0;
  }

  std::vector<std::uint32_t> pairs;
  std::size_t counted = 0;
  Histogram sum{};
};

Histogram HistogramOf(const Bitmap& picture) {
  const LumaRows luma(picture);
  const auto bands = CutIntoRowBands(picture.Height(), BytesOf(picture));
  const auto width = static_cast<std::size_t>(picture.Width());
  struct Work {
    LevelCounter counter;
    Row scratch;
  };
  std::vector<Work> works(ThreadsFor(bands.size()));
  for (Work& work : works) work.scratch.resize(RoundedWidth(picture));
  std::atomic<std::size_t> next{0};
  ParallelFor(works.size(), [&](std::size_t own) {
    Work& work = works[own];
    for (std::size_t i = next++; i < bands.size(); i = next++) {
      for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
        if (y + 1 < bands[i].end) luma.Prefetch(y + 1);
        work.counter.Add(luma.Row(y, work.scratch.data()), width);
      }
    }
  });
  Histogram sum{};
  for (Work& work : works) work.counter.AddTo(sum);
  return sum;
}

// Otsu's level: the least white level of the two classes that lie farthest apart. Of equally good levels it is the
// middle one, which leaves the same margin to the paper and to the ink.
std::int32_t OtsuLevel(const Histogram& counts) {
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
  if (values[0] == 0) values[0] = OtsuLevel(HistogramOf(picture));
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
  std::vector<Row> scratch(bands.size(), Row(RoundedWidth(picture)));
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
    levels[i].resize(RoundedWidth(picture) + 2 * margin);
    shown[i].resize(RoundedWidth(picture) + 2 * margin);
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
