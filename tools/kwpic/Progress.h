#pragma once

#include <chrono>
#include <cstdint>

namespace kw {

// A progress bar on standard error; nothing if that is no terminal.
class Progress {
public:
  // `noun` names the steps, as "pages".
  Progress(std::int32_t steps, const char* noun);
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { Clear(); }

  // One more step is done.
  void Step();
  // Takes the bar away, for a line of another kind, until the next step.
  void Clear();

private:
  std::int32_t total;
  const char* unit;
  std::int32_t done = 0;
  bool shown = false;
  bool onTerminal;
  std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
};

}  // namespace kw
