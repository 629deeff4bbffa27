#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace kw::test {

// A file that claims or repeats more than any sound one: what it asks for has a bound.
struct HostileFile {
  std::string name;
  std::function<std::vector<std::uint8_t>()> make;
  // It asks for a page of many pixels, which it may, or it is one of many: not for every run of the tests.
  bool isSlow = false;
};

// One at least for each bound of each format.
std::vector<HostileFile> HostileFiles();
// The documents of the fuzz targets' corpus, which are many.
std::vector<HostileFile> FuzzedFiles(const std::filesystem::path& corpus);
// Those of one format.
std::vector<HostileFile> HostileTiffs();
std::vector<HostileFile> HostileJpegs();
std::vector<HostileFile> HostileGifs();
std::vector<HostileFile> HostileBitmaps();

// A file of at most so many bytes stands in the tree.
constexpr std::size_t MostBytesInTree = 4096;

}  // namespace kw::test
