#pragma once

#include <optional>
#include <string>
#include <vector>

#include "picture/effects/Effect.h"

namespace kw {

using Arguments = std::vector<std::string>;

// A parsed command line.
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
  // The values of the effect's parameters, in their order.
  std::vector<double> values;
  // The table of effects as the documentation has it.
  bool isMarkdown = false;
};

// A command line that asks for nothing that can be done. It holds one line for the user.
struct UsageError {
  std::string message;
};

// None if the answer (help or version) was written to standard output already. Throws UsageError.
std::optional<Request> ReadCommandLine(const Arguments& arguments);

}  // namespace kw
