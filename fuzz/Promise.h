#pragma once

#include <cstdio>
#include <cstdlib>

namespace kw {

// Ends the program, as a finding, where the engine broke a promise.
inline void Promise(bool kept, const char* what) {
  if (kept) return;
  std::fprintf(stderr, "broken promise: %s\n", what);
  std::abort();
}

}  // namespace kw
