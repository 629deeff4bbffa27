#pragma once

#include <string>

namespace kw {

// Throws the run-time error InvalidPicture with `reason`, a whole sentence for the user, as its description.
[[noreturn]] void RaiseUnreadable(const std::string& reason);

}  // namespace kw
