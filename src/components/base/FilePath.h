#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kw {

// The path to hand to the standard library for a UTF-8 path in the editor's notation (backslashes). On Windows an
// absolute path of 240 characters or more gets the prefix that lifts the system's length limit; elsewhere backslashes
// become slashes.
std::filesystem::path ToFilesystemPath(std::string_view path);

// The way back: UTF-8 with the platform's separators, without that prefix.
std::string FromFilesystemPath(const std::filesystem::path& path);

}  // namespace kw
