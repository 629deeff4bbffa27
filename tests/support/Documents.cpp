#include "tests/support/Documents.h"

#include "picture/PictureDocument.h"

namespace kw::test {

void SavePicture(const Bitmap& picture, const std::string& path) {
  PictureDocument engine;
  engine.Replace(picture);
  engine.Save(path);
}

namespace {

void Put(std::string& bytes, std::uint32_t value, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>((value >> (8 * i)) & 0xFFU);
}

void PutEntry(std::string& bytes, std::uint32_t tag, std::uint32_t value) {
  constexpr std::uint32_t longType = 4;
  Put(bytes, tag, 2);
  Put(bytes, longType, 2);
  Put(bytes, 1, 4);
  Put(bytes, value, 4);
}

}  // namespace

std::string GreyTiff(int pages) {
  constexpr std::uint32_t entries = 8;
  constexpr std::uint32_t directoryBytes = 2 + entries * 12 + 4;
  std::string bytes("II*\0", 4);
  Put(bytes, 8, 4);
  for (int page = 1; page <= pages; ++page) {
    const auto width = static_cast<std::uint32_t>(10 * page);
    const std::uint32_t height = 20;
    const auto pixels = static_cast<std::uint32_t>(bytes.size()) + directoryBytes;
    Put(bytes, entries, 2);
    PutEntry(bytes, 256, width);
    PutEntry(bytes, 257, height);
    PutEntry(bytes, 258, 8);  // bits per sample
    PutEntry(bytes, 259, 1);  // no compression
    PutEntry(bytes, 262, 1);  // 0 is black
    PutEntry(bytes, 273, pixels);
    PutEntry(bytes, 278, height);  // rows per strip
    PutEntry(bytes, 279, width * height);
    Put(bytes, page == pages ? 0 : pixels + width * height, 4);
    bytes.append(static_cast<std::size_t>(width) * height, static_cast<char>(page));
  }
  return bytes;
}

std::string TiffWithoutFirstPage() {
  constexpr std::size_t compression = 8 + 2 + 3 * 12 + 8;  // the value of the fourth entry of the first directory
  std::string bytes = GreyTiff(2);
  bytes[compression] = 7;
  return bytes;
}

}  // namespace kw::test
