#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "bench/ocx/Table.h"

namespace kw::bench {

// Measures, while it lives, how long the control's library is in calls of the system, by kind. What such a call calls
// of the library, as a procedure of a window, is of the call's kind as long as it calls the system no more.
class SystemCalls {
public:
  SystemCalls();
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;
  ~SystemCalls();

  // As TimesOf; `parts` are those of the shortest run.
  static Times TimesOf(int count, const std::function<void()>& work, std::vector<Part>& parts,
                       const std::function<void()>& prepare = {});

private:
  struct Patches;
  std::unique_ptr<Patches> patches;
};

}  // namespace kw::bench
