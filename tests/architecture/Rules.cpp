#include "tests/architecture/Rules.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <utility>

namespace kw::architecture {
namespace {

using Names = std::set<std::string_view>;

bool IsStandardHeader(std::string_view name) {
  // The last one is the compiler's: instructions of the processor.
  static const Names libraries = {"gif_lib.h",  "jerror.h",   "jpeglib.h", "tiff.h",
                                  "tiffio.h",   "tiffvers.h", "zlib.h",    "benchmark/benchmark.h",
                                  "tmmintrin.h"};
  static constexpr std::array<std::string_view, 7> folders = {"gtest/", "gmock/",     "hwy/",    "CLI/",
                                                              "cairo/", "leptonica/", "opencv2/"};
  return name.find_first_of("/.") == std::string_view::npos || libraries.contains(name) ||
         std::any_of(folders.begin(), folders.end(), [&](auto folder) { return name.starts_with(folder); });
}

struct Include {
  std::string_view name;
  bool quoted = false;
};

std::string_view Trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

std::optional<Include> IncludeOf(std::string_view line) {
  line = Trimmed(line);
  if (!line.starts_with('#')) return std::nullopt;
  line = Trimmed(line.substr(1));
  if (!line.starts_with("include")) return std::nullopt;
  line = Trimmed(line.substr(7));
  if (line.empty() || (line[0] != '<' && line[0] != '"')) return std::nullopt;
  const bool quoted = line[0] == '"';
  const auto end = line.find(quoted ? '"' : '>', 1);
  if (end == std::string_view::npos) return std::nullopt;
  return Include{line.substr(1, end - 1), quoted};
}

// Calls take(line, number from 1) for every line.
template <class Take>
void ForEachLine(std::string_view text, Take take) {
  for (int number = 1; !text.empty(); ++number) {
    const auto end = std::min(text.find('\n'), text.size());
    take(text.substr(0, end), number);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

std::string_view FolderAt(std::string_view path, int depth) {
  for (; depth > 0; --depth) {
    const auto slash = path.find('/');
    if (slash == std::string_view::npos) return {};
    path.remove_prefix(slash + 1);
  }
  const auto slash = path.find('/');
  return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

bool IsCode(std::string_view path) { return path.ends_with(".h") || path.ends_with(".cpp") || path.ends_with(".c"); }

// The room a file belongs to; empty outside the rooms. Tests belong to none: they may look everywhere.
std::string_view RoomOf(std::string_view path) {
  const auto top = FolderAt(path, 0);
  if (top == "src") return FolderAt(path, 1);
  return top == "host" || top == "tools" ? top : std::string_view();
}

bool MayTalkToTheSystem(std::string_view path) {
  const auto top = FolderAt(path, 0);
  const auto folder = top == "src" || top == "tests" ? FolderAt(path, 1) : top;
  const auto file = path.substr(path.rfind('/') + 1);
  // Tests that lock files or limit the memory, each in the system's own way.
  if (path == "tests/picture/SavingTest.cpp" || path == "tests/picture/BadInputTest.cpp") return true;
  if (path == "tests/picture/DurabilityTest.cpp") return true;           // what the system is asked to flush
  if (path.starts_with("src/components/base/System")) return true;       // what files and memory need
  if (path == "tests/support/KilledProcess.h") return true;              // a process is ended
  if (path == "src/components/base/RowPadding.h") return true;           // the compiler's own sanitizer
  if (path == "tests/fuzz/HostileFilesTest.cpp") return true;            // processes with limits, and what they needed
  if (path.starts_with("tests/containers/")) return true;                // containers of Windows
  if (path.starts_with("tests/support/programs/twain/")) return true;    // a driver for Windows
  if (path.starts_with("tests/support/programs/clients/")) return true;  // programs for Windows
  if (path.starts_with("tests/support/win32/")) return true;             // what tests of real windows share
  if (path.starts_with("tests/ocxmemory/")) return true;                 // the built control
  if (path.starts_with("bench/ocx/")) return true;                       // its benchmark
  if (path.starts_with("cmake/")) return true;                           // linked into products for Windows
  if (path.starts_with("tests/torture/FailingMemory")) return true;      // stands before the system's own
  return folder == "windows" || folder == "activex" || folder == "host" || folder == "samples" ||
         (folder == "tools" && file.starts_with("Platform"));
}

bool IsWordCharacter(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

bool HasWord(std::string_view line, std::string_view word) {
  for (auto at = line.find(word); at != std::string_view::npos; at = line.find(word, at + 1)) {
    const auto end = at + word.size();
    if ((at == 0 || !IsWordCharacter(line[at - 1])) && (end == line.size() || !IsWordCharacter(line[end]))) return true;
  }
  return false;
}

}  // namespace

std::vector<Finding> OperatingSystemHeaders(std::string_view path, std::string_view text) {
  std::vector<Finding> findings;
  if (!IsCode(path) || MayTalkToTheSystem(path)) return findings;
  ForEachLine(text, [&](std::string_view line, int number) {
    const auto include = IncludeOf(line);
    if (!include) return;
    const bool ours = include->quoted && (include->name.find('/') != std::string_view::npos || RoomOf(path) == "tools");
    if (!ours && !(IsStandardHeader(include->name) && !include->quoted))
      findings.push_back({std::string(path), number, "includes " + std::string(include->name)});
  });
  return findings;
}

void RoomTable::Add(std::string_view path, std::string_view text) {
  static const std::regex call("kw_room\\(([^)]*)\\)");
  const std::string whole(text);
  std::smatch found;
  if (!std::regex_search(whole, found, call)) return;
  std::istringstream words(found[1].str());
  std::string name;
  words >> name;
  Room& room = rooms[name];
  room.folder = path.substr(0, path.rfind('/') + 1);
  bool isLower = false;
  for (std::string word; words >> word;) {
    if (word == "DEPENDS" || word == "LIBS") {
      isLower = word == "DEPENDS";
    } else if (isLower) {
      room.lower.insert(word);
    }
  }
}

const RoomTable::Room* RoomTable::RoomOf(std::string_view path) const {
  const Room* innermost = nullptr;
  for (const auto& [name, room] : rooms) {
    const bool isAround = path.starts_with(room.folder);
    if (isAround && (innermost == nullptr || room.folder.size() > innermost->folder.size())) innermost = &room;
  }
  return innermost;
}

std::vector<Finding> RoomTable::Order(std::string_view path, std::string_view text) const {
  const bool isOfRooms = path.starts_with("src/") || path.starts_with("tools/") || path.starts_with("host/");
  if (!IsCode(path) || !isOfRooms) return {};
  const Room* const room = RoomOf(path);
  if (room == nullptr && path.starts_with("src/")) return {{std::string(path), 1, "lies in no room"}};
  std::vector<Finding> findings;
  ForEachLine(text, [&](std::string_view line, int number) {
    const auto include = IncludeOf(line);
    if (!include || !include->quoted) return;
    const std::string header = "src/" + std::string(include->name);
    const Room* const other = RoomOf(header);
    if (other == nullptr || other == room) return;
    bool isAllowed = false;
    if (room != nullptr) {
      isAllowed = std::any_of(room->lower.begin(), room->lower.end(),
                              [&](const std::string& name) { return &rooms.at(name) == other; });
    } else if (path.starts_with("tools/")) {
      isAllowed = other == RoomOf("src/picture/") || other == RoomOf("src/components/base/");
    } else {
      // The host knows the control by its type library alone, whose compiled form lies in the folder of the IDL file.
      isAllowed = include->name == "activex/KwEditor.h";
    }
    if (!isAllowed) findings.push_back({std::string(path), number, "may not include " + std::string(include->name)});
  });
  return findings;
}

std::vector<Finding> ErrorHandlers(std::string_view path, std::string_view text) {
  static const Names editor = {"form",   "layers", "view",    "document", "commands",
                               "canvas", "stamps", "devices", "control"};
  std::vector<Finding> findings;
  if (!IsCode(path) || !editor.contains(RoomOf(path))) return findings;
  const auto code = WithoutCommentsAndLiterals(text);
  ForEachLine(code, [&](std::string_view line, int number) {
    for (const std::string_view word : {"try", "catch"})
      if (HasWord(line, word)) findings.push_back({std::string(path), number, "has a " + std::string(word)});
  });
  return findings;
}

std::vector<Finding> FilesPastTheSeam(std::string_view path, std::string_view text) {
  static constexpr std::array words = {
      // C and C++
      "fopen", "_wfopen", "freopen", "fread", "fwrite", "fseek", "ftell", "fclose", "tmpfile", "ifstream", "ofstream",
      "fstream", "basic_filebuf", "directory_iterator", "recursive_directory_iterator", "create_directory",
      "create_directories", "remove_all", "copy_file", "read_symlink", "create_symlink", "create_hard_link",
      "last_write_time", "resize_file", "file_size", "is_regular_file", "is_directory", "symlink_status",
      "filesystem::exists", "filesystem::remove", "filesystem::rename", "filesystem::status", "std::rename",
      // the systems
      "unlink", "mkdir", "CreateFile", "CreateFileW", "CreateFile2", "DeleteFile", "DeleteFileW", "MoveFileW",
      "MoveFileExW", "ReplaceFileW", "CopyFileW", "CopyFileExW", "CreateDirectoryW", "RemoveDirectoryW",
      "FindFirstFileW", "FindFirstFileExW", "GetFileAttributesW", "GetFileAttributesExW", "SetFileAttributesW",
      "GetTempFileNameW", "SHFileOperationW", "SHCreateStreamOnFileW", "SHCreateStreamOnFileEx",
      "GetPrivateProfileSectionW", "GetPrivateProfileStringW", "WritePrivateProfileStringW", "StgCreateDocfile",
      "StgCreateStorageEx", "StgOpenStorage"};
  static const std::set<std::pair<std::string_view, std::string_view>> exceptions = {
      // The list of stamps is the system's to read and write; it takes a path, not an open file.
      {"src/windows/base/ProfileFile.cpp", "GetPrivateProfileSectionW"},
      {"src/windows/base/ProfileFile.cpp", "GetPrivateProfileStringW"},
      {"src/windows/base/ProfileFile.cpp", "WritePrivateProfileStringW"},
  };
  std::vector<Finding> findings;
  // The host is a program of its own, which knows the control by its type library alone.
  if (!IsCode(path) || (!path.starts_with("src/") && !path.starts_with("tools/"))) return findings;
  if (path.starts_with("src/components/base/SystemFile")) return findings;  // the seam
  const auto code = WithoutCommentsAndLiterals(text);
  ForEachLine(code, [&](std::string_view line, int number) {
    for (const std::string_view word : words) {
      if (HasWord(line, word) && !exceptions.contains({path, word}))
        findings.push_back({std::string(path), number, "calls " + std::string(word) + " past FileSystem"});
    }
  });
  return findings;
}

std::vector<Finding> LongFiles(std::string_view path, std::string_view text) {
  constexpr int MostLines = 400;
  int lines = 0;
  ForEachLine(text, [&](std::string_view, int number) { lines = number; });
  if (lines <= MostLines || path.ends_with(".md")) return {};
  return {{std::string(path), lines, "is longer than 400 lines"}};
}

std::vector<Finding> Hosts(std::string_view path, std::string_view text) {
  static const Names nameSpaces = {"www.w3.org", "schemas.microsoft.com", "www.inkscape.org"};
  static constexpr std::array<std::string_view, 3> domains = {".com", ".net", ".org"};
  std::vector<Finding> findings;
  ForEachLine(text, [&](std::string_view line, int number) {
    const auto isPart = [](char c) { return IsWordCharacter(c) || c == '.' || c == '-'; };
    for (const auto* at = std::find_if(line.begin(), line.end(), isPart); at != line.end();
         at = std::find_if(at, line.end(), isPart)) {
      const auto* const end = std::find_if_not(at, line.end(), isPart);
      const std::string_view word(at, end);
      const bool isHost = std::any_of(domains.begin(), domains.end(), [&](auto domain) {
        return word.ends_with(domain) && word.size() > domain.size();
      });
      const bool isAddress = std::string_view(end, line.end()).starts_with("://") && word != "file";
      const std::string_view host = isAddress ? Trimmed(std::string_view(end, line.end()).substr(3)) : word;
      const bool allowed = nameSpaces.contains(host.substr(0, std::min(host.find_first_of("/\"'"), host.size())));
      if ((isHost || isAddress) && !allowed)
        findings.push_back({std::string(path), number, "names the host " + std::string(host)});
      at = end;
    }
  });
  return findings;
}

}  // namespace kw::architecture
