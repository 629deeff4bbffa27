// The most that more threads can give on this machine: arithmetic that needs no memory. If this scales badly,
// the rows of two threads tell of the machine's neighbours and not of the effects.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <thread>

#include "picture/effects/ParallelRows.h"

namespace kw {
namespace {

constexpr std::size_t Tasks = 64;
constexpr int Steps = 40000;

void Processors(benchmark::State& state) {
  SetMostThreads(static_cast<unsigned>(state.range(0)));
  for (auto _ : state) {
    ParallelFor(Tasks, [](std::size_t task) {
      auto value = static_cast<std::uint64_t>(task);
      for (int i = 0; i < Steps; ++i) {
        value = value * 6364136223846793005U + 1442695040888963407U;
        benchmark::DoNotOptimize(value);
      }
    });
  }
  SetMostThreads(0);
}
BENCHMARK(Processors)
    ->RangeMultiplier(2)
    ->Range(1, std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 16))
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace kw
