#pragma once

#include <cstdlib>

namespace kw::test {

// How long ./kw torture has a test run; 0 in all other runs, where it takes seconds.
inline int TortureSeconds() {
  const char* const seconds = std::getenv("KW_TORTURE_SECONDS");
  return seconds == nullptr ? 0 : std::atoi(seconds);
}

inline bool IsTortured() { return TortureSeconds() > 0; }

}  // namespace kw::test
