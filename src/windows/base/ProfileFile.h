#pragma once

#include <map>
#include <string>

namespace kw::windows {

// A value of a profile file by the system's reader, at most 511 characters.
std::string ReadProfileValue(const std::string& section, const std::string& key, const std::string& defaultValue,
                             const std::string& path);

// The plain values of a section by their keys, by the system's reader; see Desktop::ReadProfileSection.
std::map<std::string, std::string> ReadPlainProfileValues(const std::string& section, const std::string& path);

// Writes a value by the system's writer; false where the file cannot be written. That writer keeps the encoding that
// the file has and turns what this lacks into question marks; so a file in the system's code page becomes one in
// UTF-16 before a text that needs it is written. It is replaced as a whole: at any time one of both is there.
bool WriteProfileValue(const std::string& section, const std::string& key, const std::string& value,
                       const std::string& path);

}  // namespace kw::windows
