#include "tests/data/hostile/HostileBytes.h"
#include "tests/data/hostile/HostileFiles.h"

namespace kw::test {
namespace {

HostileBytes GifHead(unsigned width, unsigned height) {
  HostileBytes file;
  Add(file, std::string_view("GIF89a"));
  Add(file, width, 2);
  Add(file, height, 2);
  file.insert(file.end(), {0x80, 0, 0, 0, 0, 0, 255, 255, 255});
  return file;
}

void AddFrame(HostileBytes& file, unsigned left, unsigned top, unsigned width, unsigned height, unsigned disposal,
              const HostileBytes& codes) {
  file.insert(file.end(), {0x21, 0xF9, 4, static_cast<std::uint8_t>(disposal << 2U), 0, 0, 0, 0, ','});
  for (const unsigned value : {left, top, width, height}) Add(file, value, 2);
  file.insert(file.end(), {0, 2});
  for (std::size_t at = 0; at < codes.size(); at += 255) {
    const std::size_t part = std::min<std::size_t>(255, codes.size() - at);
    file.push_back(static_cast<std::uint8_t>(part));
    Add(file, std::span(codes).subspan(at, part));
  }
  file.push_back(0);
}

// Codes for four pixels.
HostileBytes FourPixels() {
  const unsigned codes = 4U | 1U << 3U | 6U << 6U | 1U << 9U | 5U << 12U;
  return {static_cast<std::uint8_t>(codes), static_cast<std::uint8_t>(codes >> 8U)};
}

// A clear code, one pixel, and codes that each stand for one pixel more than the last.
HostileBytes GrowingCodes(std::size_t rounds) {
  LowBits bits;
  for (std::size_t round = 0; round < rounds; ++round) {
    bits.Put(4, round == 0 ? 3 : 12);
    bits.Put(1, 3);
    for (std::uint32_t code = 6; code < 4095; ++code) {
      const std::uint32_t known = code + 0;
      bits.Put(code, known < 8      ? 3U
                     : known < 16   ? 4U
                     : known < 32   ? 5U
                     : known < 64   ? 6U
                     : known < 128  ? 7U
                     : known < 256  ? 8U
                     : known < 512  ? 9U
                     : known < 1024 ? 10U
                     : known < 2048 ? 11U
                                    : 12U);
    }
  }
  return bits.bytes;
}

HostileBytes Frames(unsigned canvas, std::size_t count, unsigned disposal) {
  HostileBytes file = GifHead(canvas, canvas);
  for (std::size_t i = 0; i < count; ++i) {
    const auto place = static_cast<unsigned>(i);
    AddFrame(file, place * 7 % (canvas - 1), place * 5 % (canvas - 1), 2, 2, disposal, FourPixels());
  }
  file.push_back(';');
  return file;
}

}  // namespace

std::vector<HostileFile> HostileGifs() {
  return {
      {"gif-more-frames-than-pages", [] { return Frames(2, 32768, 0); }},
      {"gif-frames-on-a-large-canvas", [] { return Frames(4700, 1000, 1); }},
      {"gif-a-few-frames-on-a-large-canvas", [] { return Frames(4700, 8, 1); }, true},
      {"gif-restored-frames-on-a-large-canvas", [] { return Frames(4700, 1000, 3); }},
      {"gif-two-frames-on-the-largest-canvas", [] { return Frames(16000, 2, 2); }},
      {"gif-largest-canvas", [] { return Frames(65535, 1, 0); }},
      {"gif-frame-larger-than-the-canvas",
       [] {
         HostileBytes file = GifHead(2, 2);
         AddFrame(file, 0, 0, 2, 2, 0, FourPixels());
         AddFrame(file, 0, 0, 65535, 65535, 0, FourPixels());
         return file;
       }},
      {"gif-frame-far-away",
       [] {
         HostileBytes file = GifHead(20, 20);
         AddFrame(file, 65535, 65535, 2, 2, 0, FourPixels());
         return file;
       }},
      {"gif-frame-of-no-pixels",
       [] {
         HostileBytes file = GifHead(20, 20);
         AddFrame(file, 0, 0, 0, 0, 0, FourPixels());
         return file;
       }},
      {"gif-growing-codes",
       [] {
         HostileBytes file = GifHead(8000, 8000);
         AddFrame(file, 0, 0, 8000, 8000, 0, GrowingCodes(8));
         return file;
       },
       true},
      {"gif-many-comments",
       [] {
         HostileBytes file = GifHead(2, 2);
         for (int i = 0; i < 500000; ++i) file.insert(file.end(), {0x21, 0xFE, 1, 'x', 0});
         AddFrame(file, 0, 0, 2, 2, 0, FourPixels());
         return file;
       }},
      {"gif-endless-extension",
       [] {
         HostileBytes file = GifHead(2, 2);
         file.insert(file.end(), {0x21, 0xFF});
         file.resize(1000000, 1);
         return file;
       }},
  };
}

}  // namespace kw::test
