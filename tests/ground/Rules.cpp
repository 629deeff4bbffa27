#include "ground/Rules.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <optional>
#include <set>

namespace kw::ground {
namespace {

using Names = std::set<std::string_view>;

// Every room and the rooms it may include besides itself, lower rooms first.
const std::map<std::string_view, Names>& Rooms() {
  static const std::map<std::string_view, Names> rooms = [] {
    const Names base = {"components", "trap"};
    const auto with = [](Names names, const Names& more) {
      names.insert(more.begin(), more.end());
      return names;
    };
    const Names form = with(base, {"drawing", "form"});
    const Names document = with(form, {"layers", "view"});
    const Names commands = with(document, {"picture", "document"});
    const Names canvas = with(commands, {"commands"});
    const Names stamps = with(canvas, {"canvas"});
    return std::map<std::string_view, Names>{
        {"components", {}},
        {"trap", {"components"}},
        {"drawing", base},
        {"picture", base},
        {"form", with(base, {"drawing"})},
        {"layers", form},
        {"view", with(form, {"layers"})},
        {"document", document},
        {"commands", commands},
        {"canvas", canvas},
        {"stamps", stamps},
        {"devices", stamps},
        {"control", with(stamps, {"stamps", "devices"})},
        {"windows", with(base, {"drawing", "resources"})},
        // The control's loader of pictures is put together here.
        {"activex", with(form, {"control", "windows", "picture", "resources"})},
        {"tools", with(base, {"picture"})},
        {"host", {}},
    };
  }();
  return rooms;
}

bool IsStandardHeader(std::string_view name) {
  static const Names names = {
      "algorithm",
      "any",
      "array",
      "atomic",
      "barrier",
      "bit",
      "bitset",
      "cassert",
      "cctype",
      "cerrno",
      "cfenv",
      "cfloat",
      "charconv",
      "chrono",
      "cinttypes",
      "climits",
      "clocale",
      "cmath",
      "codecvt",
      "compare",
      "complex",
      "concepts",
      "coroutine",
      "csetjmp",
      "csignal",
      "cstdarg",
      "cstddef",
      "cstdint",
      "cstdio",
      "cstdlib",
      "cstring",
      "ctime",
      "cuchar",
      "cwchar",
      "cwctype",
      "deque",
      "exception",
      "execution",
      "filesystem",
      "forward_list",
      "fstream",
      "functional",
      "future",
      "initializer_list",
      "iomanip",
      "ios",
      "iosfwd",
      "iostream",
      "istream",
      "iterator",
      "latch",
      "limits",
      "list",
      "locale",
      "map",
      "memory",
      "memory_resource",
      "mutex",
      "new",
      "numbers",
      "numeric",
      "optional",
      "ostream",
      "queue",
      "random",
      "ranges",
      "ratio",
      "regex",
      "scoped_allocator",
      "semaphore",
      "set",
      "shared_mutex",
      "source_location",
      "span",
      "sstream",
      "stack",
      "stdexcept",
      "stop_token",
      "streambuf",
      "string",
      "string_view",
      "syncstream",
      "system_error",
      "thread",
      "tuple",
      "type_traits",
      "typeindex",
      "typeinfo",
      "unordered_map",
      "unordered_set",
      "utility",
      "valarray",
      "variant",
      "vector",
      "version",
  };
  // The last one is the compiler's: instructions of the processor.
  static const Names libraries = {"gif_lib.h",  "jerror.h",   "jpeglib.h", "tiff.h",
                                  "tiffio.h",   "tiffvers.h", "zlib.h",    "benchmark/benchmark.h",
                                  "tmmintrin.h"};
  static constexpr std::array<std::string_view, 7> folders = {"gtest/", "gmock/",     "hwy/",    "CLI/",
                                                              "cairo/", "leptonica/", "opencv2/"};
  return names.contains(name) || libraries.contains(name) ||
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
  if (path == "tests/picture/DurabilityTest.cpp") return true;     // what the system is asked to flush
  if (path.starts_with("src/components/SystemFile")) return true;  // what files need of each system
  if (path.starts_with("tests/twain/")) return true;               // a driver for Windows
  if (path.starts_with("tests/clients/")) return true;             // programs for Windows
  return folder == "windows" || folder == "activex" || folder == "host" ||
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

std::vector<Finding> RoomOrder(std::string_view path, std::string_view text) {
  std::vector<Finding> findings;
  const auto room = RoomOf(path);
  if (!IsCode(path) || room.empty()) return findings;
  const auto known = Rooms().find(room);
  if (known == Rooms().end()) return {{std::string(path), 1, "lies in a room that has no place in the order"}};
  ForEachLine(text, [&](std::string_view line, int number) {
    const auto include = IncludeOf(line);
    if (!include || !include->quoted) return;
    const auto other = FolderAt(include->name, 0);
    // The host knows the control by its type library alone, whose compiled form lies in the folder of the IDL file.
    if (room == "host" && include->name == "activex/KwEditor.h") return;
    if (other.empty() || other == room || (room == "tools" && !Rooms().contains(other))) return;
    if (!known->second.contains(other))
      findings.push_back({std::string(path), number, std::string(room) + " includes " + std::string(include->name)});
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

}  // namespace kw::ground
