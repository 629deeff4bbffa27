#pragma once

#include <filesystem>

namespace kw {

// Names of the files that are written first and take the place of others then. Such a name tells the machine and the
// process that made the file.

// A name in the folder of `path` that no other writer chooses. It is short, so that it fits if the folder's path does.
std::filesystem::path TemporaryBeside(const std::filesystem::path& path);

// Removes the files of such names that processes left: at once if it was a process of this machine that is gone, else
// after a day. Looks into each folder once in a process, so that many files can be written there. What cannot be
// removed stays.
void RemoveLeftovers(const std::filesystem::path& folder);

}  // namespace kw
