#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/data/hostile/HostileFiles.h"

namespace kw::test {

std::vector<HostileFile> FuzzedFiles(const std::filesystem::path& corpus) {
  std::vector<HostileFile> files;
  for (const char* folder : {"bmp", "document", "fmf", "gif", "jpeg", "tiff"}) {
    for (const auto& entry : std::filesystem::directory_iterator(corpus / folder)) {
      const auto read = [path = entry.path()] {
        std::ifstream stream(path, std::ios::binary);
        return std::vector<std::uint8_t>(std::istreambuf_iterator<char>(stream), {});
      };
      files.push_back({std::string(folder) + "-" + entry.path().filename().string(), read, true});
    }
  }
  std::ranges::sort(files, {}, &HostileFile::name);
  return files;
}

}  // namespace kw::test
