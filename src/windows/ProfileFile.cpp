#include "windows/ProfileFile.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

#include "components/FilePath.h"
#include "windows/Text.h"

namespace kw::windows {
namespace {

constexpr std::string_view Utf16Mark = "\xFF\xFE";
constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";

bool FitsTheCodePage(const std::wstring& text) {
  if (std::ranges::all_of(text, [](wchar_t one) { return one < 128; })) return true;
  BOOL isReplaced = FALSE;
  WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr,
                      &isReplaced);
  return isReplaced == FALSE;
}

std::wstring FromCodePage(const std::string& text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0)), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
  return wide;
}

// Where this fails the file stays as it is.
void ChangeToUtf16(const std::filesystem::path& path) {
  std::string content;
  {
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open() && std::filesystem::exists(path)) return;
    content.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    if (file.bad() || content.size() > std::numeric_limits<int>::max()) return;
  }
  if (content.starts_with(Utf16Mark) || content.starts_with(Utf8Mark)) return;
  const std::wstring wide = FromCodePage(content);
  std::filesystem::path changed = path;
  changed += L".tmp";
  {
    std::ofstream file(changed, std::ios::binary);
    file << Utf16Mark;
    file.write(reinterpret_cast<const char*>(wide.data()), static_cast<std::streamsize>(wide.size() * sizeof(wchar_t)));
    file.close();
    if (file.fail()) {
      DeleteFileW(changed.c_str());
      return;
    }
  }
  if (MoveFileExW(changed.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) == FALSE) DeleteFileW(changed.c_str());
}

}  // namespace

std::string ReadProfileValue(const std::string& section, const std::string& key, const std::string& defaultValue,
                             const std::string& path) {
  std::array<wchar_t, 512> value = {};
  const DWORD length =
      GetPrivateProfileStringW(ToWide(section).c_str(), ToWide(key).c_str(), ToWide(defaultValue).c_str(), value.data(),
                               static_cast<DWORD>(value.size()), ToWide(path).c_str());
  return FromWide({value.data(), length});
}

bool WriteProfileValue(const std::string& section, const std::string& key, const std::string& value,
                       const std::string& path) {
  const std::wstring text = ToWide(value);
  if (!FitsTheCodePage(text)) ChangeToUtf16(ToFilesystemPath(path));
  return WritePrivateProfileStringW(ToWide(section).c_str(), ToWide(key).c_str(), text.c_str(), ToWide(path).c_str()) !=
         FALSE;
}

}  // namespace kw::windows
