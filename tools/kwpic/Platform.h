#pragma once

#include <cstdio>

#include "CommandLine.h"

namespace kw {

// True if `file` is a terminal.
bool IsTerminal(std::FILE* file);

// The program behind the system's own kind of main function; arguments in UTF-8, without the program's name.
int RunProgram(const Arguments& arguments);

}  // namespace kw
