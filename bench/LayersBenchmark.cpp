// The editor's own procedures on many layers: creating them, restacking among them, and what the mouse costs. The
// editor runs on the desktop of the tests; nothing is drawn.

#include <benchmark/benchmark.h>

#include "bench/EditorBench.h"

namespace kw {
namespace {

// A control with an open page.
class Bench : public BenchEditor {
public:
  Bench() {
    control->OpenFile(MakeImage("page.bmp", 1600, 1200));
    Canvas().ReceiveFocus();
  }
};

void CreateLayers(benchmark::State& state) {
  Bench editor;
  for (auto _ : state) {
    editor.Fill(static_cast<int>(state.range(0)));
    state.PauseTiming();
    editor.Room().UnloadLayerItems();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(CreateLayers)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// The lowest layer is raised past one neighbour and sent back again: two steps, each of which restacks all layers.
void RestackAmongLayers(benchmark::State& state) {
  Bench editor;
  editor.Fill(static_cast<int>(state.range(0)));
  editor.Room().SetCurrentLayer(2);
  for (auto _ : state) {
    benchmark::DoNotOptimize(editor.Room().BringForward());
    benchmark::DoNotOptimize(editor.Room().SendBackward());
  }
  state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(RestackAmongLayers)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);

// One mouse move over a page with 100 layers: the pointer tool's hover, and a rubber band.
void MoveMouseOverLayers(benchmark::State& state) {
  Bench editor;
  editor.Fill(100);
  const bool isDrag = state.range(0) != 0;
  editor.Choose(isDrag ? "Rectangle" : "NoTools");
  if (isDrag) editor.Canvas().MouseDown.Raise(1, 0, 1599, 1199);
  int i = 0;
  for (auto _ : state) {
    ++i;
    editor.Canvas().MouseMove.Raise(isDrag ? std::int16_t{1} : std::int16_t{0}, 0, static_cast<float>(i % 1500),
                                    static_cast<float>(i * 7 % 1100));
  }
  state.SetLabel(isDrag ? "rubber band" : "hover");
}
BENCHMARK(MoveMouseOverLayers)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

// A pen stroke of 10,000 points: laying its markers, and turning them into a layer.
void LayMarkers(benchmark::State& state) {
  Bench editor;
  editor.Choose("Pen");
  constexpr int Points = 10'000;
  for (auto _ : state) {
    editor.Canvas().MouseDown.Raise(1, 0, 5, 5);
    for (int i = 1; i < Points; ++i) {
      const int x = 5 + i % 1000;
      const int y = 5 + i / 10;
      editor.Canvas().MouseMove.Raise(1, 0, static_cast<float>(x), static_cast<float>(y));
    }
    state.PauseTiming();
    editor.Canvas().MouseUp.Raise(1, 0, 5, 5);
    editor.Room().UnloadLayerItems();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * Points);
}
BENCHMARK(LayMarkers)->Unit(benchmark::kMillisecond);

void EndStroke(benchmark::State& state) {
  Bench editor;
  editor.Choose("Pen");
  constexpr int Points = 10'000;
  for (auto _ : state) {
    state.PauseTiming();
    editor.Room().UnloadLayerItems();
    editor.Canvas().MouseDown.Raise(1, 0, 5, 5);
    for (int i = 1; i < Points; ++i) {
      const int x = 5 + i % 1000;
      const int y = 5 + i / 10;
      editor.Canvas().MouseMove.Raise(1, 0, static_cast<float>(x), static_cast<float>(y));
    }
    state.ResumeTiming();
    editor.Canvas().MouseUp.Raise(1, 0, 5, 5);
  }
}
BENCHMARK(EndStroke)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kw
