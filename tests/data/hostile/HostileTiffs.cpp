#include <algorithm>
#include <array>
#include <string>

#include "tests/data/hostile/HostileBytes.h"
#include "tests/data/hostile/HostileFiles.h"

namespace kw::test {
namespace {

struct TiffEntryBytes {
  std::uint32_t tag;
  std::uint32_t type;
  std::uint32_t count;
  std::uint32_t value;
};
using Entries = std::vector<TiffEntryBytes>;

enum : std::uint32_t { Short = 3, Long = 4, SignedLong = 9, Rational = 5 };
enum : std::uint32_t {
  None = 1,
  G3 = 3,
  G4 = 4,
  Lzw = 5,
  OldJpeg = 6,
  Jpeg = 7,
  Deflate = 8,
  PackBits = 32773,
  Jbig = 34661,
  Lerc = 34887,
  Lzma = 34925,
  Zstandard = 50000,
  WebP = 50001
};

// A head, `data` at 8 and behind it the directories, each linked to the next.
HostileBytes TiffOf(const HostileBytes& data, const std::vector<Entries>& directories) {
  HostileBytes file;
  Add(file, std::string_view("II*\0", 4));
  Add(file, 8 + data.size(), 4);
  Add(file, data);
  for (const Entries& entries : directories) {
    Add(file, entries.size(), 2);
    for (const TiffEntryBytes& entry : entries) {
      Add(file, entry.tag, 2);
      Add(file, entry.type, 2);
      Add(file, entry.count, 4);
      Add(file, entry.value, 4);
    }
    Add(file, &entries == &directories.back() ? 0 : file.size() + 4, 4);
  }
  return file;
}

// A page of one strip at 8.
Entries PageOf(std::uint32_t width, std::uint32_t height, std::uint32_t bits, std::uint32_t compression,
               std::size_t bytes) {
  return {{256, Long, 1, width},
          {257, Long, 1, height},
          {258, Short, 1, bits},
          {259, Short, 1, compression},
          {262, Short, 1, bits == 1U ? 0U : 1U},
          {273, Long, 1, 8},
          {278, Long, 1, height},
          {279, Long, 1, static_cast<std::uint32_t>(bytes)}};
}

HostileBytes OnePage(std::uint32_t width, std::uint32_t height, std::uint32_t bits, std::uint32_t compression,
                     const HostileBytes& data) {
  return TiffOf(data, {PageOf(width, height, bits, compression, data.size())});
}

// `strips` strips of one row that all begin at 8.
HostileBytes StripsOver(std::uint32_t shared, std::uint32_t strips, std::uint32_t compression,
                        std::uint32_t countType) {
  HostileBytes data(shared, 0x55);
  const auto offsets = static_cast<std::uint32_t>(8 + data.size());
  for (std::uint32_t i = 0; i < strips; ++i) Add(data, 8, 4);
  const auto counts = static_cast<std::uint32_t>(8 + data.size());
  for (std::uint32_t i = 0; countType != 0 && i < strips; ++i) Add(data, shared, 4);
  Entries entries{{256, Long, 1, 8},  {257, Long, 1, strips},       {258, Short, 1, 1}, {259, Short, 1, compression},
                  {262, Short, 1, 0}, {273, Long, strips, offsets}, {278, Long, 1, 1}};
  if (countType != 0) entries.push_back({279, countType, strips, counts});
  return TiffOf(data, {entries});
}

// Zeros for ever: a literal and then runs of 258 in fixed codes, without an end.
HostileBytes DeflatedZeros(std::size_t bytes) {
  LowBits bits;
  bits.Put(0x9C78, 16);
  bits.Put(0b011, 3);
  bits.Put(0b00001100, 8);  // the literal 0, whose code 00110000 comes from its highest bit on
  for (std::size_t done = 1; done < bytes; done += 258) {
    bits.Put(0b10100011, 8);  // length 258, 11000101
    bits.Put(0, 5);           // distance 1
  }
  return bits.bytes;
}

// A clear code, zeros, and codes that each stand for one zero more than the last.
HostileBytes LzwZeros(std::size_t rounds) {
  HighBits bits;
  for (std::size_t round = 0; round < rounds; ++round) {
    bits.Put(256, 9);
    bits.Put(0, 9);
    for (std::uint32_t code = 258; code < 4094; ++code) {
      bits.Put(code, code < 511 ? 9U : code < 1023 ? 10U : code < 2047 ? 11U : 12U);
    }
  }
  return bits.bytes;
}

HostileBytes PackedZeros(std::size_t runs) {
  HostileBytes bytes;
  for (std::size_t i = 0; i < runs; ++i) Add(bytes, 0x0081, 2);
  return bytes;
}

HostileBytes DirectoriesOver(std::size_t shared, std::size_t count, const Entries& entries) {
  return TiffOf(HostileBytes(shared), std::vector<Entries>(count, entries));
}

HostileBytes Circle() {
  HostileBytes file = DirectoriesOver(0, 3, {{256, Short, 1, 8}, {257, Short, 1, 8}});
  file[file.size() - 4] = 8;
  return file;
}

// Its directory's offset is 2^63, or its link, or its entry's.
HostileBytes BigTiff(bool farDirectory) {
  HostileBytes file;
  Add(file, std::string_view("II+\0\x08\0\0\0", 8));
  Add(file, farDirectory ? std::uint64_t{1} << 63U : 16, 8);
  Add(file, 3, 8);
  for (const std::uint32_t tag : {256U, 257U}) {
    Add(file, tag, 2);
    Add(file, 16, 2);
    Add(file, 1, 8);
    Add(file, ~std::uint64_t{0}, 8);
  }
  Add(file, 273, 2);
  Add(file, 16, 2);
  Add(file, ~std::uint64_t{0}, 8);
  Add(file, ~std::uint64_t{0} - 8, 8);
  Add(file, 0, 8);
  return file;
}

HostileBytes LzmaDictionary() {
  HostileBytes data{0xFD, '7', 'z', 'X', 'Z', 0, 0, 1, 0x69, 0x22, 0xDE, 0x36};
  // A block of one filter with a dictionary of 4 GiB.
  data.insert(data.end(), {0x02, 0x00, 0x21, 0x01, 40, 0, 0, 0});
  std::uint32_t crc = 0xFFFFFFFF;
  for (std::size_t i = 12; i < 20; ++i) {
    crc ^= data[i];
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
  }
  Add(data, ~crc, 4);
  data.resize(data.size() + 64, 1);
  return OnePage(64, 64, 8, Lzma, data);
}

HostileBytes JbigSize() {
  HostileBytes data{0, 0, 8, 0};
  AddBigEndian(data, 0x7FFFFFF8, 4);
  AddBigEndian(data, 0x7FFFFFF8, 4);
  AddBigEndian(data, 1, 4);
  data.resize(64, 0);
  return OnePage(8, 8, 1, Jbig, data);
}

// A page of several samples, whose depths stand behind the data.
HostileBytes SamplesPage(std::uint32_t samples, std::uint32_t photometric, Entries page, HostileBytes data) {
  if (data.size() % 2 != 0) data.push_back(0);
  page[2] = {258, Short, samples, static_cast<std::uint32_t>(8 + data.size())};
  page[4].value = photometric;
  page.push_back({277, Short, 1, samples});
  std::ranges::sort(page, {}, &TiffEntryBytes::tag);
  for (std::uint32_t sample = 0; sample < samples; ++sample) Add(data, 8, 2);
  return TiffOf(data, {page});
}

HostileBytes ColourPage(std::uint32_t width, std::uint32_t height, std::uint32_t compression, const HostileBytes& data,
                        const Entries& more = {}) {
  Entries page = PageOf(width, height, 8, compression, data.size());
  page.insert(page.end(), more.begin(), more.end());
  return SamplesPage(3, 2, page, data);
}

HostileBytes InkPage(std::uint32_t width, std::uint32_t height, std::uint32_t compression, const HostileBytes& data) {
  return SamplesPage(4, 5, PageOf(width, height, 8, compression, data.size()), data);
}

// A lossless picture of one colour, whose pixels take no bits: each of its five codes has one symbol.
HostileBytes WebPOf(std::uint32_t width, std::uint32_t height) {
  LowBits bits;
  bits.Put(0x2F, 8);
  bits.Put(width - 1, 14);
  bits.Put(height - 1, 14);
  bits.Put(0, 1 + 3);      // without alpha, of the first version
  bits.Put(0, 1 + 1 + 1);  // no transform, no cache of colours, one group of codes
  for (int code = 0; code < 5; ++code) bits.Put(0b0001, 4);
  bits.Put(0, 16);
  if (bits.bytes.size() % 2 != 0) bits.Put(0, 8);
  HostileBytes data;
  Add(data, std::string_view("RIFF"));
  Add(data, 12 + bits.bytes.size(), 4);
  Add(data, std::string_view("WEBPVP8L"));
  Add(data, bits.bytes.size(), 4);
  Add(data, bits.bytes);
  return data;
}

// A frame that wants a window of 2 to the `windowBits` bytes, and blocks that each repeat a zero.
HostileBytes ZstandardZeros(std::uint32_t windowBits, std::size_t blocks) {
  HostileBytes data{0x28, 0xB5, 0x2F, 0xFD, 0, static_cast<std::uint8_t>((windowBits - 10) << 3U)};
  constexpr std::size_t repeated = std::size_t{1} << 17U;
  for (std::size_t block = 0; block < blocks; ++block) {
    Add(data, repeated << 3U | 0b010U | (block + 1 == blocks ? 1U : 0U), 3);
    data.push_back(0);
  }
  return data;
}

// A blob of the second version, all of whose pixels are the same byte.
HostileBytes LercOf(std::uint32_t width, std::uint32_t height) {
  HostileBytes data;
  Add(data, std::string_view("Lerc2 "));
  constexpr std::uint32_t size = 6 + 7 * 4 + 3 * 8 + 4;
  for (const std::uint32_t field : {2U, height, width, width * height, 8U, size, 1U}) Add(data, field, 4);
  for (int bound = 0; bound < 3; ++bound) Add(data, 0, 8);
  Add(data, 0, 4);  // no mask
  return data;
}

Entries With(Entries entries, const TiffEntryBytes& more) {
  entries.push_back(more);
  return entries;
}

// White rows of codes of one bit each, for a page of that many rows and more.
HostileBytes FaxRows(std::uint32_t rows) {
  HostileBytes codes(rows / 8 + 8, 0xFF);
  return codes;
}

// A square page of tiles of that size, all of which are `data`.
HostileBytes TiledPage(std::uint32_t edge, std::uint32_t bits, std::uint32_t compression, const HostileBytes& data,
                       std::uint32_t width, std::uint32_t height) {
  Entries page = PageOf(edge, edge, bits, compression, 0);
  page.resize(5);
  const auto size = static_cast<std::uint32_t>(data.size());
  page.insert(page.end(), {{322, Long, 1, width}, {323, Long, 1, height}, {324, Long, 1, 8}, {325, Long, 1, size}});
  return TiffOf(data, {page});
}

HostileBytes Tiles(std::uint32_t width, std::uint32_t height) {
  return TiledPage(64, 8, None, HostileBytes(64), width, height);
}

}  // namespace

std::vector<HostileFile> HostileTiffs() {
  constexpr std::uint32_t megabyte = 1000000;
  std::vector<HostileFile> files{
      {"tiff-pages-share-a-strip",
       [] { return DirectoriesOver(megabyte, 1000, PageOf(800, megabyte / 100, 1, None, megabyte)); }},
      {"tiff-pages-share-a-value",
       [] {
         return DirectoriesOver(megabyte, 1000, With(PageOf(800, 10, 1, None, 1000), {65000, 1, megabyte, 8}));
       }},
      {"tiff-more-directories-than-pages",
       [] {
         return DirectoriesOver(0, 40000, {{256, Short, 1, 8}});
       }},
      {"tiff-packed-directories",
       [] {
         return DirectoriesOver(0, 1000000, {{256, Short, 1, 8}});
       }},
      {"tiff-pages-without-pixels",
       [] {
         return DirectoriesOver(0, 32767, {{256, Short, 1, 8}});
       },
       true},
      {"tiff-circle", Circle},
      {"tiff-circle-of-one",
       [] {
         HostileBytes file = DirectoriesOver(0, 1, {{256, Short, 1, 8}});
         file[file.size() - 4] = 8;
         return file;
       }},
      {"tiff-many-strips",
       [] {
         return TiffOf({}, {{{256, Long, 1, 8},
                             {257, Long, 1, 0x7FFFFFFF},
                             {259, Short, 1, None},
                             {262, Short, 1, 1},
                             {273, Long, 0x7FFFFFFF, 8},
                             {278, Long, 1, 1},
                             {279, Long, 0x7FFFFFFF, 8}}});
       }},
      {"tiff-largest-size", [] { return OnePage(0xFFFFFFFF, 0xFFFFFFFF, 8, None, HostileBytes(64)); }},
      {"tiff-longest-row", [] { return OnePage(0x7FFFFFFF, 1, 8, None, HostileBytes(64)); }},
      {"tiff-longest-column", [] { return OnePage(1, 0x7FFFFFFF, 8, None, HostileBytes(64)); }},
      {"tiff-many-samples",
       [] {
         return TiffOf(HostileBytes(64), {With(PageOf(8, 8, 8, None, 64), {277, Short, 1, 65535})});
       }},
      {"tiff-many-bits", [] { return OnePage(8, 8, 65535, None, HostileBytes(64)); }},
      {"tiff-largest-tiles", [] { return Tiles(0x7FFFFFF0, 0x7FFFFFF0); }},
      {"tiff-tiles-far-larger-than-the-page", [] { return Tiles(16, 0x4000000); }},
      {"tiff-no-tile-size", [] { return Tiles(0, 0); }},
      {"tiff-strip-behind-the-end",
       [] {
         Entries page = PageOf(8, 8, 8, None, 64);
         page[5].value = 0xFFFFFFF0;
         return TiffOf(HostileBytes(64), {page});
       }},
      {"tiff-turned-page",
       [] {
         return TiffOf(HostileBytes(32, 0xFF), {With(PageOf(1U << 25U, 100, 1, G4, 32), {274, Short, 1, 6})});
       },
       true},
      {"tiff-turned-large-page",
       [] {
         const HostileBytes data = FaxRows(40000);
         return TiffOf(data, {With(PageOf(40000, 40000, 1, G4, data.size()), {274, Short, 1, 6})});
       },
       true},
      {"tiff-one-large-tile", [] { return TiledPage(40000, 1, G4, FaxRows(40000), 40000, 40000); }, true},
      {"tiff-sub-directory-of-itself",
       [] {
         return TiffOf(HostileBytes(64), {With(PageOf(8, 8, 8, None, 64), {330, Long, 1, 72})});
       }},
      {"tiff-exif-of-itself",
       [] {
         return TiffOf(HostileBytes(64), {With(PageOf(8, 8, 8, None, 64), {34665, Long, 1, 72})});
       }},
      {"tiff-old-jpeg-tables-behind-the-end",
       [] {
         return TiffOf(HostileBytes(64), {With(PageOf(8, 8, 8, OldJpeg, 64), {519, Long, 3, 0xFFFFFF00})});
       }},
      {"tiff-jpeg-of-another-size",
       [] {
         return OnePage(8, 8, 8, Jpeg, {0xFF, 0xD8, 0xFF, 0xC0, 0, 11, 8, 0xFF, 0xFF, 0xFF, 0xFF, 1,    1,   0x11,
                                        0,    0xFF, 0xDA, 0,    8, 1,  1, 0,    0,    63,   0,    0xFF, 0xD9});
       }},
      {"tiff-lzma-dictionary", LzmaDictionary},
      {"tiff-jbig-size", JbigSize},
      {"tiff-webp-larger-than-the-page", [] { return ColourPage(8, 8, WebP, WebPOf(16383, 16383)); }},
      {"tiff-webp-page", [] { return ColourPage(11000, 11000, WebP, WebPOf(11000, 11000)); }, true},
      {"tiff-webp-page-too-large", [] { return ColourPage(16383, 16383, WebP, WebPOf(16383, 16383)); }},
      {"tiff-zstandard-window", [] { return OnePage(64, 64, 8, Zstandard, ZstandardZeros(31, 1)); }},
      {"tiff-zstandard-page", [] { return OnePage(30000, 30000, 8, Zstandard, ZstandardZeros(27, 6867)); }, true},
      {"tiff-lerc-larger-than-the-page", [] { return OnePage(8, 8, 8, Lerc, LercOf(30000, 30000)); }},
      {"tiff-lerc-page", [] { return OnePage(20000, 20000, 8, Lerc, LercOf(20000, 20000)); }, true},
      {"tiff-lerc-page-too-large", [] { return OnePage(30000, 30000, 8, Lerc, LercOf(30000, 30000)); }},
      {"tiff-packbits-colours",
       [] { return ColourPage(18000, 18000, PackBits, PackedZeros(std::size_t{18000} * (54000 / 128 + 1))); }, true},
      {"tiff-turned-colours",
       [] {
         return ColourPage(12000, 12000, PackBits, PackedZeros(std::size_t{12000} * (36000 / 128 + 1)),
                           {{274, Short, 1, 6}});
       },
       true},
      {"tiff-inks", [] { return InkPage(11000, 11000, PackBits, PackedZeros(std::size_t{11000} * (44000 / 128 + 1))); },
       true},
      {"tiff-inks-too-large", [] { return InkPage(18000, 18000, PackBits, PackedZeros(1000)); }},
      {"tiff-big-directory", [] { return BigTiff(true); }},
      {"tiff-big-values", [] { return BigTiff(false); }},
      {"tiff-g4-page", [] { return OnePage(30000, 30000, 1, G4, FaxRows(30000)); }, true},
      {"tiff-g4-page-too-large", [] { return OnePage(100000, 100000, 1, G4, HostileBytes(13000, 0xFF)); }},
      {"tiff-g4-random-codes",
       [] {
         HostileBytes data;
         std::uint32_t value = 1;
         for (int i = 0; i < 200000; ++i) {
           value = value * 1664525 + 1013904223;
           data.push_back(static_cast<std::uint8_t>(value >> 24U));
         }
         return OnePage(20000, 20000, 1, G4, data);
       }},
      {"tiff-deflate-page", [] { return OnePage(20000, 10000, 8, Deflate, DeflatedZeros(200000000)); }, true},
      {"tiff-deflate-page-too-large", [] { return OnePage(40000, 40000, 8, Deflate, DeflatedZeros(megabyte)); }},
      {"tiff-lzw-page", [] { return OnePage(20000, 10000, 8, Lzw, LzwZeros(28)); }, true},
      {"tiff-packbits-page", [] { return OnePage(20000, 10000, 8, PackBits, PackedZeros(200000000 / 128 + 1)); }, true},
  };
  for (const auto& [name, compression] :
       {std::pair<std::string, std::uint32_t>{"lzw", Lzw}, {"jbig", Jbig}, {"lzma", Lzma}, {"packbits", PackBits}}) {
    for (const auto& [kind, type] :
         {std::pair<std::string, std::uint32_t>{"", Long}, {"-of-no-size", 0}, {"-of-signed-size", SignedLong}}) {
      files.push_back(
          {std::string("tiff-").append(name).append("-strips").append(kind).append("-share-bytes"),
           [compression = compression, type = type] { return StripsOver(200000, 10000, compression, type); }});
    }
  }
  return files;
}

}  // namespace kw::test
