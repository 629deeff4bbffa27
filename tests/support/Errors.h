#pragma once

#include <cstdint>
#include <utility>

#include "components/base/RunTimeError.h"

namespace kw::test {

// The number of the run-time error that a call raises; 0 for none.
template <class Call>
std::int32_t ErrorOf(Call&& call) {
  try {
    std::forward<Call>(call)();
  } catch (const RunTimeError& error) {
    return error.Number();
  }
  return 0;
}

}  // namespace kw::test
