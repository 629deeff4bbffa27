// kwseeds FOLDER: writes what the fuzz targets begin with, a folder for each, with the engine's own writers.

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/EffectCase.h"
#include "picture/Stream.h"
#include "picture/formats/Formats.h"

namespace kw {
namespace {

// Stripes with a slow change across them, so that runs, repeats and literals all occur.
Bitmap Picture(std::int32_t width, std::int32_t height, int bitsPerPixel) {
  Bitmap picture(width, height, bitsPerPixel);
  picture.SetResolution(300, 300);
  for (std::int32_t y = 0; y < height; ++y) {
    const auto row = picture.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = static_cast<std::uint8_t>(y % 4 == 0 ? 0 : y % 4 == 1 ? 255 : i * 7 + static_cast<std::size_t>(y) * 3);
    }
  }
  return picture;
}

void Write(const std::filesystem::path& path, std::span<const std::uint8_t> bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

// The folder of a format's target: its name in small letters.
std::string FolderOf(const PictureFormat& format) {
  std::string name(format.name);
  std::ranges::transform(name, name.begin(), [](char c) { return static_cast<char>(c - 'A' + 'a'); });
  return name;
}

void WriteFormat(const std::filesystem::path& folder, const PictureFormat& format) {
  std::filesystem::create_directories(folder);
  for (const int depth : {1, 4, 8, 24, 32}) {
    for (const std::int32_t side : {1, 9, 33}) {
      MemoryFile file;
      format.write(Picture(side, side + 2, depth), file, {});
      Write(folder / (std::to_string(depth) + "-" + std::to_string(side)), file.Bytes());
    }
  }
}

void WriteEffects(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  for (std::size_t effect = 0; effect < Effects().size(); ++effect) {
    for (std::size_t depth = 0; depth < 5; ++depth) {
      Write(folder / (std::string(Effects()[effect].command) + "-" + std::to_string(depth)),
            WriteEffectCase(effect, depth, 20, 13));
    }
  }
}

}  // namespace
}  // namespace kw

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("usage: kwseeds FOLDER\n", stderr);
    return 2;
  }
  const std::filesystem::path folder = arguments[1];
  for (const kw::PictureFormat* format : kw::Formats()) kw::WriteFormat(folder / kw::FolderOf(*format), *format);
  kw::WriteEffects(folder / "effects");
  return 0;
}
