#pragma once

#include <string>
#include <string_view>

namespace kw {

// File services that are the same on every platform. Paths are in the editor's notation (see FilePath.h).

// Appends `text` as it stands, creating the file if needed. Raises PathNotFound, PermissionDenied,
// PathFileAccessError or DiskFull.
void AppendToFile(const std::string& path, std::string_view text);

// The name part of an existing file that is no folder; empty where there is none.
std::string LookUpFile(const std::string& path);

// Raises FileNotFound where there is no such file, PathFileAccessError where it cannot be deleted.
void RemoveFileAt(const std::string& path);

}  // namespace kw
