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

// Bands for each thread, so that one whose processor does something else for a while leaves the rest to the others.
constexpr std::uint64_t BandsPerThread = 4;

std::atomic<unsigned> mostThreads{0};

unsigned Threads() {
  const unsigned most = mostThreads;
  return most != 0 ? most : std::max(1U, std::thread::hardware_concurrency());
}

}  // namespace

void SetMostThreads(unsigned most) { mostThreads = most; }

std::vector<Band> CutIntoBands(std::int32_t height, std::uint64_t work, std::int32_t leastRows) {
  const std::uint64_t threads = std::min(std::uint64_t{Threads()}, work / LeastWork);
  const std::uint64_t most = threads < 2 ? 1 : threads * BandsPerThread;
  const auto count = static_cast<std::int32_t>(
      std::max(std::min(most, static_cast<std::uint64_t>(height / leastRows)), std::uint64_t{1}));
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
  std::atomic<std::size_t> next{0};
  const auto work = [&] {
    for (std::size_t i = next++; i < count; i = next++) task(i);
  };
  const std::size_t most = ThreadsFor(count);
  std::vector<std::thread> threads;
  threads.reserve(most);
  try {
    for (std::size_t started = 1; started < most; ++started) threads.emplace_back(work);
  } catch (const std::exception&) {
    // There is no other thread to be had: those that there are do the rest.
  }
  work();
  for (std::thread& thread : threads) thread.join();
}

std::size_t ThreadsFor(std::size_t tasks) { return std::min(tasks, std::size_t{Threads()}); }

void ForBands(std::int32_t height, std::uint64_t work, const std::function<void(Band)>& task) {
  const auto bands = CutIntoBands(height, work);
  RunTogether(bands.size(), [&](std::size_t i) { task(bands[i]); });
}

}  // namespace kw
