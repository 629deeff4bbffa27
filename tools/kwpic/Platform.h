#pragma once

#include <cstdio>

#include "CommandLine.h"

namespace kw {

// True where what is written to `file` appears on a screen of text.
bool IsTerminal(std::FILE* file);

// The program behind the system's own kind of main function; arguments in UTF-8, without the program's name.
int RunProgram(const Arguments& arguments);

}  // namespace kw
