#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace kw {

// Rows [begin, end) of a picture.
struct RowBand {
  std::int32_t begin = 0;
  std::int32_t end = 0;
};

// Cuts `height` rows into several bands for each thread, large ones first. `work` is the number of bytes to process, or
// as many as take the same time; little work gives a single band. Otherwise each band has at least `leastRows` rows.
std::vector<RowBand> CutIntoRowBands(std::int32_t height, std::uint64_t work, std::int32_t leastRows = 16);

// Calls task(i) for each i from 0 to count - 1, in any order, on as many threads as are available, and returns when all
// calls have returned. A task must not throw.
//
// Each task runs after prepare(), which must not throw either: the other threads start meanwhile.
void ParallelFor(std::size_t count, const std::function<void(std::size_t)>& task,
                 const std::function<void()>& prepare = {});

// The number of threads that ParallelFor uses for that many tasks.
std::size_t ThreadsFor(std::size_t tasks);

// What it takes to decode a byte of a picture, in bytes to process; the second one is that of JPEG.
constexpr std::uint64_t WorkOfDecodedByte = 16;
constexpr std::uint64_t WorkOfJpegByte = 4;

// The number of threads that this much work is worth; `work` as for CutIntoRowBands.
std::size_t ThreadsForWork(std::uint64_t work);

// Calls task(band) for the row bands of `height` rows, in parallel.
void ParallelForRows(std::int32_t height, std::uint64_t work, const std::function<void(RowBand)>& task);

// The least work that is worth a thread of its own, from now on, in the whole process. 0 restores the default.
void SetLeastWork(std::uint64_t least);

// The most threads of an effect, from now on, in the whole process. 0 restores the default, one for each processor.
void SetMostThreads(unsigned most);

}  // namespace kw
