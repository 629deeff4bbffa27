#pragma once

#include <string>

// The system below the emulated one.
namespace kw::test::UnixHost {

// A file's path as its programs know it.
std::string PathOf(const std::string& path);

// Runs a command of its shell and waits until it is over, by the file that it leaves at its end.
bool Run(const std::string& command, const std::string& doneFile);

}  // namespace kw::test::UnixHost
