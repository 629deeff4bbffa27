// Filling and outlining 1,000 ellipses of 100 x 80 pixels in random places and colours, against Cairo's image backend.

#include <numbers>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>
#ifdef KW_HAS_CAIRO
#include <cairo/cairo.h>
#endif

#include "drawing/Shape.h"

namespace kw {
namespace {

constexpr std::int32_t Width = 1920;
constexpr std::int32_t Height = 1080;
constexpr double LineWidth = 3;

struct Ellipse {
  double x = 0;
  double y = 0;
  Colour fill = 0;
  Colour line = 0;
};

std::vector<Ellipse> Ellipses() {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> x(0, Width - 100);
  std::uniform_real_distribution<double> y(0, Height - 80);
  std::vector<Ellipse> ellipses(1000);
  for (Ellipse& ellipse : ellipses) {
    ellipse = {x(random), y(random), static_cast<Colour>(random() & 0xFFFFFFU),
               static_cast<Colour>(random() & 0xFFFFFFU)};
  }
  return ellipses;
}

// Arguments: whether to fill; whether to outline.
void EllipsesHere(benchmark::State& state) {
  const auto ellipses = Ellipses();
  std::vector<std::uint32_t> pixels(std::size_t{Width} * Height);
  const FrameBuffer buffer{pixels.data(), Width, {0, 0, Width, Height}};
  Rasteriser rasteriser;
  for (auto _ : state) {
    for (const Ellipse& ellipse : ellipses) {
      Shape shape;
      shape.kind = Shape::Kind::Ellipse;
      shape.box = {ellipse.x, ellipse.y, ellipse.x + 100, ellipse.y + 80};
      if (state.range(0) != 0) shape.fill = ellipse.fill;
      shape.lineWidth = state.range(1) != 0 ? LineWidth : 0;
      shape.lineColour = ellipse.line;
      DrawShape(buffer, shape, {}, buffer.area, {}, rasteriser);
    }
    benchmark::ClobberMemory();
  }
}
BENCHMARK(EllipsesHere)
    ->ArgNames({"fill", "outline"})
    ->Args({1, 0})
    ->Args({0, 1})
    ->Args({1, 1})
    ->Unit(benchmark::kMillisecond);

#ifdef KW_HAS_CAIRO
void SetSource(cairo_t* context, Colour colour) {
  const auto share = [colour](unsigned shift) { return ((colour >> shift) & 0xFFU) / 255.0; };
  cairo_set_source_rgb(context, share(0), share(8), share(16));
}

void EllipsesByCairo(benchmark::State& state) {
  const auto ellipses = Ellipses();
  cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, Width, Height);
  cairo_t* context = cairo_create(surface);
  cairo_set_line_width(context, LineWidth);
  for (auto _ : state) {
    for (const Ellipse& ellipse : ellipses) {
      cairo_new_path(context);
      cairo_save(context);
      cairo_translate(context, ellipse.x + 50, ellipse.y + 40);
      cairo_scale(context, 50, 40);
      cairo_arc(context, 0, 0, 1, 0, 2 * std::numbers::pi);
      cairo_restore(context);
      if (state.range(0) != 0) {
        SetSource(context, ellipse.fill);
        cairo_fill_preserve(context);
      }
      if (state.range(1) != 0) {
        SetSource(context, ellipse.line);
        cairo_stroke_preserve(context);
      }
    }
    benchmark::ClobberMemory();
  }
  cairo_destroy(context);
  cairo_surface_destroy(surface);
}
BENCHMARK(EllipsesByCairo)
    ->ArgNames({"fill", "outline"})
    ->Args({1, 0})
    ->Args({0, 1})
    ->Args({1, 1})
    ->Unit(benchmark::kMillisecond);
#endif

}  // namespace
}  // namespace kw
