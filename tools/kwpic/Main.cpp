#include <algorithm>
#include <cstdio>
#include <exception>

#include "Commands.h"
#include "Platform.h"

namespace kw {
namespace {

enum ExitCode { Done = 0, Failed = 1, WrongUsage = 2 };

int Report(std::string message, ExitCode code) {
  // File names may hold anything.
  std::ranges::replace_if(
      message, [](unsigned char c) { return c < ' '; }, '?');
  std::fprintf(stderr, "kwpic: %s\n", message.c_str());
  return code;
}

}  // namespace

int RunProgram(const Arguments& arguments) {
  try {
    if (const auto request = ReadCommandLine(arguments)) Run(*request);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) return Report("the output cannot be written", Failed);
    return Done;
  } catch (const UsageError& error) {
    return Report(error.message, WrongUsage);
  } catch (const Failure& failure) {
    return Report(failure.message, Failed);
  } catch (const std::bad_alloc&) {
    return Report("there is not enough memory", Failed);
  } catch (const std::exception& error) {
    return Report(error.what(), Failed);
  }
}

}  // namespace kw
