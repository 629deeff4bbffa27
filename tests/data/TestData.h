#pragma once

#include <filesystem>

namespace kw {

// The path of a document of this folder.
std::filesystem::path TestData(const char* name);

}  // namespace kw
