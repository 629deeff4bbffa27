#include "picture/effects/ParallelRows.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <functional>
#include <thread>

namespace kw {
namespace {

// Starting a thread takes some 50 microseconds; it does not pay for less work than this.
constexpr std::uint64_t UsualLeastWork = 1U << 20U;

// The smallest band is 1 / PartsOfShare of a thread's share.
constexpr std::int32_t PartsOfShare = 16;

std::atomic<std::uint64_t> leastWork{UsualLeastWork};
std::atomic<unsigned> mostThreads{0};

unsigned Threads() {
  // The system is asked once. Under Wine another process answers, and it waits if all processors are busy.
  static const unsigned processors = std::max(1U, std::thread::hardware_concurrency());
  const unsigned most = mostThreads;
  return most != 0 ? most : processors;
}

}  // namespace

void SetLeastWork(std::uint64_t least) { leastWork = least != 0 ? least : UsualLeastWork; }

void SetMostThreads(unsigned most) { mostThreads = most; }

// Large bands first keep their number low; small bands last keep the wait short for a thread whose processor was busy
// with something else.
std::vector<RowBand> CutIntoRowBands(std::int32_t height, std::uint64_t work, std::int32_t leastRows) {
  const auto threads = static_cast<std::int32_t>(ThreadsForWork(work));
  if (threads < 2) return {{0, height}};
  const std::int32_t least = std::max(leastRows, height / threads / PartsOfShare);
  std::vector<RowBand> bands;
  for (std::int32_t begin = 0; begin < height;) {
    const std::int32_t rows = std::max(least, (height - begin) / (2 * threads));
    const std::int32_t end = height - begin - rows < least ? height : begin + rows;
    bands.push_back({begin, end});
    begin = end;
  }
  return bands;
}

void ParallelFor(std::size_t count, const std::function<void(std::size_t)>& task,
                 const std::function<void()>& prepare) {
  std::atomic<std::size_t> next{0};
  std::atomic<bool> isPrepared{!prepare};
  const auto work = [&] {
    // What is prepared takes no longer than a thread needs to start.
    while (!isPrepared) std::this_thread::yield();
    for (std::size_t i = next++; i < count; i = next++) task(i);
  };
  const std::size_t most = ThreadsFor(count);
  std::vector<std::thread> threads;
  threads.reserve(most);
  try {
    for (std::size_t started = 1; started < most; ++started) threads.emplace_back(work);
  } catch (const std::exception&) {
    // No more threads are available: those that were started do all the work.
  }
  if (prepare) prepare();
  isPrepared = true;
  work();
  for (std::thread& thread : threads) thread.join();
}

std::size_t ThreadsFor(std::size_t tasks) { return std::min(tasks, std::size_t{Threads()}); }

std::size_t ThreadsForWork(std::uint64_t work) {
  return std::max<std::size_t>(1, static_cast<std::size_t>(std::min(std::uint64_t{Threads()}, work / leastWork)));
}

void ParallelForRows(std::int32_t height, std::uint64_t work, const std::function<void(RowBand)>& task) {
  const auto bands = CutIntoRowBands(height, work);
  ParallelFor(bands.size(), [&](std::size_t i) { task(bands[i]); });
}

}  // namespace kw
