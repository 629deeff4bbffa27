// kwhostile FOLDER [PART]: writes the hostile files whose names contain PART into the folder; without PART, the small
// ones that stand in the tree.

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/data/hostile/HostileFiles.h"

int main(int count, char** arguments) {
  if (count < 2 || count > 3) {
    std::fputs("usage: kwhostile FOLDER [PART]\n", stderr);
    return 2;
  }
  for (const auto& file : kw::test::HostileFiles()) {
    if (count == 3 && file.name.find(arguments[2]) == std::string::npos) continue;
    const auto bytes = file.make();
    if (count == 2 && bytes.size() > kw::test::MostBytesInTree) continue;
    std::ofstream stream(std::filesystem::path(arguments[1]) / file.name, std::ios::binary);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) {
      std::fprintf(stderr, "kwhostile: %s cannot be written: is the disk full?\n", file.name.c_str());
      return 1;
    }
  }
  return 0;
}
