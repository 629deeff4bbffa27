#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kw::host {

inline constexpr wchar_t Usage[] =
    L"KwHost.exe [FILE] [--appdir DIR] [--background FILE] [--signature FILE] [--editable yes|no] "
    L"[--settings FILE]";

// The program's arguments. Paths are complete, an empty one was not given.
struct CommandLine {
  std::wstring file;
  std::wstring appDir;  // ends with a backslash
  std::wstring background;
  std::wstring signature;
  std::wstring settings;  // the file in which the control is kept from one run to the next
  std::optional<bool> isEditable;
};

// Arguments that make no sense; the message says which.
struct UsageError {
  std::wstring message;
};

// Takes the arguments after the program's name. Throws UsageError.
CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments);

}  // namespace kw::host
