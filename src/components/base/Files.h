#pragma once

#include <string>
#include <string_view>

namespace kw {

// File services that are the same on every platform. Paths are in the editor's notation (see FilePath.h).

// Appends `text` as it stands, creating the file if needed; texts of several processes do not mix. Raises PathNotFound,
// PermissionDenied, PathFileAccessError or DiskFull.
void AppendToFile(const std::string& path, std::string_view text);

// The name part of an existing file that is no folder; empty if there is none. Raises the errors of AppendToFile if
// that cannot be found out.
std::string LookUpFile(const std::string& path);

// Raises FileNotFound if there is no such file, PathFileAccessError if it cannot be deleted.
void RemoveFileAt(const std::string& path);

// Whether both paths lead to one existing file, or are the same text. Raises the errors of AppendToFile if that cannot
// be found out.
bool IsSameFile(const std::string& a, const std::string& b);

// Makes the folder and those above it that are missing. Raises the errors of AppendToFile.
void MakeFolders(const std::string& path);

}  // namespace kw
