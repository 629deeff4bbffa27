#include "picture/effects/WideBlur.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"
#include "picture/effects/WideBlurKernels.h"

namespace kw {
namespace {

// Elements behind a row that the kernels may read or write.
constexpr std::size_t Excess = 2 * Bitmap::RowAlignment;

// How a picture is reduced, blurred and enlarged again. Reduced columns and rows go from -1, outside the picture, to
// one behind its end; there is nothing but the picture's outermost pixels outside.
struct WideBlurPlan {
  // Larger blocks would show where stripes nearly as wide fall on them.
  WideBlurPlan(const Bitmap& picture, double sigma)
      : factor(sigma < 2 * LeastWideSigma ? 2 : 4),
        size(static_cast<std::size_t>(picture.BitsPerPixel() / 8)),
        height(picture.Height()),
        count(static_cast<std::size_t>(picture.Width()) * size),
        columns((picture.Width() + factor - 1) / factor),
        rows((height + factor - 1) / factor),
        blurredCount(static_cast<std::size_t>(columns + 2) * size),
        stride(blurredCount + Excess),
        steps(kernels::StepsOf(size, static_cast<std::size_t>(factor))) {
    // Averaging and enlarging blur, too: by a variance of factor squared / 4.
    const double reduced = std::sqrt(sigma * sigma / (factor * factor) - 0.25);
    radius = static_cast<std::int32_t>(std::ceil(4 * reduced));
    weights = BellWeights(reduced, radius);
  }

  std::int32_t factor;
  std::size_t size;          // values of a pixel
  std::int32_t height;       // of the picture
  std::size_t count;         // values of its rows
  std::int32_t columns;      // reduced ones inside the picture
  std::int32_t rows;         // the same
  std::size_t blurredCount;  // values of a reduced row
  std::size_t stride;
  kernels::EnlargingSteps steps;
  std::int32_t radius = 0;
  std::vector<std::int16_t> weights;
};

// What a band of rows needs to be reduced.
struct Reducer {
  explicit Reducer(const WideBlurPlan& plan)
      : sums(static_cast<std::size_t>(plan.columns) * static_cast<std::size_t>(plan.factor) * plan.size +
             static_cast<std::size_t>(plan.factor) * plan.size + Excess),
        line(static_cast<std::size_t>(plan.columns + 2 * plan.radius + 2) * plan.size + Excess),
        weighted(plan.size == 4 ? static_cast<std::size_t>(plan.factor) * (plan.count + Excess) : 0),
        sources(static_cast<std::size_t>(plan.factor)),
        taps(static_cast<std::size_t>(2 * plan.radius + 1)) {}

  std::vector<std::uint16_t> sums;
  std::vector<std::int16_t> line;
  std::vector<std::uint8_t> weighted;
  std::vector<const std::uint8_t*> sources;
  std::vector<const std::int16_t*> taps;
};

// What a band of rows needs to be enlarged.
struct Enlarger {
  explicit Enlarger(const WideBlurPlan& plan)
      : blurred(plan.stride), taps(static_cast<std::size_t>(2 * plan.radius + 1)) {
    for (auto& row : enlarged) row.resize(plan.count + Excess);
  }

