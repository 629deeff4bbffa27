#pragma once

#include <stdexcept>
#include <string>

namespace kw {

// A finding: the engine broke a promise. It ends a fuzz target, since nothing there catches it.
inline void Promise(bool kept, const char* what) {
  if (!kept) throw std::logic_error(std::string("broken promise: ") + what);
}

}  // namespace kw
