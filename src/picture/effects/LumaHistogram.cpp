#include "picture/effects/LumaHistogram.h"

#include <atomic>
#include <bit>
#include <cstring>

#include "picture/effects/LumaRows.h"
#include "picture/effects/ParallelRows.h"
#include "picture/effects/Pixels.h"

namespace kw {
namespace {

template <class Number>
Number NumberAt(const std::uint8_t* from) {
  Number number = 0;
  std::memcpy(&number, from, sizeof number);
  return number;
}

}  // namespace

void LevelCounter::Add(const std::uint8_t* row, std::size_t count) {
  constexpr std::size_t wordBytes = sizeof(std::uint64_t);
  constexpr std::size_t step = 2 * wordBytes;
  uncollected += count;
  if (uncollected > mostUncollected) {
    Collect();
    uncollected = count;
  }
  std::uint32_t* const counts = pairs.data();
  const auto add = [&](const std::uint8_t* from) {
    const auto word = NumberAt<std::uint64_t>(from);
    // Paper without noise: many writes to one counter would wait for each other.
    if (word == NumberAt<std::uint64_t>(from + wordBytes) && word == std::rotl(word, 8)) {
      sum[word % Levels] += step;
      return;
    }
    for (std::size_t i = 0; i < step; i += 2) ++counts[NumberAt<std::uint16_t>(from + i)];
  };
  std::size_t x = 0;
  for (; x + 2 * step <= count; x += 2 * step) {
    add(row + x);
    add(row + x + step);
  }
  for (; x < count; ++x) ++sum[row[x]];
}

void LevelCounter::Collect() {
  for (std::size_t upper = 0; upper < Levels; ++upper) {
    std::uint32_t* const own = pairs.data() + upper * Levels;
    std::uint64_t both = 0;
    for (std::size_t lower = 0; lower < Levels; ++lower) {
      both += own[lower];
      sum[lower] += own[lower];
      own[lower] = 0;
    }
    sum[upper] += both;
  }
}

void LevelCounter::AddTo(LevelHistogram& whole) {
  Collect();
  for (std::size_t level = 0; level < Levels; ++level) whole[level] += sum[level];
}

LevelHistogram LumaHistogramOf(const Bitmap& picture) {
  const LumaRows luma(picture);
  const auto bands = CutIntoRowBands(picture.Height(), BytesOf(picture));
  const auto width = static_cast<std::size_t>(picture.Width());
  struct Work {
    LevelCounter counter;
    std::vector<std::uint8_t> scratch;
  };
  std::vector<Work> works(ThreadsFor(bands.size()));
  for (Work& work : works) work.scratch.resize(luma.ScratchBytes());
  std::atomic<std::size_t> next{0};
  ParallelFor(works.size(), [&](std::size_t own) {
    Work& work = works[own];
    for (std::size_t i = next++; i < bands.size(); i = next++) {
      for (std::int32_t y = bands[i].begin; y < bands[i].end; ++y) {
        if (y + 1 < bands[i].end) luma.Prefetch(y + 1);
        work.counter.Add(luma.Row(y, work.scratch.data()), width);
      }
    }
  });
  LevelHistogram whole{};
  for (Work& work : works) work.counter.AddTo(whole);
  return whole;
}

}  // namespace kw
