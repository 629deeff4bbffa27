#pragma once

#include <map>
#include <string>

namespace kw::windows {

// Reads a value of a profile file through the system, at most 511 characters.
std::string ReadProfileValue(const std::string& section, const std::string& key, const std::string& defaultValue,
                             const std::string& path);

// Reads a section's plain values by key through the system; see Desktop::ReadProfileSection.
std::map<std::string, std::string> ReadPlainProfileValues(const std::string& section, const std::string& path);

// Writes a value through the system; false if the file cannot be written. The system keeps the file's encoding and
// replaces characters that it lacks by question marks. So a file in the system's code page is converted to UTF-16
// before such a text is written. The conversion replaces the file atomically.
bool WriteProfileValue(const std::string& section, const std::string& key, const std::string& value,
                       const std::string& path);

}  // namespace kw::windows
