#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// The rules that hold the rooms of the source tree apart. Each takes one file, its path from the project's root with
// forward slashes and its text, and returns what breaks the rule; nothing when the rule does not concern that file.
namespace kw::architecture {

struct Finding {
  std::string path;
  int line = 0;  // from 1
  std::string what;
};

// Headers of an operating system, outside the rooms that talk to it. Portable code may include the standard library,
// the codec libraries and the test libraries; every other header in angle brackets is a finding.
std::vector<Finding> OperatingSystemHeaders(std::string_view path, std::string_view text);

// The rooms of the source tree, each with the folder of its files and the rooms that it may include, as the calls of
// kw_room in the CMakeLists.txt files tell them. A file belongs to the room whose folder is the innermost around it.
class RoomTable {
public:
  // `path` is that of a CMakeLists.txt file from the project's root.
  void Add(std::string_view path, std::string_view text);

  // Includes of a room that the including room does not name, although another room may hand its headers on.
  std::vector<Finding> Order(std::string_view path, std::string_view text) const;

private:
  struct Room {
    std::string folder;
    std::set<std::string> lower;
  };
  // Null if no room holds the file.
  const Room* RoomOf(std::string_view path) const;

  std::map<std::string, Room, std::less<>> rooms;
};

// `try` and `catch` in the editor's rooms, where the trap alone handles errors.
std::vector<Finding> ErrorHandlers(std::string_view path, std::string_view text);

// In the rooms that the system and hosts call: a callback, a COM method, an exported procedure or a destructor that
// lets an error out. Each has a barrier around what it does, or calls nothing but what is known to throw nothing. `try`
// and `catch` are the barrier's alone.
std::vector<Finding> OpenBarriers(std::string_view path, std::string_view text);

// Calls to the file system in the product, outside the one place that a test can make fail.
std::vector<Finding> FilesPastTheSeam(std::string_view path, std::string_view text);

// More than 400 lines.
std::vector<Finding> LongFiles(std::string_view path, std::string_view text);

// Addresses and host names of the network, apart from those of XML name spaces.
std::vector<Finding> Hosts(std::string_view path, std::string_view text);

// The text with comments and the content of string and character literals blanked; line breaks stay.
std::string WithoutCommentsAndLiterals(std::string_view text);

}  // namespace kw::architecture