  std::vector<std::int16_t> blurred;
  std::vector<std::int16_t> enlarged[2];
  std::vector<const std::int16_t*> taps;
};

// The average of a block in 64ths of a value.
std::int16_t Averaged(unsigned sum, std::int32_t factor) {
  return static_cast<std::int16_t>(sum * static_cast<unsigned>(64 / (factor * factor)));
}

// Averages the blocks of one row of blocks, and blurs them along it.
void Reduce(const WideBlurPlan& plan, const ConstPixels& pixels, std::int32_t row, Reducer& with, std::int16_t* to) {
  const auto factor = static_cast<std::size_t>(plan.factor);
  for (std::size_t i = 0; i < factor; ++i) {
    const std::int32_t y = std::clamp(row * plan.factor + static_cast<std::int32_t>(i), 0, plan.height - 1);
    with.sources[i] = pixels.Row(y);
    if (plan.size != 4) continue;
    std::uint8_t* const weighted = with.weighted.data() + i * (plan.count + Excess);
    Premultiply(with.sources[i], weighted, plan.count / plan.size);
    with.sources[i] = weighted;
  }
  std::uint16_t* const sums = with.sums.data();
  kernels::SumDown(with.sources, sums, plan.count);
  const std::size_t inBlocks = static_cast<std::size_t>(plan.columns) * factor * plan.size;
  for (std::size_t i = plan.count; i < inBlocks; ++i) sums[i] = sums[i - plan.size];

  const std::size_t margin = static_cast<std::size_t>(plan.radius + 1) * plan.size;
  std::int16_t* const inside = with.line.data() + margin;
  const std::size_t reduced = static_cast<std::size_t>(plan.columns) * plan.size;
  for (std::size_t i = 0; i < margin; ++i) {
    (inside - margin)[i] = Averaged(static_cast<unsigned>(factor * sums[i % plan.size]), plan.factor);
    const std::size_t last = plan.count - plan.size + i % plan.size;
    inside[reduced + i] = Averaged(static_cast<unsigned>(factor * sums[last]), plan.factor);
  }
  for (std::size_t step = 1; step < factor; step *= 2) kernels::AddShifted(sums, step * plan.size, inBlocks);
  for (std::size_t column = 0; column < static_cast<std::size_t>(plan.columns); ++column) {
    const std::uint16_t* const block = sums + column * factor * plan.size;
    for (std::size_t c = 0; c < plan.size; ++c) inside[column * plan.size + c] = Averaged(block[c], plan.factor);
  }
  for (std::size_t i = 0; i < with.taps.size(); ++i) with.taps[i] = with.line.data() + i * plan.size;
  kernels::BlurWords(with.taps.data(), to, plan.blurredCount, plan.weights);
}

// Enlarges the reduced rows to the rows of a band.
void Enlarge(const WideBlurPlan& plan, const std::vector<std::int16_t>& reduced, RowBand band, Enlarger& with,
             const Pixels& pixels) {
  const auto reducedRow = [&](std::int32_t row) {
    const std::int32_t inside = std::clamp(row, -1, plan.rows);
    return reduced.data() + static_cast<std::size_t>(inside + 1) * plan.stride;
  };
  const auto enlarged = [&](std::int32_t row) { return with.enlarged[static_cast<std::size_t>(row + 1) % 2].data(); };
  const auto prepare = [&](std::int32_t row) {
    for (std::int32_t i = 0; i <= 2 * plan.radius; ++i) {
      with.taps[static_cast<std::size_t>(i)] = reducedRow(row + i - plan.radius);
    }
    kernels::BlurWords(with.taps.data(), with.blurred.data(), plan.blurredCount, plan.weights);
    kernels::EnlargeWords(with.blurred.data(), enlarged(row), plan.count, plan.steps);
  };
  std::int32_t prepared = -2;
  for (std::int32_t y = band.begin; y < band.end; ++y) {
    const std::int32_t place = y + plan.factor / 2;
    const std::int32_t lower = place / plan.factor;
    if (prepared < lower - 1) prepare(lower - 1);
    if (prepared < lower) prepare(lower);
    prepared = lower;
    const std::int32_t weight = (2 * (place % plan.factor) + 1) * (16384 / plan.factor);
    kernels::MixWords(enlarged(lower - 1), enlarged(lower), static_cast<std::int16_t>(weight), pixels.Row(y),
                      plan.count);
    if (plan.size == 4) Unpremultiply(pixels.Row(y), plan.count / plan.size);
  }
}

}  // namespace

std::vector<std::int16_t> BellWeights(double sigma, std::int32_t radius) {
  std::vector<double> bell;
  double sum = 1;
  for (std::int32_t i = 1; i <= radius; ++i) {
    const double away = i / sigma;
    bell.push_back(std::exp(-0.5 * away * away));
    sum += 2 * bell.back();
  }
  constexpr std::int32_t whole = 32768;
  std::vector<std::int16_t> weights{0};
  std::int32_t rest = whole;
  for (const double weight : bell) {
    weights.push_back(static_cast<std::int16_t>(std::lround(whole * weight / sum)));
    rest -= 2 * weights.back();
  }
  if (rest == whole) return {};
  weights[0] = static_cast<std::int16_t>(rest);
  return weights;
}

void BlurWidely(Bitmap& picture, double sigma) {
  const WideBlurPlan plan(picture, sigma);
  std::vector<std::int16_t> reduced(static_cast<std::size_t>(plan.rows + 2) * plan.stride);
  const std::uint64_t work = 2 * BytesOf(picture);

  const auto blocks = CutIntoRowBands(plan.rows + 2, work);
  std::vector<Reducer> reducers(blocks.size(), Reducer(plan));
  const auto bands = CutIntoRowBands(plan.height, work, 4 * plan.factor);
  std::vector<Enlarger> enlargers(bands.size(), Enlarger(plan));
  Remade pixels(picture);
  ParallelFor(blocks.size(), [&](std::size_t i) {
    for (std::int32_t row = blocks[i].begin; row < blocks[i].end; ++row) {
      Reduce(plan, pixels.Old(), row - 1, reducers[i], reduced.data() + static_cast<std::size_t>(row) * plan.stride);
    }
  });
  ParallelFor(bands.size(), [&](std::size_t i) { Enlarge(plan, reduced, bands[i], enlargers[i], pixels.New()); });
  pixels.Finish();
}

}  // namespace kw
