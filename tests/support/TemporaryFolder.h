#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "components/base/FilePath.h"

namespace kw::test {

// The parent of the folders of tests: in memory if there is room, since a disk delays each file that takes another's
// place.
inline std::filesystem::path RoomForTests() {
  constexpr std::uintmax_t enough = std::uintmax_t{1} << 30U;
#ifdef _WIN32
  const char* const memory = "Z:\\dev\\shm";  // under Wine
#else
  const char* const memory = "/dev/shm";
#endif
  std::error_code error;
  const auto space = std::filesystem::space(memory, error);
  const auto mayAllWrite = std::filesystem::status(memory, error).permissions() & std::filesystem::perms::others_write;
  if (!error && space.available >= enough && mayAllWrite != std::filesystem::perms::none) return memory;
  return std::filesystem::temp_directory_path();
}

// A new folder for one test, removed with all that is in it. Paths handed out are in the editor's notation.
class TemporaryFolder {
public:
  TemporaryFolder() {
    std::random_device random;
    folder = RoomForTests() / ("kw-" + std::to_string(random()) + "-" + std::to_string(random()));
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

// The bytes of a file; empty if there is none.
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
