#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include "components/base/RunTimeError.h"
#include "picture/effects/Families.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"
#include "picture/effects/ResizeWeights.h"

namespace kw {
namespace {

std::int32_t WholeSize(double exact) {
  if (exact > 1e9) Raise(ErrorNumber::OutOfMemory);
  return std::max(1, static_cast<std::int32_t>(std::floor(exact + 0.5)));
}

PictureSize ResizedSize(const Bitmap& picture, std::span<const double> values) {
  const double width = picture.Width();
  const double height = picture.Height();
  const double givenWidth = values[1];
  const double givenHeight = values[2];
  if (givenWidth == 0 && givenHeight == 0) {
    return {WholeSize(width * values[0] / 100), WholeSize(height * values[0] / 100)};
  }
  return {WholeSize(givenWidth != 0 ? givenWidth : width * givenHeight / height),
          WholeSize(givenHeight != 0 ? givenHeight : height * givenWidth / width)};
}

// The rows of a picture; colours are multiplied by alpha if there is one.
class ResizeSource {
public:
  explicit ResizeSource(const Bitmap& picture)
      : pixels(picture), count(picture.RowBytes()), hasAlpha(picture.BitsPerPixel() == 32) {}

  // `scratch` must hold a row; it is used if the row has to be computed.
  const std::uint8_t* Row(std::int32_t y, std::uint8_t* scratch) const {
    const std::uint8_t* const row = pixels.Row(y);
    if (!hasAlpha) return row;
    Premultiply(row, scratch, count / 4);
    return scratch;
  }

private:
  ConstPixels pixels;
  std::size_t count;
  bool hasAlpha;
};

void Scale(const Bitmap& picture, Bitmap& result, bool bicubic) {
  const ResizeWeights across(picture.Width(), result.Width(), bicubic);
  const ResizeWeights down(picture.Height(), result.Height(), bicubic);
  const ResizeSource source(picture);
  const Pixels to(result);
  const std::size_t count = picture.RowBytes();
  const auto size = static_cast<std::size_t>(picture.BitsPerPixel() / 8);
  const bool hasAlpha = size == 4;
  const auto width = static_cast<std::size_t>(result.Width());
  const auto bands = CutIntoRowBands(result.Height(), 4 * std::max(BytesOf(picture), BytesOf(result)));
  struct Work {
    std::vector<std::uint8_t> row;
    std::vector<std::int32_t> sums;
    std::vector<std::int16_t> mixed;
  };
  std::vector<Work> works(bands.size());
  for (Work& work : works) {
    work.row.resize(hasAlpha ? count : 0);
    work.sums.resize(count + Bitmap::RowAlignment);
    work.mixed.resize(count + Bitmap::RowAlignment);
  }
  ParallelFor(bands.size(), [&](std::size_t i) {
    Work& work = works[i];
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      const auto taps = down.At(y);
      std::ranges::fill(work.sums, 0);
      for (std::size_t tap = 0; tap < taps.weights.size(); ++tap) {
        const std::int32_t line = std::clamp(taps.first + static_cast<std::int32_t>(tap), 0, picture.Height() - 1);
        kernels::AddWeighted(source.Row(line, work.row.data()), work.sums.data(), count, taps.weights[tap]);
      }
      kernels::PackSums(work.sums.data(), work.mixed.data(), count);
      across.Row(work.mixed.data(), to.Row(y), size);
      if (hasAlpha) Unpremultiply(to.Row(y), width);
    }
  });
}

// Halves both sides.
void Downsample2(const Bitmap& picture, Bitmap& result) {
  const ConstPixels from(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(result.Width());
  const auto size = static_cast<std::size_t>(picture.BitsPerPixel() / 8);
  ParallelForRows(result.Height(), BytesOf(picture), [&](RowBand band) {
    for (std::int32_t y = band.begin; y < band.end; ++y) {
      if (y + 1 < band.end) {
        PrefetchRow(from.Row(2 * y + 2), picture.RowBytes());
        PrefetchRow(from.Row(2 * y + 3), picture.RowBytes());
      }
      kernels::BoxDownsample2(from.Row(2 * y), from.Row(2 * y + 1), to.Row(y), width, size);
    }
  });
}

// A width or height that is not 0 overrides the percentage; if only one of them is given, the other side follows in
// proportion. A smaller side averages the area of each new pixel; a larger one uses the kernel. The resolution stays. A
// picture with a palette becomes 8 bits if it is grey, else 24 bits; colours are weighted by alpha.
void Resize(Bitmap& picture, std::span<const double> values) {
  const PictureSize size = ResizedSize(picture, values);
  const Bitmap original = InValues(picture);
  Bitmap result = Like(original, size.width, size.height, original.BitsPerPixel());
  const bool isHalf =
      original.Width() == 2 * std::int64_t{size.width} && original.Height() == 2 * std::int64_t{size.height};
  if (isHalf && original.BitsPerPixel() != 32) {
    Downsample2(original, result);
  } else {
    Scale(original, result, values[3] != 0);
  }
  picture = std::move(result);
}

std::uint64_t MemoryOfResize(const Bitmap& picture, std::span<const double> values) {
  const PictureSize size = ResizedSize(picture, values);
  const std::uint64_t result = PixelMemory(size.width, size.height, DepthInValues(picture));
  return std::max(result, MemoryInValues(picture, values));
}

constexpr std::string_view ResizeKernels[] = {"Lanczos", "Bicubic"};
constexpr std::string_view InProportion = "in proportion";
constexpr Parameter ResizeParameters[] = {
    {.name = "Percent", .least = 1, .greatest = 1000, .standard = 50, .unit = "%"},
    {.name = "Width",
     .least = 0,
     .greatest = 100000,
     .standard = 0,
     .whole = true,
     .unit = "pixels",
     .zero = InProportion},
    {.name = "Height",
     .least = 0,
     .greatest = 100000,
     .standard = 0,
     .whole = true,
     .unit = "pixels",
     .zero = InProportion},
    {.name = "Kernel", .least = 0, .greatest = 1, .standard = 0, .whole = true, .choices = ResizeKernels}};

constexpr Effect ResizeEffectRows[] = {
    {.command = "Resize",
     .procedure = Resize,
     .parameters = ResizeParameters,
     .resultingDepth = DepthOfValues,
     .asks = true,
     .memory = MemoryOfResize,
     .movesPixels = true},
};

}  // namespace

std::span<const Effect> ResizeEffect() { return ResizeEffectRows; }

}  // namespace kw
