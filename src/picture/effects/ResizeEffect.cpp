#include <algorithm>
#include <array>
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

// The rows of a picture in values; colours are multiplied by alpha if there is one. A picture with a palette is not
// converted as a whole: that would take many times its memory.
class ResizeSource {
public:
  explicit ResizeSource(const Bitmap& original)
      : picture(original),
        pixels(picture),
        width(static_cast<std::size_t>(picture.Width())),
        depth(picture.BitsPerPixel()),
        size(static_cast<std::size_t>(DepthInValues(picture) / 8)),
        isStored(depth == 24 || HasGreyRamp(picture)) {
    std::ranges::copy(picture.Palette(), palette.begin());
    std::ranges::transform(palette, levels.begin(), &Rgb::red);
  }

  // Bytes of a pixel and of a row in values.
  std::size_t PixelBytes() const { return size; }
  std::size_t RowBytes() const { return width * size; }
  // What Row() needs to compute a row.
  std::size_t ScratchBytes() const { return isStored ? 0 : RowBytes() + Bitmap::RowAlignment; }

  // The row as it is stored, or computed in `scratch`.
  const std::uint8_t* Row(std::int32_t y, std::uint8_t* scratch) const {
    const std::uint8_t* const row = pixels.Row(y);
    if (isStored) return row;
    if (size == 4) {
      Premultiply(row, scratch, width);
    } else if (size == 1) {
      kernels::UnpackLevels(row, scratch, width, depth, levels);
    } else {
      for (std::size_t x = 0; x < width; ++x) {
        const Rgb colour = palette[PaletteIndexAt({row, picture.RowBytes()}, x, depth)];
        scratch[3 * x] = colour.blue;
        scratch[3 * x + 1] = colour.green;
        scratch[3 * x + 2] = colour.red;
      }
    }
    return scratch;
  }

private:
  const Bitmap& picture;
  ConstPixels pixels;
  std::size_t width;
  int depth;
  std::size_t size;
  bool isStored;
  std::array<Rgb, 256> palette{};
  Lut levels{};
};

void Scale(const Bitmap& picture, Bitmap& result, bool bicubic) {
  const ResizeWeights across(picture.Width(), result.Width(), bicubic);
  const ResizeWeights down(picture.Height(), result.Height(), bicubic);
  const ResizeSource source(picture);
  const Pixels to(result);
  const std::size_t count = source.RowBytes();
  const std::size_t size = source.PixelBytes();
  const auto width = static_cast<std::size_t>(result.Width());
  const std::uint64_t read = PixelMemory(picture.Width(), picture.Height(), result.BitsPerPixel());
  const auto bands = CutIntoRowBands(result.Height(), 4 * std::max(read, BytesOf(result)));
  struct Work {
    std::vector<std::uint8_t> row;
    std::vector<std::int32_t> sums;
    std::vector<std::int16_t> mixed;
  };
  std::vector<Work> works(bands.size());
  for (Work& work : works) {
    work.row.resize(source.ScratchBytes());
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
      if (size == 4) Unpremultiply(to.Row(y), width);
    }
  });
}

// Halves both sides of a picture without alpha.
void Downsample2(const Bitmap& picture, Bitmap& result) {
  const ResizeSource source(picture);
  const Pixels to(result);
  const auto width = static_cast<std::size_t>(result.Width());
  const std::uint64_t read = PixelMemory(picture.Width(), picture.Height(), result.BitsPerPixel());
  const auto bands = CutIntoRowBands(result.Height(), read);
  const std::size_t scratch = source.ScratchBytes();
  std::vector<std::vector<std::uint8_t>> rows(bands.size(), std::vector<std::uint8_t>(2 * scratch));
  const ConstPixels from(picture);
  ParallelFor(bands.size(), [&](std::size_t i) {
    for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
      if (y + 1 < bands[i].end) {
        PrefetchRow(from.Row(2 * y + 2), picture.RowBytes());
        PrefetchRow(from.Row(2 * y + 3), picture.RowBytes());
      }
      const std::uint8_t* const upper = source.Row(2 * y, rows[i].data());
      const std::uint8_t* const lower = source.Row(2 * y + 1, rows[i].data() + scratch);
      kernels::BoxDownsample2(upper, lower, to.Row(y), width, source.PixelBytes());
    }
  });
}

// A width or height that is not 0 overrides the percentage; if only one of them is given, the other side follows in
// proportion. A smaller side averages the area of each new pixel; a larger one uses the kernel. The resolution stays. A
// picture with a palette becomes 8 bits if it is grey, else 24 bits; colours are weighted by alpha.
void Resize(Bitmap& picture, std::span<const double> values) {
  const PictureSize size = ResizedSize(picture, values);
  Bitmap result = Like(picture, size.width, size.height, DepthInValues(picture));
  const bool isHalf =
      picture.Width() == 2 * std::int64_t{size.width} && picture.Height() == 2 * std::int64_t{size.height};
  if (isHalf && picture.BitsPerPixel() != 32) {
    Downsample2(picture, result);
  } else {
    Scale(picture, result, values[3] != 0);
  }
  picture = std::move(result);
}

std::uint64_t MemoryOfResize(const Bitmap& picture, std::span<const double> values) {
  const PictureSize size = ResizedSize(picture, values);
  return PixelMemory(size.width, size.height, DepthInValues(picture));
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
