// Composing a view of 1920 x 1080 pixels onto a page of A4 at 300 dots per inch: all of it with 200 layers, and what
// one step of dragging one of 500 layers needs. Layers are pictures with a transparent colour, figures and texts of
// some 150 x 100 pixels; text is a ready mask, since its rendering is the platform's.

#include <algorithm>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "drawing/Compositor.h"

namespace kw {
namespace {

constexpr PixelRect View = {0, 0, 1920, 1080};
constexpr Colour White = MakeColour(255, 255, 255);

class GreyText final : public TextRenderer {
public:
  void Render(const TextRun& /*run*/, const PixelRect& place, CoverageMask& mask) override {
    for (std::int32_t y = mask.area.top; y < mask.area.bottom; ++y) {
      if ((y - place.top) % 16 >= 10) continue;
      const auto row = mask.Row(y);
      for (std::size_t i = 0; i < row.size(); i += 4) row[i] = 160;
    }
  }
};

// White with dark marks, as a scanned letter.
Bitmap Letter(std::int32_t width, std::int32_t height, int depth) {
  std::mt19937 random(1);
  Bitmap picture(width, height, depth);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = picture.MutableRow(y);
    std::ranges::fill(row, std::uint8_t{255});
    if (y % 50 >= 30) continue;
    for (std::size_t i = 0; i + 12 < row.size(); i += 12) {
      if (random() % 3 == 0) std::fill_n(row.begin() + static_cast<std::ptrdiff_t>(i), 6, std::uint8_t{0});
    }
  }
  return picture;
}

std::vector<DisplayItem> Layers(int count, int pageDepth, bool isPageTransparent) {
  std::mt19937 random(2);
  const auto number = [&](std::int32_t low, std::int32_t high) {
    return std::uniform_int_distribution<std::int32_t>(low, high)(random);
  };
  std::vector<DisplayItem> items;
  DisplayItem page{.key = 1, .bounds = {0, 0, 2480, 3508}, .picture = Letter(2480, 3508, pageDepth)};
  if (isPageTransparent) page.options.transparent = White;
  items.push_back(page);
  const Bitmap stamp = Letter(150, 100, 24);
  for (int i = 0; i < count; ++i) {
    DisplayItem layer{.key = static_cast<std::uint64_t>(i) + 2};
    const std::int32_t left = number(0, 1760);
    const std::int32_t top = number(0, 960);
    layer.bounds = {left, top, left + 150, top + 100};
    layer.options.transparent = White;
    if (i % 5 == 4) {
      layer.text = TextRun{"Layer", {}, 0};
    } else if (i % 5 < 2) {
      layer.picture = stamp;
    } else {
      Shape shape;
      shape.kind = static_cast<Shape::Kind>(i / 5 % 3);
      shape.box = {4, 4, 146, 96};
      shape.lineWidth = 1 + i % 7;
      shape.lineColour = static_cast<Colour>(number(0, 0xFFFFFE));
      if (i % 5 == 3) shape.fill = static_cast<Colour>(number(0, 0xFFFFFE));
      layer.shape = shape;
    }
    if (i % 10 == 0) layer.frame = DisplayItem::Frame::Solid;
    items.push_back(layer);
  }
  return items;
}

struct Screen {
  std::vector<std::uint32_t> pixels = std::vector<std::uint32_t>(std::size_t{1920} * 1080);
  FrameBuffer buffer{pixels.data(), 1920, View};
};

// Arguments: the page's depth; whether its white is transparent; the number of layers.
void CompositorFullRepaint(benchmark::State& state) {
  Screen screen;
  GreyText texts;
  Compositor compositor(White);
  compositor.Show(Layers(static_cast<int>(state.range(2)), static_cast<int>(state.range(0)), state.range(1) != 0));
  for (auto _ : state) {
    compositor.Paint(screen.buffer, View, &texts);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(CompositorFullRepaint)
    ->ArgNames({"depth", "transparent", "layers"})
    ->ArgsProduct({{1, 24}, {0, 1}, {0, 200}})
    ->Unit(benchmark::kMillisecond);

// One step: the changed list is shown and what is out of date is painted. The counter is the pixels painted a step.
void CompositorDrag(benchmark::State& state) {
  Screen screen;
  GreyText texts;
  Compositor compositor(White);
  std::vector<DisplayItem> items = Layers(500, static_cast<int>(state.range(0)), true);
  compositor.Show(items);
  std::int32_t step = 0;
  std::int64_t painted = 0;
  for (auto _ : state) {
    ++step;
    const std::int32_t left = 3 * step % 1700;
    const std::int32_t top = 2 * step % 950;
    items[250].bounds = {left, top, left + 150, top + 100};
    for (const PixelRect& part : compositor.Show(items)) {
      compositor.Paint(screen.buffer, part, &texts);
      painted += std::int64_t{part.Width()} * part.Height();
    }
    benchmark::ClobberMemory();
  }
  state.counters["pixels"] = benchmark::Counter(static_cast<double>(painted), benchmark::Counter::kAvgIterations);
}
BENCHMARK(CompositorDrag)->ArgName("depth")->Arg(1)->Arg(24)->Unit(benchmark::kMillisecond);

// A whole page reduced to the width of the view, for comparison with copying it.
void CompositorReducedPage(benchmark::State& state) {
  Screen screen;
  Compositor compositor(White);
  compositor.Show(
      {{.key = 1, .bounds = {0, 0, 763, 1080}, .picture = Letter(2480, 3508, static_cast<int>(state.range(0)))}});
  for (auto _ : state) {
    compositor.Paint(screen.buffer, {0, 0, 763, 1080}, nullptr);
    benchmark::ClobberMemory();
  }
}
BENCHMARK(CompositorReducedPage)->ArgName("depth")->Arg(1)->Arg(24)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kw
