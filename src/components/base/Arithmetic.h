#pragma once

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "components/base/RunTimeError.h"

namespace kw {

// Range-checked conversions and sums: what does not fit raises Overflow, as every sum of the run time does.
template <class To, class From>
To Narrow(From value) {
  if (value < static_cast<From>(std::numeric_limits<To>::min()) ||
      value > static_cast<From>(std::numeric_limits<To>::max())) {
    Raise(ErrorNumber::Overflow);
  }
  return static_cast<To>(value);
}

// The nearest whole number, halves to the even neighbour.
template <class To>
To RoundToEven(double value) {
  const double whole = std::nearbyint(value);
  if (!(whole >= static_cast<double>(std::numeric_limits<To>::min()) &&
        whole <= static_cast<double>(std::numeric_limits<To>::max()))) {
    Raise(ErrorNumber::Overflow);
  }
  return static_cast<To>(whole);
}

inline std::int16_t ToInteger16(std::int64_t value) { return Narrow<std::int16_t>(value); }

inline std::int32_t AddChecked(std::int32_t a, std::int32_t b) {
  return Narrow<std::int32_t>(static_cast<std::int64_t>(a) + b);
}

}  // namespace kw
