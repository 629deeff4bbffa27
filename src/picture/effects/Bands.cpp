#include "picture/effects/Bands.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <functional>
#include <thread>

namespace kw {
namespace {

// A thread costs some 50 microseconds to start; below this much work each, it is not worth it.
constexpr std::uint64_t LeastWork = 1U << 20U;

std::atomic<unsigned> mostThreads{0};

unsigned Threads() {
  const unsigned most = mostThreads;
  return most != 0 ? most : std::max(1U, std::thread::hardware_concurrency());
}

}  // namespace

void SetMostThreads(unsigned most) { mostThreads = most; }

std::vector<Band> CutIntoBands(std::int32_t height, std::uint64_t work, std::int32_t leastRows) {
  const std::uint64_t most =
      std::min({std::uint64_t{Threads()}, work / LeastWork, static_cast<std::uint64_t>(height / leastRows)});
  const auto count = static_cast<std::int32_t>(std::max(most, std::uint64_t{1}));
  std::vector<Band> bands;
  std::int32_t begin = 0;
  for (std::int32_t i = 0; i < count; ++i) {
    const std::int32_t end = begin + (height - begin) / (count - i);
    bands.push_back({begin, end});
    begin = end;
  }
  return bands;
}

void RunTogether(std::size_t count, const std::function<void(std::size_t)>& task) {
  std::vector<std::thread> threads;
  threads.reserve(count);
  std::size_t started = 1;
  try {
    for (; started < count; ++started) threads.emplace_back(std::cref(task), started);
  } catch (const std::exception&) {
    // There is no other thread to be had: this one does the rest.
  }
  if (count > 0) task(0);
  for (; started < count; ++started) task(started);
  for (std::thread& thread : threads) thread.join();
}

void ForBands(std::int32_t height, std::uint64_t work, const std::function<void(Band)>& task) {
  const auto bands = CutIntoBands(height, work);
  RunTogether(bands.size(), [&](std::size_t i) { task(bands[i]); });
}

}  // namespace kw
