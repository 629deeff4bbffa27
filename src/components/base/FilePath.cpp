#include "components/base/FilePath.h"

#include <algorithm>

#include "components/base/Unicode.h"

namespace kw {

#ifdef _WIN32

namespace {

constexpr std::size_t LongestPlainPath = 240;

bool HasPrefix(std::wstring_view text, std::wstring_view prefix) { return text.substr(0, prefix.size()) == prefix; }

bool IsDriveAbsolute(std::wstring_view text) { return text.size() > 2 && text[1] == L':' && text[2] == L'\\'; }

}  // namespace

std::filesystem::path ToFilesystemPath(std::string_view path) {
  const std::u16string units = Utf16FromUtf8(path);
  std::wstring wide(units.begin(), units.end());
  std::replace(wide.begin(), wide.end(), L'/', L'\\');
  if (wide.size() >= LongestPlainPath && !HasPrefix(wide, L"\\\\?\\")) {
    // Behind the prefix the system no longer resolves "." and "..", so the path is made plain first.
    wide = std::filesystem::path(wide).lexically_normal().wstring();
    if (IsDriveAbsolute(wide))
      wide.insert(0, L"\\\\?\\");
    else if (HasPrefix(wide, L"\\\\"))
      wide.replace(0, 2, L"\\\\?\\UNC\\");
  }
  return wide;
}

std::string FromFilesystemPath(const std::filesystem::path& path) {
  std::wstring wide = path.wstring();
  if (HasPrefix(wide, L"\\\\?\\UNC\\"))
    wide.replace(0, 8, L"\\\\");
  else if (HasPrefix(wide, L"\\\\?\\"))
    wide.erase(0, 4);
  return Utf8FromUtf16(std::u16string(wide.begin(), wide.end()));
}

#else

std::filesystem::path ToFilesystemPath(std::string_view path) {
  std::string native(path);
  std::replace(native.begin(), native.end(), '\\', '/');
  return native;
}

std::string FromFilesystemPath(const std::filesystem::path& path) { return path.string(); }

#endif

}  // namespace kw
