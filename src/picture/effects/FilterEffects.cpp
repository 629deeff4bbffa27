#include <cmath>
#include <utility>
#include <vector>

#include "picture/Depth.h"
#include "picture/effects/BitFilter.h"
#include "picture/effects/ColourFilter.h"
#include "picture/effects/Families.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/Pixels.h"
#include "picture/effects/RowWindow.h"
#include "picture/effects/WideBlur.h"

namespace kw {
namespace {

// The dimensions of a picture's row.
struct RowShape {
  explicit RowShape(const Bitmap& picture)
      : RowShape(picture.Width(), static_cast<std::size_t>(picture.BitsPerPixel() / 8)) {}
  // With one byte for each pixel.
  static RowShape OfLevels(const Bitmap& picture) { return {picture.Width(), 1}; }

  std::size_t width;
  std::size_t size;
  std::size_t count;

private:
  RowShape(std::int32_t pixels, std::size_t bytes)
      : width(static_cast<std::size_t>(pixels)), size(bytes), count(width * size) {}
};

// Runs a filter; if there is alpha, it weights the colours.
void FilterWithAlpha(Bitmap& picture, RowFilter filter) {
  const RowShape row(picture);
  if (row.size == 4) {
    filter.take = [row, margin = filter.margin](const std::uint8_t* from, std::uint8_t* to) {
      Premultiply(from, to, row.width);
      for (std::size_t i = 0; i < margin; ++i) {
        (to - margin)[i] = to[i % 4];
        to[row.count + i] = to[row.count - 4 + i % 4];
      }
    };
    filter.make = [row, make = std::move(filter.make)](const std::uint8_t* const* rows, std::uint8_t* to,
                                                       std::uint8_t* scratch) {
      make(rows, to, scratch);
      Unpremultiply(to, row.width);
    };
  } else {
    filter.take = [row, margin = filter.margin](const std::uint8_t* from, std::uint8_t* to) {
      TakeRepeated(from, to, row.count, row.size, margin);
    };
  }
  FilterRows(picture, filter);
}

// A page of black and white, which a filter can leave as 1 bit.
bool IsGreyBits(const Bitmap& picture) { return picture.BitsPerPixel() == 1 && HasGreyPalette(picture); }

// What a blur makes of rows.
RowFilter BlurOf(const RowShape& row, std::vector<std::int16_t> weights) {
  RowFilter filter;
  filter.radius = static_cast<std::int32_t>(weights.size()) - 1;
  filter.margin = (weights.size() - 1) * row.size;
  const std::size_t columns = row.count + 2 * filter.margin;
  filter.scratchBytes = (columns + Bitmap::RowAlignment) * sizeof(std::int16_t);
  filter.make = [row, columns, margin = filter.margin, own = std::move(weights)](
                    const std::uint8_t* const* rows, std::uint8_t* to, std::uint8_t* scratch) {
    auto* const mixed = reinterpret_cast<std::int16_t*>(scratch);
    kernels::BlurDown(rows, margin, mixed, columns, own);
    kernels::BlurAcross(mixed + margin, to, row.count, row.size, own);
  };
  return filter;
}

std::vector<std::int16_t> WeightsOf(double sigma) {
  return BellWeights(sigma, static_cast<std::int32_t>(std::ceil(3 * sigma)));
}

void BlurValues(Bitmap& picture, double sigma) {
  if (sigma >= LeastWideSigma) return BlurWidely(picture, sigma);
  auto weights = WeightsOf(sigma);
  if (!weights.empty()) FilterWithAlpha(picture, BlurOf(RowShape(picture), std::move(weights)));
}

// A wider bell would remove black lines of one pixel when the page becomes black and white again.
double SigmaOf(const Bitmap& picture, std::span<const double> values) {
  return values[0] != 0 ? values[0] : picture.BitsPerPixel() == 1 ? 0.8 : 1.5;
}

void Blur(Bitmap& picture, std::span<const double> values) {
  OnValues(picture, [sigma = SigmaOf(picture, values)](Bitmap& work) { BlurValues(work, sigma); });
}

bool BlurKeepingDepth(Bitmap& picture, std::span<const double> values) {
  const double sigma = SigmaOf(picture, values);
  if (!IsGreyBits(picture) || sigma >= LeastWideSigma) return false;
  auto weights = WeightsOf(sigma);
  if (weights.empty()) return false;
  FilterBits(picture, BlurOf(RowShape::OfLevels(picture), std::move(weights)));
  return true;
}

// What a filter of 3 x 3 pixels makes of rows.
RowFilter Around(const RowShape& row, const NeighbourhoodRow& make) {
  RowFilter filter;
  filter.margin = row.size;
  filter.make = [row, make](const std::uint8_t* const* rows, std::uint8_t* to, std::uint8_t*) {
    make(rows, to, row.count, row.size);
  };
  return filter;
}

bool FilterGreyBits(Bitmap& picture, const NeighbourhoodRow& make) {
  if (!IsGreyBits(picture)) return false;
  FilterBits(picture, Around(RowShape::OfLevels(picture), make));
  return true;
}

// Per cent as 256ths.
std::int32_t In256ths(double percent) { return static_cast<std::int32_t>(std::lround(percent * 2.56)); }

void Soften(Bitmap& picture, std::span<const double> /*values*/) {
  OnValues(picture, [](Bitmap& work) { FilterWithAlpha(work, Around(RowShape(work), kernels::Soften)); });
}

bool SoftenKeepingDepth(Bitmap& picture, std::span<const double> /*values*/) {
  return FilterGreyBits(picture, kernels::Soften);
}

NeighbourhoodRow SharpenBy(std::span<const double> values) {
  return [amount = In256ths(values[0])](const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count,
                                        std::size_t size) { kernels::Sharpen(rows, to, count, size, amount); };
}

void Sharpen(Bitmap& picture, std::span<const double> values) {
  OnValues(picture, [&](Bitmap& work) { FilterColours(work, SharpenBy(values)); });
}

bool SharpenKeepingDepth(Bitmap& picture, std::span<const double> values) {
  return FilterGreyBits(picture, SharpenBy(values));
}

void Edge(Bitmap& picture, std::span<const double> /*values*/) {
  OnValues(picture, [](Bitmap& work) { FilterColours(work, kernels::Edge); });
}

bool EdgeKeepingDepth(Bitmap& picture, std::span<const double> /*values*/) {
  return FilterGreyBits(picture, kernels::Edge);
}

NeighbourhoodRow EmbossBy(std::span<const double> values) {
  return [amount = In256ths(values[0])](const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count,
                                        std::size_t size) { kernels::Emboss(rows, to, count, size, amount); };
}

void Emboss(Bitmap& picture, std::span<const double> values) {
  OnValues(picture, [&](Bitmap& work) { FilterColours(work, EmbossBy(values)); });
}

bool EmbossKeepingDepth(Bitmap& picture, std::span<const double> values) {
  return FilterGreyBits(picture, EmbossBy(values));
}

constexpr Parameter BlurParameters[] = {
    {.name = "Sigma", .least = 0, .greatest = 50, .standard = 0, .unit = "pixels", .zero = "1.5, in 1 bit 0.8"}};
constexpr Parameter EmbossParameters[] = {
    {.name = "Percent", .least = 0, .greatest = 400, .standard = 100, .unit = "%"}};
constexpr Parameter SharpenParameters[] = {
    {.name = "Percent", .least = 0, .greatest = 400, .standard = 100, .unit = "%"}};

// Filters compute a pixel from its neighbourhood; beyond the edges the outermost pixels are repeated. A picture with a
// palette becomes 8 bits if the palette is grey, else 24 bits. Blur and Soften weight colours by their alpha and filter
// it too; the others leave it.
constexpr Effect FilterEffectsRows[] = {
    {.command = "Blur",
     .procedure = Blur,
     .parameters = BlurParameters,
     .resultingDepth = DepthOfValues,
     .memory = MemoryInValues,
     .keepingDepth = BlurKeepingDepth},
    {.command = "Edge",
     .procedure = Edge,
     .resultingDepth = DepthOfValues,
     .memory = MemoryInValues,
     .keepingDepth = EdgeKeepingDepth},
    {.command = "Emboss",
     .procedure = Emboss,
     .parameters = EmbossParameters,
     .resultingDepth = DepthOfValues,
     .memory = MemoryInValues,
     .keepingDepth = EmbossKeepingDepth},
    {.command = "Sharpen",
     .procedure = Sharpen,
     .parameters = SharpenParameters,
     .resultingDepth = DepthOfValues,
     .memory = MemoryInValues,
     .keepingDepth = SharpenKeepingDepth},
    {.command = "Soften",
     .procedure = Soften,
     .resultingDepth = DepthOfValues,
     .memory = MemoryInValues,
     .keepingDepth = SoftenKeepingDepth},
};

}  // namespace

std::span<const Effect> FilterEffects() { return FilterEffectsRows; }

}  // namespace kw
