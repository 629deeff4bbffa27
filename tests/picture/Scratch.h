#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "components/base/Bitmap.h"
#include "components/base/FilePath.h"
#include "components/base/Files.h"
#include "components/base/RunTimeError.h"
#include "picture/Stream.h"
#include "tests/support/TemporaryFolder.h"

namespace kw {

using Bytes = std::vector<std::uint8_t>;

// A folder of its own for each test, gone at its end.
class ScratchTest : public testing::Test {
protected:
  // The path of a file in the folder.
  std::string At(const std::string& name) const { return FromFilesystemPath(folder / ToFilesystemPath(name)); }

  std::string Put(const std::string& name, const Bytes& bytes) const {
    std::string path = At(name);
    std::ofstream(ToFilesystemPath(path), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return path;
  }

  // A folder in it whose path is longer than the system of Windows takes it without a prefix.
  std::string LongFolder() const {
    std::string path = FromFilesystemPath(folder);
    for (char name = 'a'; name < 'f'; ++name) path += "/" + std::string(100, name);
    MakeFolders(path);
    return path;
  }

  // Names of the files in the folder.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  const test::TemporaryFolder temporary;
  const std::filesystem::path& folder = temporary.Native();
};

inline Bytes BytesOf(const std::string& path) {
  std::ifstream file(ToFilesystemPath(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// Pixels without a pattern that a wrong row or column would repeat; palettes are of mixed colours, alpha is of any
// value.
inline Bitmap Noise(std::int32_t width, std::int32_t height, int bitsPerPixel, bool colouredPalette = true) {
  std::mt19937 random(static_cast<unsigned>(width * 7919 + height * 31 + bitsPerPixel));
  Bitmap picture(width, height, bitsPerPixel);
  if (bitsPerPixel <= 8 && colouredPalette) {
    std::vector<Rgb> palette(std::size_t{1} << bitsPerPixel);
    for (Rgb& entry : palette) {
      const auto bits = static_cast<unsigned>(random());
      entry = {static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8U),
               static_cast<std::uint8_t>(bits >> 16U)};
    }
    picture.SetPalette(palette);
  }
  for (std::int32_t y = 0; y < height; ++y) {
    for (std::uint8_t& byte : picture.MutableRow(y)) byte = static_cast<std::uint8_t>(random());
  }
  return picture;
}

// Text-like black marks on white, which fax codes are made for.
inline Bitmap FaxPage(std::int32_t width, std::int32_t height, unsigned seed = 1) {
  std::mt19937 random(seed);
  Bitmap picture(width, height, 1);
  picture.SetPalette({{255, 255, 255}, {0, 0, 0}});
  picture.SetResolution(300, 300);
  for (std::int32_t top = 8; top + 12 < height; top += 24) {
    for (std::size_t x = 2; x + 2 < picture.RowBytes(); x += 1 + random() % 3) {
      const auto mark = static_cast<std::uint8_t>(random());
      for (std::int32_t y = top; y < top + 12; ++y) picture.MutableRow(y)[x] = mark;
    }
  }
  return picture;
}

// The run-time error number that an action ends with; 0 without one.
inline std::int32_t ErrorOf(const std::function<void()>& action) {
  try {
    action();
    return 0;
  } catch (const RunTimeError& error) {
    return error.Number();
  }
}

constexpr std::int32_t NumberOf(ErrorNumber number) { return static_cast<std::int32_t>(number); }

// A stream in memory that takes `room` bytes in all and then fails.
class MemoryStream : public Stream {
public:
  explicit MemoryStream(std::size_t bytesOfRoom = SIZE_MAX) : room(bytesOfRoom) {}
  explicit MemoryStream(Bytes contents) : bytes(std::move(contents)) {}

  std::size_t Read(void* to, std::size_t count) noexcept override {
    const std::size_t left = at < bytes.size() ? bytes.size() - at : 0;
    const std::size_t part = std::min(count, left);
    std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(std::min(at, bytes.size())), part,
                static_cast<std::uint8_t*>(to));
    at += part;
    return part;
  }
  std::size_t Write(const void* from, std::size_t count) noexcept override {
    const std::size_t part = std::min(count, at < room ? room - at : 0);
    failed = failed || part != count;
    if (part == 0) return 0;
    if (at + part > bytes.size()) bytes.resize(at + part);
    std::copy_n(static_cast<const std::uint8_t*>(from), part, bytes.begin() + static_cast<std::ptrdiff_t>(at));
    at += part;
    return part;
  }
  bool Seek(std::uint64_t position) noexcept override {
    at = static_cast<std::size_t>(position);
    return true;
  }
  std::uint64_t Position() const noexcept override { return at; }
  std::uint64_t Size() noexcept override { return bytes.size(); }

  Bytes bytes;
  bool failed = false;

private:
  std::size_t room = SIZE_MAX;
  std::size_t at = 0;
};

}  // namespace kw
