#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/architecture/Rules.h"

// The rules applied to every file of the project. KW_SOURCE is the project's root.
namespace kw::architecture {
namespace {

struct File {
  std::string path;  // from the root, with forward slashes
  std::string text;
};

std::string Read(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

const std::vector<File>& Tree() {
  static const std::vector<File> files = [] {
    namespace fs = std::filesystem;
    const fs::path root(KW_SOURCE);
    std::vector<File> found;
    for (auto at = fs::recursive_directory_iterator(root); at != fs::recursive_directory_iterator(); ++at) {
      if (at->is_directory() && at.depth() == 0 &&
          (at->path().filename() == "build" || at->path().filename() == ".git"))
        at.disable_recursion_pending();
      if (!at->is_regular_file()) continue;
      auto text = Read(at->path());
      if (text.find('\0') == std::string::npos)
        found.push_back({at->path().lexically_relative(root).generic_string(), text});
    }
    return found;
  }();
  return files;
}

template <class Rule>
void ExpectTreeKeeps(Rule rule) {
  ASSERT_GT(Tree().size(), 50U) << "the tree was not found below " << KW_SOURCE;
  for (const auto& file : Tree())
    for (const auto& finding : rule(file.path, file.text))
      ADD_FAILURE() << finding.path << ":" << finding.line << ": " << finding.what;
}

TEST(Tree, IncludesNoOperatingSystemHeaderInPortableCode) { ExpectTreeKeeps(OperatingSystemHeaders); }
TEST(Tree, KeepsTheOrderOfTheRooms) {
  RoomTable rooms;
  for (const auto& file : Tree())
    if (file.path.ends_with("/CMakeLists.txt")) rooms.Add(file.path, file.text);
  ExpectTreeKeeps([&](std::string_view path, std::string_view text) { return rooms.Order(path, text); });
}
TEST(Tree, HandlesErrorsInTheTrapOnly) { ExpectTreeKeeps(ErrorHandlers); }
TEST(Tree, LetsNoErrorOutToTheSystem) { ExpectTreeKeeps(OpenBarriers); }
TEST(Tree, TouchesFilesThroughOneSeam) { ExpectTreeKeeps(FilesPastTheSeam); }
TEST(Tree, HasNoFileOfMoreThan400Lines) { ExpectTreeKeeps(LongFiles); }
TEST(Tree, NamesNoHost) { ExpectTreeKeeps(Hosts); }

TEST(Tree, DoesNotNameTheFolderItLiesIn) {
  const std::string root = KW_SOURCE;
  if (std::count(root.begin(), root.end(), '/') < 2) GTEST_SKIP() << root << " is too common a name to look for";
  for (const auto& file : Tree()) EXPECT_EQ(file.text.find(root), std::string::npos) << file.path << " names " << root;
}

}  // namespace
}  // namespace kw::architecture
