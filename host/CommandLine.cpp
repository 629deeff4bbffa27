#include "CommandLine.h"

#include <filesystem>

namespace kw::host {
namespace {

std::wstring FullPath(const std::wstring& path) { return std::filesystem::absolute(path).wstring(); }

std::wstring Folder(const std::wstring& path) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(path, ignored)) throw UsageError{L"There is no folder \"" + path + L"\"."};
  return (std::filesystem::absolute(path) / L"").make_preferred().wstring();
}

bool YesOrNo(const std::wstring& value) {
  if (value != L"yes" && value != L"no") throw UsageError{L"--editable takes yes or no, not \"" + value + L"\"."};
  return value == L"yes";
}

}  // namespace

CommandLine ParseCommandLine(const std::vector<std::wstring>& arguments) {
  CommandLine line;
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    const std::wstring& name = *argument;
    const auto value = [&]() -> const std::wstring& {
      if (++argument == arguments.end() || argument->empty()) throw UsageError{name + L" needs a value."};
      return *argument;
    };
    if (name == L"--appdir") {
      line.appDir = Folder(value());
    } else if (name == L"--background") {
      line.background = FullPath(value());
    } else if (name == L"--signature") {
      line.signature = FullPath(value());
    } else if (name == L"--settings") {
      line.settings = FullPath(value());
    } else if (name == L"--editable") {
      line.isEditable = YesOrNo(value());
    } else if (name.starts_with(L"-") || name.empty()) {
      throw UsageError{L"\"" + name + L"\" is not an option."};
    } else if (!line.file.empty()) {
      throw UsageError{L"Only one file can be opened; \"" + name + L"\" is too many."};
    } else {
      line.file = FullPath(name);
    }
  }
  return line;
}

}  // namespace kw::host
