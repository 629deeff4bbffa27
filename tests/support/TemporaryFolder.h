#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "components/FilePath.h"

namespace kw::test {

// A new folder for one test, removed with all that is in it. Paths handed out are in the editor's notation.
class TemporaryFolder {
public:
  TemporaryFolder() {
    static int count = 0;
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    folder = std::filesystem::temp_directory_path() / ("kw-" + std::to_string(now) + "-" + std::to_string(++count));
    std::filesystem::create_directories(folder);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }

  // Ends with a backslash.
  std::string Path() const { return Notation(folder) + "\\"; }
  std::string File(const std::string& name) const { return Path() + name; }
  const std::filesystem::path& Native() const { return folder; }

private:
  static std::string Notation(const std::filesystem::path& path) {
    std::string text = FromFilesystemPath(path);
    for (char& one : text) {
      if (one == '/') one = '\\';
    }
    return text;
  }
  std::filesystem::path folder;
};

// The whole of a file; empty where there is none.
inline std::string ReadWhole(const std::string& path) {
  std::ifstream file(ToFilesystemPath(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteWhole(const std::string& path, const std::string& content) {
  std::ofstream file(ToFilesystemPath(path), std::ios::binary);
  file << content;
}

inline bool Exists(const std::string& path) { return std::filesystem::exists(ToFilesystemPath(path)); }

}  // namespace kw::test
