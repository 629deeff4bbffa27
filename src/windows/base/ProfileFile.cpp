#include "windows/base/ProfileFile.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <optional>

#include "components/base/FilePath.h"
#include "components/base/SystemFile.h"
#include "components/base/TemporaryFiles.h"
#include "windows/base/Text.h"

namespace kw::windows {
namespace {

constexpr std::size_t ValueRoom = 512;
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

bool WriteBytes(std::FILE* file, std::string_view bytes) {
  std::size_t done = 0;
  return FileSystem::Current().Write(file, bytes.data(), bytes.size(), done) == 0 && done == bytes.size();
}

bool WriteAll(const std::filesystem::path& path, const std::wstring& text) {
  const FileSystem& files = FileSystem::Current();
  OpenedFile file;
  if (files.Open(path, FileUse::Create, file) != 0) return false;
  const std::string_view bytes(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
  return WriteBytes(file.get(), Utf16Mark) && WriteBytes(file.get(), bytes) && files.Flush(file.get()) == 0 &&
         files.Close(file.release()) == 0;
}

// The whole file; empty text if there is none, none if it cannot be read.
std::optional<std::string> ReadAll(const std::filesystem::path& path) {
  const FileSystem& files = FileSystem::Current();
  OpenedFile file;
  if (const SystemCode code = files.Open(path, FileUse::Read, file); code != 0) {
    return IsMissing(code) ? std::optional<std::string>("") : std::nullopt;
  }
  FileFacts facts;
  if (files.LookAt(file.get(), facts) != 0 || facts.size > std::numeric_limits<int>::max()) return {};
  std::string content(static_cast<std::size_t>(facts.size), '\0');
  std::size_t done = 0;
  if (files.Read(file.get(), content.data(), content.size(), done) != 0 || done != content.size()) return {};
  return content;
}

// On failure the file stays unchanged.
void ChangeToUtf16(const std::filesystem::path& path) {
  const auto content = ReadAll(path);
  if (!content || content->starts_with(Utf16Mark) || content->starts_with(Utf8Mark)) return;
  RemoveLeftovers(path.parent_path());
  const FileSystem& files = FileSystem::Current();
  const std::filesystem::path changed = TemporaryBeside(path);
  if (WriteAll(changed, FromCodePage(*content)) &&
      files.PutInPlace(changed, path, Existing::Replaced, Durability::Lasting) == 0) {
    return;
  }
  files.Remove(changed);
}

std::wstring_view WithoutBlanks(std::wstring_view text) {
  constexpr std::wstring_view blanks = L" \t\v\f";
  const std::size_t first = text.find_first_not_of(blanks);
  return first == std::wstring_view::npos ? std::wstring_view()
                                          : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// If several lines have the same key, the first one counts.
void AddValue(std::wstring_view line, std::map<std::string, std::string>& values) {
  const std::size_t equals = line.find(L'=');
  if (equals == std::wstring_view::npos || line.starts_with(L';')) return;
  values.emplace(FromWide(WithoutBlanks(line.substr(0, equals))), FromWide(WithoutBlanks(line.substr(equals + 1))));
}

bool IsPlain(const std::string& value) {
  return value.size() < ValueRoom && !value.starts_with('"') && !value.starts_with('\'');
}

}  // namespace

std::map<std::string, std::string> ReadPlainProfileValues(const std::string& section, const std::string& path) {
  constexpr std::size_t most = std::size_t{1} << 25U;
  std::wstring lines(std::size_t{1} << 15U, L'\0');
  std::size_t length = 0;
  for (;;) {
    length = GetPrivateProfileSectionW(ToWide(section).c_str(), lines.data(), static_cast<DWORD>(lines.size()),
                                       ToWide(path).c_str());
    // The system truncates what does not fit and leaves two characters free.
    if (length + 2 < lines.size()) break;
    if (lines.size() == most) return {};
    lines.resize(lines.size() * 2);
  }
  std::map<std::string, std::string> values;
  for (std::size_t at = 0; at < length;) {
    const std::size_t end = std::min(lines.find(L'\0', at), length);
    AddValue(std::wstring_view(lines).substr(at, end - at), values);
    at = end + 1;
  }
  std::erase_if(values, [](const auto& one) { return !IsPlain(one.second); });
  return values;
}

std::string ReadProfileValue(const std::string& section, const std::string& key, const std::string& defaultValue,
                             const std::string& path) {
  std::array<wchar_t, ValueRoom> value = {};
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
