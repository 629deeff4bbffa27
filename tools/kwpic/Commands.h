#pragma once

#include "CommandLine.h"

namespace kw {

// A request that failed. It holds one line for the user.
struct Failure {
  std::string message;
};

// Runs the request. Throws UsageError if it makes no sense, whatever the files hold, and Failure.
void Run(const Request& request);

}  // namespace kw
