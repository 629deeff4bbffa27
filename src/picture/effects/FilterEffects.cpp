#include <cmath>
#include <vector>

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
      : width(static_cast<std::size_t>(picture.Width())),
        size(static_cast<std::size_t>(picture.BitsPerPixel() / 8)),
        count(width * size) {}
  std::size_t width;
  std::size_t size;
  std::size_t count;
};

// Runs a filter; if there is alpha, it weights the colours.
template <typename Make>
void FilterWithAlpha(Bitmap& picture, std::int32_t radius, std::size_t scratchBytes, const Make& make) {
  const RowShape row(picture);
  RowFilter filter{radius, static_cast<std::size_t>(radius) * row.size, scratchBytes, {}, {}};
  if (row.size == 4) {
    filter.take = [row, margin = filter.margin](const std::uint8_t* from, std::uint8_t* to) {
      Premultiply(from, to, row.width);
      for (std::size_t i = 0; i < margin; ++i) {
        (to - margin)[i] = to[i % 4];
        to[row.count + i] = to[row.count - 4 + i % 4];
      }
    };
    filter.make = [row, make](const std::uint8_t* const* rows, std::uint8_t* to, std::uint8_t* scratch) {
      make(rows, to, scratch);
      Unpremultiply(to, row.width);
    };
  } else {
    filter.take = [row, margin = filter.margin](const std::uint8_t* from, std::uint8_t* to) {
      TakeRepeated(from, to, row.count, row.size, margin);
    };
    filter.make = make;
  }
  FilterRows(picture, filter);
}

void BlurValues(Bitmap& picture, double sigma) {
  if (sigma >= LeastWideSigma) return BlurWidely(picture, sigma);
  const auto radius = static_cast<std::int32_t>(std::ceil(3 * sigma));
  const auto weights = BellWeights(sigma, radius);
  if (weights.empty()) return;
  const RowShape row(picture);
  const std::size_t margin = static_cast<std::size_t>(radius) * row.size;
  const std::size_t columns = (row.count + 2 * margin + Bitmap::RowAlignment) * sizeof(std::int16_t);
  FilterWithAlpha(picture, radius, columns,
                  [&](const std::uint8_t* const* rows, std::uint8_t* to, std::uint8_t* scratch) {
                    auto* const mixed = reinterpret_cast<std::int16_t*>(scratch);
                    kernels::BlurDown(rows, margin, mixed, row.count + 2 * margin, weights);
                    kernels::BlurAcross(mixed + margin, to, row.count, row.size, weights);
                  });
}

// Per cent as 256ths.
std::int32_t In256ths(double percent) { return static_cast<std::int32_t>(std::lround(percent * 2.56)); }

void Blur(Bitmap& picture, std::span<const double> values) {
  // A wider bell would remove black lines of one pixel when the page becomes black and white again.
  const double usual = picture.BitsPerPixel() == 1 ? 0.8 : 1.5;
  OnValues(picture, [sigma = values[0] != 0 ? values[0] : usual](Bitmap& work) { BlurValues(work, sigma); });
}

void Soften(Bitmap& picture, std::span<const double> /*values*/) {
  OnValues(picture, [](Bitmap& work) {
    FilterWithAlpha(work, 1, 0,
                    [row = RowShape(work)](const std::uint8_t* const* rows, std::uint8_t* to, std::uint8_t*) {
                      kernels::Soften(rows, to, row.count, row.size);
                    });
  });
}

void Sharpen(Bitmap& picture, std::span<const double> values) {
  OnValues(picture, [amount = In256ths(values[0])](Bitmap& work) {
    FilterColours(work, [amount](const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count,
                                 std::size_t size) { kernels::Sharpen(rows, to, count, size, amount); });
  });
}

void Edge(Bitmap& picture, std::span<const double> /*values*/) {
  OnValues(picture, [](Bitmap& work) { FilterColours(work, kernels::Edge); });
}

void Emboss(Bitmap& picture, std::span<const double> values) {
  OnValues(picture, [amount = In256ths(values[0])](Bitmap& work) {
    FilterColours(work, [amount](const std::uint8_t* const* rows, std::uint8_t* to, std::size_t count,
                                 std::size_t size) { kernels::Emboss(rows, to, count, size, amount); });
  });
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
     .memory = MemoryInValues},
    {.command = "Edge", .procedure = Edge, .resultingDepth = DepthOfValues, .memory = MemoryInValues},
    {.command = "Emboss",
     .procedure = Emboss,
     .parameters = EmbossParameters,
     .resultingDepth = DepthOfValues,
     .memory = MemoryInValues},
    {.command = "Sharpen",
     .procedure = Sharpen,
     .parameters = SharpenParameters,
     .resultingDepth = DepthOfValues,
     .memory = MemoryInValues},
    {.command = "Soften", .procedure = Soften, .resultingDepth = DepthOfValues, .memory = MemoryInValues},
};

}  // namespace

std::span<const Effect> FilterEffects() { return FilterEffectsRows; }

}  // namespace kw
