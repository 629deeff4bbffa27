// How far the pictures of fewer colours are from the page, ours beside Leptonica's: the label is the mean squared error
// of a channel. That of dithered pages is taken after a small blur of both, because the eye sees them so.

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

#include "bench/EffectPages.h"
#include "picture/Depth.h"
#include "picture/effects/Effect.h"
#ifdef KW_HAS_LEPTONICA
#include "bench/Leptonica.h"
#endif

namespace kw {
namespace {

double MeanSquare(const Bitmap& one, const Bitmap& other) {
  double sum = 0;
  for (std::int32_t y = 0; y < one.Height(); ++y) {
    for (std::size_t i = 0; i < one.RowBytes(); ++i) {
      const double apart = one.Row(y)[i] - other.Row(y)[i];
      sum += apart * apart;
    }
  }
  return sum / (static_cast<double>(one.RowBytes()) * one.Height());
}

using Change = std::function<Bitmap(const Bitmap&)>;

// In 24 bits; with a sigma as they look from afar.
Bitmap Seen(const Bitmap& picture, double sigma) {
  Bitmap colours = ToDepth(picture, 24);
  if (sigma != 0) ApplyEffect(*FindEffect("Blur"), colours, {{sigma}});
  return colours;
}

void AddError(const std::string& name, int bits, double sigma, const Change& change) {
  benchmark::RegisterBenchmark(("Error/" + name).c_str(), [=](benchmark::State& state) {
    double error = 0;
    for (auto _ : state) {
      const Bitmap& page = PageOf(bits);
      error = MeanSquare(Seen(page, sigma), Seen(change(page), sigma));
    }
    state.SetLabel(std::to_string(error));
  })->Iterations(1);
}

Change By(const char* command) {
  return [command](const Bitmap& page) {
    Bitmap changed = page;
    ApplyEffect(*FindEffect(command), changed, {});
    return changed;
  };
}

constexpr double SmallBlur = 1.5;

const bool added = [] {
  AddError("Dither/8", 8, SmallBlur, By("Dither"));
  AddError("DecreaseBpp/24", 24, 0, By("DecreaseBpp"));
#ifdef KW_HAS_LEPTONICA
  const auto by = [](PIX* (*process)(PIX*)) {
    return [process](const Bitmap& page) {
      PIX* before = leptonica::ToPix(page);
      PIX* after = process(before);
      Bitmap changed = leptonica::ToBitmap(after);
      pixDestroy(&before);
      pixDestroy(&after);
      return changed;
    };
  };
  AddError("Leptonica/Dither/8", 8, SmallBlur, by(leptonica::Dithered));
  AddError("Leptonica/DecreaseBpp/24", 24, 0, by(leptonica::To256Colours));
#endif
  return true;
}();

}  // namespace
}  // namespace kw
