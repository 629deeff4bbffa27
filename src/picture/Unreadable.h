#pragma once

#include <string>

#include "components/base/RunTimeError.h"

namespace kw {

// Throws the run-time error InvalidPicture with `reason`, a whole sentence for the user, as its description.
[[noreturn]] inline void RaiseUnreadable(const std::string& reason) {
  throw RunTimeError(static_cast<std::int32_t>(ErrorNumber::InvalidPicture), reason);
}

}  // namespace kw
