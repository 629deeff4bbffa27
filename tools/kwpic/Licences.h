#pragma once

#include <string>

namespace kw {

// The licence of the program, and the notices of the libraries inside it.
std::string Licences();

}  // namespace kw
