#pragma once

#include <optional>
#include <string>
#include <vector>

#include "picture/effects/Effect.h"

namespace kw {

using Arguments = std::vector<std::string>;

// What the program is asked to do.
struct Request {
  enum class Command { Info, Split, Join, Convert, Apply, Effects };
  Command command = Command::Effects;
  std::vector<std::string> inputs;
  // A file, or the folder of Split.
  std::string output;
  std::optional<int> page;
  std::optional<int> bitsPerPixel;
  std::optional<int> quality;
  const Effect* effect = nullptr;
  // Of the effect's parameters, in their order.
  std::vector<double> values;
};

// A command line that asks for nothing that can be done. It holds one line for the user.
struct UsageError {
  std::string message;
};

// None where the answer, help or version, was written to standard output already. Throws UsageError.
std::optional<Request> ReadCommandLine(const Arguments& arguments);

}  // namespace kw
