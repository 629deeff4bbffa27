// kwseeds FOLDER: writes what the fuzz targets begin with, a folder for each, with the engine's own writers.

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <type_traits>

#include "control/EncodedBag.h"
#include "fuzz/EffectCase.h"
#include "members/Members.h"
#include "picture/Stream.h"
#include "picture/formats/Formats.h"
#include "tests/support/Documents.h"

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

void WriteText(const std::filesystem::path& path, const std::string& text) {
  Write(path, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

// A document of one page in each format, and one of three pages.
void WriteDocuments(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  for (const PictureFormat* format : Formats()) {
    MemoryFile file;
    format->write(Picture(33, 35, 8), file, {});
    Write(folder / format->name, file.Bytes());
  }
  WriteText(folder / "pages", test::GreyTiff(3));
}

void WriteStamps(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  WriteText(folder / "plain", "[Stamps]\r\n1=One\r\n2= Two, three \r\n3=\"Four\"\r\n");
  WriteText(folder / "others", ";x\n[Other]\n1=a\n[ stamps ]\n 1 = b\n2=\n3=c\n[Stamps]\n1=d\n");
}

void WriteBags(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  EncodedBag bag;
  const auto add = [](EncodedBag& to, const char* key, const auto& value) {
    using Value = std::remove_cvref_t<decltype(value)>;
    if constexpr (std::is_same_v<Value, bool>) to.WriteBoolean(key, !value, value);
    if constexpr (std::is_same_v<Value, std::int16_t>) to.WriteInteger(key, value, value);
    if constexpr (std::is_same_v<Value, std::string>) to.WriteText(key, value, value);
  };
#define KEPT_PROPERTY(name, number, type, defaultValue, readPlace, writePlace, help) \
  add(bag, #name, types::type{defaultValue});
#include "members/Members.def"
  WriteText(folder / "all", bag.Encode());
}

// Each step on an open document, with three numbers for what it asks for.
void WriteSteps(const std::filesystem::path& folder) {
  std::filesystem::create_directories(folder);
  for (unsigned step = 0; step < 32; ++step) {
    std::string script{'\0', '\2'};
    for (const unsigned argument : {0U, 1U, 5U, 40U, 90U, 160U}) {
      script += static_cast<char>(step);
      for (unsigned i = 0; i < 4; ++i) script += static_cast<char>(argument + i);
    }
    WriteText(folder / std::to_string(step), script);
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
  kw::WriteDocuments(folder / "document");
  kw::WriteStamps(folder / "stamps");
  kw::WriteBags(folder / "bag");
  kw::WriteSteps(folder / "steps");
  return 0;
}
