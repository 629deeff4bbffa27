#pragma once

#include <string>

namespace kw {

// The libraries that pictures are read and written with: a line "name version" each.
std::string Libraries();

}  // namespace kw
