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
      : from(picture),
        width(static_cast<std::size_t>(picture.Width())),
        depth(picture.BitsPerPixel()),
        isRamp(HasGreyRamp(picture)) {
    for (std::size_t i = 0; i < picture.Palette().size(); ++i) levels[i] = Luma(picture.Palette()[i]);
  }

  // The row, in `room` or where it lies as it is. Room is for the width rounded up to RowAlignment.
  const std::uint8_t* Row(std::int32_t y, std::uint8_t* room) const {
    const std::uint8_t* const row = from.Row(y);
    if (isRamp) return row;
    if (depth == 24) {
      kernels::Brightness(row, room, width);
    } else if (depth == 32) {
      for (std::size_t x = 0; x < width; ++x) room[x] = OnPaper(row + x * 4);
    } else {
      kernels::Expand(row, room, width, depth, levels);
    }
    return room;
  }

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
  ByteTable levels{};
};

std::size_t RoundedWidth(const Bitmap& picture) {
  constexpr std::size_t alignment = Bitmap::RowAlignment;
  return (static_cast<std::size_t>(picture.Width()) + alignment - 1) / alignment * alignment;
}

using Row = std::vector<std::uint8_t>;

// A page of 1 bit can have more pixels than 32 bits count.
using Histogram = std::array<std::uint64_t, 256>;

Histogram HistogramOf(const Bitmap& picture) {
  const BrightnessOf brightness(picture);
  const auto bands = CutIntoBands(picture.Height(), BytesOf(picture));
  const auto width = static_cast<std::size_t>(picture.Width());
  // Four counts side by side, because neighbours are often equal and one count would wait for the other.
  struct Work {
    std::array<Histogram, 4> counts{};
    Row room;
  };
  std::vector<Work> works(bands.size());
  for (Work& work : works) work.room.resize(RoundedWidth(picture));
  RunTogether(bands.size(), [&](std::size_t i) {
    auto& counts = works[i].counts;
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      const std::uint8_t* const row = brightness.Row(y, works[i].room.data());
      std::size_t x = 0;
      for (; x + 4 <= width; x += 4) {
        for (std::size_t k = 0; k < 4; ++k) ++counts[k][row[x + k]];
      }
      for (; x < width; ++x) ++counts[0][row[x]];
    }
  });
  Histogram sum{};
  for (const Work& work : works) {
    for (const Histogram& counts : work.counts) {
      for (std::size_t level = 0; level < sum.size(); ++level) sum[level] += counts[level];
    }
  }
  return sum;
}

// The least level that counts as white where the two classes lie farthest apart. Of equally good levels it is the
// middle one, so that the paper's and the ink's noise have the same room.
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

}  // namespace

void FindLevel(const Bitmap& picture, std::span<double> values) {
  if (values[0] == 0) values[0] = OtsuLevel(HistogramOf(picture));
}

void Threshold(Bitmap& picture, std::span<const double> values) {
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 1);
  std::array found{values[0]};
  FindLevel(picture, found);
  const auto level = static_cast<std::uint8_t>(found[0]);
  const BrightnessOf brightness(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  const auto bands = CutIntoBands(picture.Height(), BytesOf(picture));
  std::vector<Row> rooms(bands.size(), Row(RoundedWidth(picture)));
  RunTogether(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      kernels::PackAtLeast(brightness.Row(y, rooms[i].data()), to.Row(y), width, level);
    }
  });
  picture = std::move(result);
}

void Dither(Bitmap& picture, std::span<const double> /*values*/) {
  constexpr std::size_t together = kernels::DiffusedRows::Count;
  Bitmap result = Like(picture, picture.Width(), picture.Height(), 1);
  const BrightnessOf brightness(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(picture.Width());
  std::array<Row, together> rooms;
  std::array<Row, together> shown;
  std::array<std::vector<std::int16_t>, together + 1> errors;
  kernels::DiffusedRows rows{};
  for (std::size_t i = 0; i < together; ++i) {
    rooms[i].resize(RoundedWidth(picture));
    shown[i].resize(RoundedWidth(picture));
    rows.to[i] = shown[i].data();
  }
  for (std::size_t i = 0; i <= together; ++i) {
    errors[i].resize(width + 2);
    rows.errors[i] = errors[i].data();
  }
  for (std::int32_t y = 0; y < picture.Height(); y += static_cast<std::int32_t>(together)) {
    // The last rows may be fewer; what runs beside them then shows nowhere.
    const auto count = std::min(together, static_cast<std::size_t>(picture.Height() - y));
    for (std::size_t i = 0; i < together; ++i) {
      rows.levels[i] = i < count ? brightness.Row(y + static_cast<std::int32_t>(i), rooms[i].data()) : rooms[i].data();
    }
    kernels::Diffuse(rows, width);
    for (std::size_t i = 0; i < count; ++i) {
      kernels::PackAtLeast(shown[i].data(), to.Row(y + static_cast<std::int32_t>(i)), width, 128);
    }
    std::swap(rows.errors[0], rows.errors[together]);
  }
  picture = std::move(result);
}

std::uint64_t MemoryOfIncrease(const Bitmap& picture, std::span<const double> /*values*/) {
  const auto* const next = std::ranges::upper_bound(Depths, picture.BitsPerPixel());
  return PixelMemory(picture.Width(), picture.Height(), next != Depths.end() ? *next : picture.BitsPerPixel());
}

void IncreaseBpp(Bitmap& picture, std::span<const double> /*values*/) {
  const auto* const next = std::ranges::upper_bound(Depths, picture.BitsPerPixel());
  if (next != Depths.end()) picture = ToDepth(picture, *next);
}

void DecreaseBpp(Bitmap& picture, std::span<const double> /*values*/) {
  const auto* const same = std::ranges::lower_bound(Depths, picture.BitsPerPixel());
  if (same != Depths.begin()) picture = ToDepth(picture, *(same - 1));
}

}  // namespace kw
