#include "tests/data/hostile/HostileBytes.h"
#include "tests/data/hostile/HostileFiles.h"

namespace kw::test {
namespace {

enum : std::uint32_t { Baseline = 0xFFC0, Progressive = 0xFFC2 };

// A grey picture up to its first scan; all codes of 2 bits stand for nothing more.
HostileBytes JpegHead(std::uint32_t frame, std::uint32_t width, std::uint32_t height, unsigned components = 1) {
  HostileBytes file{0xFF, 0xD8, 0xFF, 0xDB, 0, 67, 0};
  file.resize(file.size() + 64, 1);
  AddBigEndian(file, frame, 2);
  AddBigEndian(file, 8 + 3 * components, 2);
  AddBigEndian(file, 8, 1);
  AddBigEndian(file, height, 2);
  AddBigEndian(file, width, 2);
  AddBigEndian(file, components, 1);
  for (unsigned i = 1; i <= components; ++i) file.insert(file.end(), {static_cast<std::uint8_t>(i), 0x11, 0});
  for (const std::uint8_t table : {std::uint8_t{0x00}, std::uint8_t{0x10}}) {
    file.insert(file.end(), {0xFF, 0xC4, 0, 20, table, 1});
    file.resize(file.size() + 15, 0);
    file.push_back(0);
  }
  return file;
}

void AddScan(HostileBytes& file, std::uint8_t first, std::uint8_t last, std::uint8_t bits, std::size_t coded) {
  file.insert(file.end(), {0xFF, 0xDA, 0, 8, 1, 1, 0, first, last, bits});
  file.resize(file.size() + coded, 0);
}

HostileBytes ManyScans(std::uint32_t side, std::size_t scans) {
  HostileBytes file = JpegHead(Progressive, side, side);
  AddScan(file, 0, 0, 0, 8);
  for (std::size_t i = 0; i < scans; ++i) AddScan(file, 1, 63, 0, 4);
  AddBigEndian(file, 0xFFD9, 2);
  return file;
}

HostileBytes OneScan(std::uint32_t frame, std::uint32_t width, std::uint32_t height, std::size_t coded) {
  HostileBytes file = JpegHead(frame, width, height);
  AddScan(file, 0, frame == Progressive ? std::uint8_t{0} : std::uint8_t{63}, 0, coded);
  AddBigEndian(file, 0xFFD9, 2);
  return file;
}

// Behind the start of the picture.
HostileBytes WithSegments(std::uint32_t marker, std::size_t count, const HostileBytes& content) {
  HostileBytes file{0xFF, 0xD8};
  for (std::size_t i = 0; i < count; ++i) {
    AddBigEndian(file, marker, 2);
    AddBigEndian(file, content.size() + 2, 2);
    Add(file, content);
  }
  const HostileBytes picture = OneScan(Baseline, 64, 64, 64);
  file.insert(file.end(), picture.begin() + 2, picture.end());
  return file;
}

HostileBytes ExifCircle() {
  HostileBytes content;
  Add(content, std::string_view("Exif\0\0II*\0\x08\0\0\0\x01\0\x12\1\x03\0\x01\0\0\0\6\0\0\0\x08\0\0\0", 32));
  return content;
}

}  // namespace

std::vector<HostileFile> HostileJpegs() {
  return {
      {"jpeg-many-scans", [] { return ManyScans(8000, 5000); }, true},
      {"jpeg-many-scans-of-a-small-picture", [] { return ManyScans(64, 50000); }},
      {"jpeg-largest-size", [] { return OneScan(Baseline, 65500, 65500, 64); }},
      {"jpeg-largest-progressive-size", [] { return OneScan(Progressive, 65500, 65500, 64); }},
      {"jpeg-progressive-page", [] { return OneScan(Progressive, 16000, 16000, 64); }, true},
      {"jpeg-of-colours-and-no-pixels",
       [] {
         HostileBytes file = JpegHead(Baseline, 20000, 16000, 3);
         AddScan(file, 0, 63, 0, 64);
         return file;
       }},
      {"jpeg-baseline-page", [] { return OneScan(Baseline, 16000, 16000, 2000 * 2000 / 4); }, true},
      {"jpeg-no-size", [] { return OneScan(Baseline, 0, 0, 64); }},
      {"jpeg-many-components",
       [] {
         HostileBytes file = JpegHead(Baseline, 64, 64, 255);
         AddScan(file, 0, 63, 0, 64);
         return file;
       }},
      {"jpeg-many-comments", [] { return WithSegments(0xFFFE, 100, HostileBytes(65000)); }},
      {"jpeg-many-exif-data", [] { return WithSegments(0xFFE1, 200, HostileBytes(65000)); }},
      {"jpeg-exif-in-a-circle", [] { return WithSegments(0xFFE1, 20, ExifCircle()); }},
      {"jpeg-many-tables",
       [] {
         HostileBytes table{0};
         table.resize(65, 1);
         return WithSegments(0xFFDB, 50000, table);
       }},
      {"jpeg-restarts-only",
       [] {
         HostileBytes file = JpegHead(Baseline, 8000, 8000);
         file.insert(file.end(), {0xFF, 0xDD, 0, 4, 0, 1});
         AddScan(file, 0, 63, 0, 0);
         for (int i = 0; i < 500000; ++i) AddBigEndian(file, 0xFFD0U + static_cast<unsigned>(i % 8), 2);
         return file;
       }},
      {"jpeg-lines-told-later",
       [] {
         HostileBytes file = OneScan(Baseline, 64, 0, 64);
         file.insert(file.end() - 2, {0xFF, 0xDC, 0, 4, 0xFF, 0xFF});
         return file;
       }},
  };
}

}  // namespace kw::test
