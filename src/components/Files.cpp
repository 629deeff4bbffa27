#include "components/Files.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

#include "components/FilePath.h"
#include "components/RunTimeError.h"

namespace kw {
namespace {

std::int32_t LastSystemError() {
#ifdef _WIN32
  return static_cast<std::int32_t>(_doserrno);
#else
  return errno;
#endif
}

ErrorNumber NumberOf(int code) {
  switch (code) {
    case ENOENT:
    case ENOTDIR:
      return ErrorNumber::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
      return ErrorNumber::PermissionDenied;
    case ENOSPC:
      return ErrorNumber::DiskFull;
    default:
      return ErrorNumber::PathFileAccessError;
  }
}

struct Closer {
  void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

std::FILE* OpenToAppend(const std::filesystem::path& path) {
#ifdef _WIN32
  return _wfopen(path.c_str(), L"ab");
#else
  return std::fopen(path.c_str(), "ab");
#endif
}

}  // namespace

void AppendToFile(const std::string& path, std::string_view text) {
  errno = 0;
  const std::unique_ptr<std::FILE, Closer> file(OpenToAppend(ToFilesystemPath(path)));
  if (file == nullptr) {
    const int code = errno;
    Raise(NumberOf(code), LastSystemError());
  }
  // One write of the whole text, straight to the system, so that two writers do not interleave.
  static_cast<void>(std::setvbuf(file.get(), nullptr, _IONBF, 0));
  if (std::fwrite(text.data(), 1, text.size(), file.get()) != text.size()) {
    const int code = errno;
    Raise(NumberOf(code), LastSystemError());
  }
}

std::string LookUpFile(const std::string& path) {
  std::error_code error;
  const std::filesystem::path native = ToFilesystemPath(path);
  const auto status = std::filesystem::status(native, error);
  if (error || !std::filesystem::exists(status) || std::filesystem::is_directory(status)) return {};
  return FromFilesystemPath(native.filename());
}

void RemoveFileAt(const std::string& path) {
  if (LookUpFile(path).empty()) Raise(ErrorNumber::FileNotFound);
  std::error_code error;
  std::filesystem::remove(ToFilesystemPath(path), error);
  if (error) Raise(ErrorNumber::PathFileAccessError, error.value());
}

}  // namespace kw
