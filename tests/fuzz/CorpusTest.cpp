// The corpus of the fuzz targets: made-up files that take different ways through the code.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/Tries.h"

namespace kw {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes BytesOf(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// Runs every file of the folder through a target. A file that breaks a promise is reported by its name;
// the last line before a sanitizer's report is the name of its file.
void RunCorpus(const std::string& folder, const std::function<void(const Bytes&)>& target) {
  std::vector<std::filesystem::path> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(KW_CORPUS) / folder, error)) {
    files.push_back(entry.path());
  }
  ASSERT_GE(files.size(), 20U) << "the corpus is not whole: " << KW_CORPUS << '/' << folder << ' ' << error.message();
  std::ranges::sort(files);
  for (const std::filesystem::path& file : files) {
    std::cout << file.filename().string() << std::endl;
    SCOPED_TRACE(file.filename().string());
    const Bytes bytes = BytesOf(file);
    ASSERT_FALSE(bytes.empty());
    EXPECT_NO_THROW(target(bytes));
  }
}

class FormatCorpus : public testing::TestWithParam<const PictureFormat*> {};

TEST_P(FormatCorpus, IsReadAsPromised) {
  const PictureFormat& format = *GetParam();
  std::string folder(format.name);
  std::ranges::transform(folder, folder.begin(), [](char c) { return static_cast<char>(c - 'A' + 'a'); });
  RunCorpus(folder, [&format](const Bytes& bytes) { TryFormat(format, bytes); });
}

INSTANTIATE_TEST_SUITE_P(AllFormats, FormatCorpus, testing::ValuesIn(Formats().begin(), Formats().end()),
                         [](const auto& row) { return std::string(row.param->name); });

TEST(Corpus, PixelsInLzmaAreRead) {
  EXPECT_EQ(TryFormat(TiffFormat, BytesOf(std::filesystem::path(KW_CORPUS) / "tiff" / "280e443ea06a")), 1);
}

TEST(Corpus, Effects) { RunCorpus("effects", TryEffect); }
TEST(Corpus, Documents) { RunCorpus("document", TryDocument); }
TEST(Corpus, Stamps) { RunCorpus("stamps", TryStamps); }
TEST(Corpus, Bags) { RunCorpus("bag", TryBag); }
TEST(Corpus, Steps) { RunCorpus("steps", TrySteps); }

}  // namespace
}  // namespace kw
