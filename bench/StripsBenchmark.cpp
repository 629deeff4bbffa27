// Reading a page of A4 at 300 dpi whose coded pixels are in several strips, or have restart markers, beside the bare
// codec libraries, which decode them on one thread. Those of one strip show what the search for strips costs.

#include <array>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/BareCodecs.h"
#include "bench/Pages.h"
#include "picture/formats/Formats.h"

namespace kw {
namespace {

// A page of colours, or of black and white, written by the library.
void WriteBare(MemoryFile& file, const Bitmap& page, int compression, std::int32_t rowsPerStrip) {
  TIFF* codec = OpenTiffBare(file, "wl");
  const bool fax = page.BitsPerPixel() == 1;
  TIFFSetField(codec, TIFFTAG_IMAGEWIDTH, page.Width());
  TIFFSetField(codec, TIFFTAG_IMAGELENGTH, page.Height());
  TIFFSetField(codec, TIFFTAG_BITSPERSAMPLE, fax ? 1 : 8);
  TIFFSetField(codec, TIFFTAG_SAMPLESPERPIXEL, fax ? 1 : 3);
  TIFFSetField(codec, TIFFTAG_COMPRESSION, compression);
  TIFFSetField(codec, TIFFTAG_PHOTOMETRIC,
               fax                               ? PHOTOMETRIC_MINISWHITE
               : compression == COMPRESSION_JPEG ? PHOTOMETRIC_YCBCR
                                                 : PHOTOMETRIC_RGB);
  if (compression == COMPRESSION_JPEG) TIFFSetField(codec, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  if (compression == COMPRESSION_LZW || compression == COMPRESSION_ADOBE_DEFLATE) {
    TIFFSetField(codec, TIFFTAG_PREDICTOR, 2);
  }
  TIFFSetField(codec, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(codec, TIFFTAG_ROWSPERSTRIP, rowsPerStrip);
  for (std::int32_t y = 0; y < page.Height(); ++y) {
    std::vector<std::uint8_t> row(page.Row(y).begin(), page.Row(y).end());
    TIFFWriteScanline(codec, row.data(), static_cast<std::uint32_t>(y), 0);
  }
  TIFFClose(codec);
}

struct Kind {
  const char* name;
  bool fax;
  int compression;
  std::int32_t rowsPerStrip;
};

constexpr std::int32_t Band = 64;
constexpr std::array<Kind, 9> Kinds{{{"G4Strips", true, COMPRESSION_CCITTFAX4, Band},
                                     {"LzwStrips", false, COMPRESSION_LZW, Band},
                                     {"DeflateStrips", false, COMPRESSION_ADOBE_DEFLATE, Band},
                                     {"JpegStrips", false, COMPRESSION_JPEG, Band},
                                     {"PlainStrips", false, COMPRESSION_NONE, Band},
                                     {"LzwOneStrip", false, COMPRESSION_LZW, PageHeight},
                                     {"DeflateOneStrip", false, COMPRESSION_ADOBE_DEFLATE, PageHeight},
                                     {"JpegOneStrip", false, COMPRESSION_JPEG, PageHeight},
                                     {"PlainOneStrip", false, COMPRESSION_NONE, PageHeight}}};

std::span<const std::uint8_t> Coded(std::size_t kind) {
  static std::array<MemoryFile, Kinds.size()> files;
  const Kind& row = Kinds[kind];
  if (files[kind].Size() == 0) {
    WriteBare(files[kind], row.fax ? FaxPage() : Photograph(), row.compression, row.rowsPerStrip);
  }
  return files[kind].Bytes();
}

std::span<const std::uint8_t> Restarts() {
  static MemoryFile file;
  // A restart marker behind each row of blocks, as cameras and scanners write them.
  if (file.Size() == 0) CodeJpegBare(Photograph(), {false, 1}, file);
  return file.Bytes();
}

void ReadOurs(benchmark::State& state, const PictureFormat& format, std::span<const std::uint8_t> bytes) {
  MemoryReader file(bytes);
  const auto source = format.open(file, {});
  std::string warning;
  for (auto _ : state) benchmark::DoNotOptimize(source->Read(file, 1, warning));
}

void ReadBare(benchmark::State& state, std::span<const std::uint8_t> bytes) {
  MemoryReader file(bytes);
  for (auto _ : state) DecodeTiffBare(file);
}

const bool added = [] {
  const auto add = [](const std::string& name, auto run) {
    benchmark::RegisterBenchmark(name.c_str(), run)->Unit(benchmark::kMillisecond)->UseRealTime();
  };
  for (std::size_t i = 0; i < Kinds.size(); ++i) {
    add(std::string("Codec/") + Kinds[i].name, [i](benchmark::State& state) { ReadOurs(state, TiffFormat, Coded(i)); });
    add(std::string("Library/") + Kinds[i].name, [i](benchmark::State& state) { ReadBare(state, Coded(i)); });
  }
  add("Codec/JpegRestarts", [](benchmark::State& state) { ReadOurs(state, JpegFormat, Restarts()); });
  add("Library/JpegRestarts", [](benchmark::State& state) {
    for (auto _ : state) DecodeJpegBare(Restarts());
  });
  return true;
}();

}  // namespace
}  // namespace kw
