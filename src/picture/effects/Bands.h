#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace kw {

// Rows [begin, end) of a picture.
struct Band {
  std::int32_t begin = 0;
  std::int32_t end = 0;
};

// Cuts `height` rows into some bands for each thread that is worth it, large ones first: none with fewer than
// `leastRows` rows (except the only one), and one alone where `work` (bytes to go through, or as much time) is little.
std::vector<Band> CutIntoBands(std::int32_t height, std::uint64_t work, std::int32_t leastRows = 16);

// Calls task(i) for each i from 0 to count - 1, in any order, on as many threads as can be had, and returns when all
// have returned. A task must not throw.
void RunTogether(std::size_t count, const std::function<void(std::size_t)>& task);

// How many threads RunTogether takes for that many tasks.
std::size_t ThreadsFor(std::size_t tasks);

// Cuts and runs: task(band).
void ForBands(std::int32_t height, std::uint64_t work, const std::function<void(Band)>& task);

// So much work is worth a thread of its own from now on, in the whole process; 0 stands for what holds at the start.
void SetLeastWork(std::uint64_t least);

// Most threads that an effect uses from now on, in the whole process; 0 stands for one a processor, as at the start.
void SetMostThreads(unsigned most);

}  // namespace kw
