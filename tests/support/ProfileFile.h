#pragma once

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "components/base/FilePath.h"
#include "components/base/Unicode.h"

namespace kw::test {

// A profile file as the system's profile functions treat it, in UTF-8: lines "key=value" below lines "[section]",
// names compared without regard to case, blanks around names and values left out, one pair of quotes around a value
// taken off, ";" beginning a comment. Of several sections or keys of one name the first counts.
class ProfileFile {
public:
  explicit ProfileFile(const std::string& path) : path(path), lines(LinesOf(ReadAll(path))) {}

  // At most 511 characters; the default if there is no such key.
  std::string Read(std::string_view section, std::string_view key, const std::string& defaultValue) const {
    const Range range = Find(section);
    const std::size_t at = FindKey(range, key);
    const std::size_t equals = at < range.last ? lines[at].find('=') : std::string::npos;
    if (equals == std::string::npos) return defaultValue;
    const std::string_view value = std::string_view(lines[at]).substr(equals + 1);
    return Readable(WithoutQuotes(Trimmed(value.substr(0, value.find('\0')))), LongestValue);
  }

  // The values that Read gives as they stand in the file, by their keys.
  std::map<std::string, std::string> ReadPlainValues(std::string_view section) const {
    std::map<std::string, std::string> values;
    const Range range = Find(section);
    for (std::size_t at = range.first; at < range.last; ++at) {
      const std::string_view line = lines[at];
      const std::size_t equals = line.find('=');
      if (equals == std::string::npos || Trimmed(line).starts_with(';')) continue;
      const std::string_view value = line.substr(equals + 1);
      values.emplace(Trimmed(line.substr(0, equals)), Readable(Trimmed(value.substr(0, value.find('\0')))));
    }
    std::erase_if(values, [](const auto& one) {
      return one.second.size() > LongestValue || one.second.starts_with('"') || one.second.starts_with('\'');
    });
    return values;
  }

  // Changes the key's line, or adds one at the end of the section, which is added if it is missing; all other lines
  // stay. False if the file cannot be written.
  bool Write(std::string_view section, std::string_view key, std::string_view value) {
    Range range = Find(section);
    if (!range.isFound) {
      lines.push_back("[" + std::string(section) + "]");
      range = {lines.size(), lines.size(), true};
    }
    const std::string line = std::string(key) + "=" + std::string(value);
    const std::size_t at = FindKey(range, key);
    if (at < range.last) {
      lines[at] = line;
    } else {
      std::size_t end = range.last;
      while (end > range.first && Trimmed(lines[end - 1]).empty()) --end;
      lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(end), line);
    }
    std::ofstream file(ToFilesystemPath(path), std::ios::binary);
    for (const std::string& one : lines) file << one << "\r\n";
    file.flush();
    return file.good();
  }

private:
  static constexpr std::size_t LongestValue = 511;

  static std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\v\f";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
  }

  static bool IsSameName(std::string_view a, std::string_view b) {
    const auto lower = [](char one) { return std::tolower(static_cast<unsigned char>(one)); };
    return std::ranges::equal(a, b, {}, lower, lower);
  }

  // Lines without their ends, which are CR LF, CR or LF; nothing behind the last one.
  static std::vector<std::string> LinesOf(std::string_view content) {
    std::vector<std::string> lines;
    while (!content.empty()) {
      const std::size_t end = std::min(content.find_first_of("\r\n"), content.size());
      lines.emplace_back(content.substr(0, end));
      content.remove_prefix(std::min(content.size(), end + (content.substr(end).starts_with("\r\n") ? 2 : 1)));
    }
    return lines;
  }

  static std::string ReadAll(const std::string& path) {
    if (!std::filesystem::is_regular_file(ToFilesystemPath(path))) return {};
    std::ifstream file(ToFilesystemPath(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  static bool IsSectionLine(std::string_view line) {
    return Trimmed(line).starts_with('[') && line.find(']') != std::string_view::npos;
  }

  static std::string_view SectionOf(std::string_view line) {
    const std::size_t open = line.find('[');
    return Trimmed(line.substr(open + 1, line.rfind(']') - open - 1));
  }

  static bool HasKey(std::string_view line, std::string_view key) {
    return !Trimmed(line).starts_with(';') && IsSameName(Trimmed(line.substr(0, line.find('='))), key);
  }

  struct Range {
    std::size_t first = 0;
    std::size_t last = 0;  // past the end
    bool isFound = false;
  };

  // The lines below the section's own.
  Range Find(std::string_view section) const {
    const auto begin = std::ranges::find_if(
        lines, [&](const std::string& line) { return IsSectionLine(line) && IsSameName(SectionOf(line), section); });
    if (begin == lines.end()) return {};
    const auto end = std::find_if(begin + 1, lines.end(), [](const std::string& line) { return IsSectionLine(line); });
    return {static_cast<std::size_t>(begin + 1 - lines.begin()), static_cast<std::size_t>(end - lines.begin()), true};
  }

  std::size_t FindKey(const Range& section, std::string_view key) const {
    std::size_t at = section.first;
    while (at < section.last && !HasKey(lines[at], key)) ++at;
    return at;
  }

  static std::string_view WithoutQuotes(std::string_view value) {
    const bool isQuoted = value.size() > 1 && (value[0] == '"' || value[0] == '\'') && value.back() == value[0];
    return isQuoted ? value.substr(1, value.size() - 2) : value;
  }

  // Bytes that are no character are shown as such.
  static std::string Readable(std::string_view text, std::size_t most = std::string_view::npos) {
    const std::u16string whole = Utf16FromUtf8(text);
    return Utf8FromUtf16(std::u16string_view(whole).substr(0, most));
  }

  std::string path;
  std::vector<std::string> lines;
};

}  // namespace kw::test
