#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace kw::test {

// The outcome of a program that ran to its end.
struct ForeignRun {
  DWORD exitCode = 0;
  std::string output;
  std::vector<std::string> boxes;  // the words of each message box, which was closed as by Enter
};

// Runs a command line, answers the message boxes of its process, and waits for its end, at most a minute; then it is
// ended, with the exit code 99. `outputFile` keeps its output meanwhile.
ForeignRun RunForeignProgram(std::wstring command, const std::wstring& outputFile);

}  // namespace kw::test
