#include "tests/data/hostile/HostileBytes.h"
#include "tests/data/hostile/HostileFiles.h"

namespace kw::test {
namespace {

HostileBytes BmpHead(std::uint32_t width, std::uint32_t height, std::uint32_t bits, std::uint32_t compression,
                     std::uint32_t offset = 0) {
  HostileBytes file{'B', 'M'};
  Add(file, 0xFFFFFFFF, 4);
  Add(file, 0, 4);
  Add(file, offset, 4);
  Add(file, 40, 4);
  Add(file, width, 4);
  Add(file, height, 4);
  Add(file, 1, 2);
  Add(file, bits, 2);
  Add(file, compression, 4);
  for (const std::uint32_t value : {0U, 0U, 0U, 2U, 0U}) Add(file, value, 4);
  return file;
}

HostileBytes With(HostileBytes head, std::size_t bytes, std::uint8_t value = 0) {
  head.resize(head.size() + bytes, value);
  return head;
}

// Each ends a row, or leaves as many out as it can.
HostileBytes Codes(HostileBytes head, std::size_t count, std::initializer_list<std::uint8_t> code) {
  head.resize(head.size() + 8, 0xFF);
  for (std::size_t i = 0; i < count; ++i) head.insert(head.end(), code);
  return head;
}

HostileBytes FileOf(std::string_view head, const HostileBytes& rest) {
  HostileBytes file;
  Add(file, head);
  Add(file, rest);
  return file;
}

}  // namespace

std::vector<HostileFile> HostileBitmaps() {
  return {
      {"bmp-largest-size", [] { return With(BmpHead(0x7FFFFFFF, 0x7FFFFFFF, 24, 0), 64); }},
      {"bmp-smallest-height", [] { return With(BmpHead(64, 0x80000000, 24, 0), 64); }},
      {"bmp-pixels-behind-the-end", [] { return With(BmpHead(64, 64, 24, 0, 0xFFFFFFFF), 64); }},
      {"bmp-pixels-in-the-head", [] { return With(BmpHead(64, 64, 24, 0, 2), std::size_t{64} * 64 * 3); }},
      {"bmp-palette-behind-the-end", [] { return With(BmpHead(64, 64, 8, 0, 0x7FFFFFFF), 64); }},
      {"bmp-a-row-of-a-large-page", [] { return With(BmpHead(16000, 16000, 8, 0), 40000); }, true},
      {"bmp-runs-of-a-large-page",
       [] {
         return Codes(BmpHead(16000, 16000, 8, 1), std::size_t{16000} * 63, {255, 1});
       },
       true},
      {"bmp-ends-of-rows",
       [] {
         return Codes(BmpHead(16000, 16000, 8, 1), 1000000, {0, 0});
       },
       true},
      {"bmp-moves",
       [] {
         return Codes(BmpHead(16000, 16000, 8, 1), 1000000, {0, 2, 255, 0});
       },
       true},
      {"bmp-moves-of-4-bits",
       [] {
         return Codes(BmpHead(16000, 16000, 4, 2), 1000000, {0, 2, 255, 255});
       },
       true},
      {"bmp-literals-behind-the-row",
       [] {
         return Codes(BmpHead(8, 8, 8, 1), 1000, {0, 255, 1, 1});
       }},
      {"bmp-end-of-picture-at-once",
       [] {
         return Codes(BmpHead(16000, 16000, 8, 1), 1, {0, 1});
       },
       true},
      {"fmf-of-no-version",
       [] {
         return FileOf(std::string_view("II*\0\x10\0\0\0FMF-\r\n\x1A\n\1\0\0\1\3\0\1\0\0\0\x08\0\0\0\0\0\0\0", 34), {});
       }},
      {"fmf-of-a-later-version",
       [] {
         return FileOf(
             std::string_view("II*\0\x10\0\0\0FMF-\r\n\x1A\n\1\0\x4C\xFE\3\0\1\0\0\0\xFF\xFF\0\0\0\0\0\0", 34), {});
       }},
      {"fmf-in-a-circle",
       [] {
         return FileOf(std::string_view("II*\0\x10\0\0\0FMF-\r\n\x1A\n\1\0\x4C\xFE\3\0\2\0\0\0\1\0\0\0\x10\0\0\0", 34),
                       {});
       }},
      {"fmf-directory-behind-the-end",
       [] {
         return FileOf(std::string_view("II*\0\xFF\xFF\xFF\xFF"
                                        "FMF-\r\n\x1A\n",
                                        16),
                       {});
       }},
      {"text", [] { return FileOf("This is no picture at all.", {}); }},
      {"empty", [] { return HostileBytes(); }},
  };
}

std::vector<HostileFile> HostileFiles() {
  std::vector<HostileFile> all;
  for (auto* part : {HostileTiffs, HostileJpegs, HostileGifs, HostileBitmaps}) {
    for (HostileFile& file : part()) all.push_back(std::move(file));
  }
  return all;
}

}  // namespace kw::test
