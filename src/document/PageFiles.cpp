#include "document/PageFiles.h"

#include <cstddef>
#include <cstdlib>
#include <string_view>

#include "components/base/Blank.h"
#include "components/base/RunTimeError.h"
#include "picture/PageMarker.h"
#include "trap/Trap.h"

namespace kw {
namespace {

std::string WithBackslash(std::string folder) {
  if (!folder.ends_with('\\')) folder += '\\';
  return folder;
}

std::string_view ExtensionOf(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) Raise(ErrorNumber::InvalidProcedureCall);
  return path.substr(dot + 1);
}

}  // namespace

std::string GetWorkFolder(const Desktop& desktop) {
  return WithBackslash(IsBlank(AppDir) ? desktop.ApplicationFolder() : AppDir);
}

std::int64_t InstanceNumber(const std::string& machine, std::int64_t process) {
  constexpr std::int64_t prime = 2147483647;
  std::int64_t number = 0;
  for (const char c : machine) number = (number * 31 + static_cast<unsigned char>(c)) % prime;
  return (number << 32) + process;
}

std::string GetTempImagePath(const Desktop& desktop) {
  const std::int64_t instance = InstanceNumber(desktop.MachineName(), desktop.ProcessNumber());
  return GetWorkFolder(desktop) + "tmp" + std::to_string(std::abs(instance)) + ".bmp";
}

std::string GetPageFileName(const std::string& path, std::int16_t pageNo) {
  const std::string_view extension = ExtensionOf(path);
  std::string name = path.substr(0, path.size() - extension.size() - 1);
  name += PageMarker;
  name += std::to_string(pageNo);
  name += '.';
  name += extension;
  return name;
}

std::string GetSourceFileName(const std::string& pageFile) {
  const std::string_view extension = ExtensionOf(pageFile);
  const std::size_t marker = pageFile.find(PageMarker);
  if (marker == std::string::npos) Raise(ErrorNumber::InvalidProcedureCall);
  std::string name = pageFile.substr(0, marker);
  name += '.';
  name += extension;
  return name;
}

bool IsFirstPageFile(const std::string& name) {
  const std::size_t marker = name.find(PageMarker);
  return marker != std::string::npos && name.find("_1.", marker + PageMarker.size() - 1) != std::string::npos;
}

}  // namespace kw
