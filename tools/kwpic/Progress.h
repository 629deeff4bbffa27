#pragma once

#include <chrono>
#include <cstdint>

namespace kw {

// A bar on standard error while something takes long; nothing where that is no terminal.
class Progress {
public:
  explicit Progress(std::int32_t steps);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  // Takes the bar away.
  ~Progress();

  // One more step is done.
  void Step();

private:
  std::int32_t total;
  std::int32_t done = 0;
  bool shown = false;
  bool onTerminal;
  std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
};

}  // namespace kw
