#pragma once

#include "CommandLine.h"

namespace kw {

// What could not be done. It holds one line for the user.
struct Failure {
  std::string message;
};

// Does it. Throws UsageError where the request makes no sense, whatever the files hold, and Failure.
void Run(const Request& request);

}  // namespace kw
