// Reading and writing a page of A4 at 300 dpi, from memory into memory, beside the bare codec libraries on the same
// bytes. Ours also makes a page of it: it aligns rows, orders colours and checks.

#include <vector>

#include <benchmark/benchmark.h>

#include "bench/BareCodecs.h"
#include "bench/Pages.h"
#include "picture/formats/Formats.h"

namespace kw {
namespace {

constexpr int Quality = 90;

const Bitmap& Fax() {
  static const Bitmap page = FaxPage();
  return page;
}

const Bitmap& Photo() {
  static const Bitmap page = Photograph();
  return page;
}

// What is read: the JPEG is one without restart markers, as most programs write it.
MemoryFile& Written(const PictureFormat& format) {
  static MemoryFile tiff;
  static MemoryFile jpeg;
  if (tiff.Size() == 0) TiffFormat.write(Fax(), tiff, {});
  if (jpeg.Size() == 0) CodeJpegBare(Photo(), {}, jpeg);
  return &format == &TiffFormat ? tiff : jpeg;
}

void ReadOurs(benchmark::State& state, const PictureFormat& format) {
  MemoryReader file(Written(format).Bytes());
  const auto source = format.open(file, {});
  std::string warning;
  for (auto _ : state) benchmark::DoNotOptimize(source->Read(file, 1, warning));
}

void WriteOurs(benchmark::State& state, const PictureFormat& format, const Bitmap& page) {
  for (auto _ : state) {
    MemoryFile file;
    format.write(page, file, {Quality});
    benchmark::DoNotOptimize(file.Bytes().data());
  }
}

void ReadG4Bare(benchmark::State& state) {
  MemoryReader file(Written(TiffFormat).Bytes());
  for (auto _ : state) DecodeTiffBare(file);
}

void WriteG4Bare(benchmark::State& state) {
  const std::size_t rowBytes = Fax().RowBytes();
  std::vector<std::uint8_t> page;
  for (std::int32_t y = 0; y < PageHeight; ++y) page.insert(page.end(), Fax().Row(y).begin(), Fax().Row(y).end());
  for (auto _ : state) {
    MemoryFile file;
    TIFF* codec = OpenTiffBare(file, "wl");
    TIFFSetField(codec, TIFFTAG_IMAGEWIDTH, PageWidth);
    TIFFSetField(codec, TIFFTAG_IMAGELENGTH, PageHeight);
    TIFFSetField(codec, TIFFTAG_BITSPERSAMPLE, 1);
    TIFFSetField(codec, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(codec, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    TIFFSetField(codec, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(codec, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
    TIFFSetField(codec, TIFFTAG_ROWSPERSTRIP, PageHeight);
    TIFFWriteEncodedStrip(codec, 0, page.data(),
                          static_cast<tmsize_t>(rowBytes * static_cast<std::size_t>(PageHeight)));
    TIFFClose(codec);
    benchmark::DoNotOptimize(file.Bytes().data());
  }
}

void ReadJpegBare(benchmark::State& state) {
  const auto bytes = Written(JpegFormat).Bytes();
  for (auto _ : state) DecodeJpegBare(bytes);
}

void WriteJpegBare(benchmark::State& state) {
  for (auto _ : state) {
    MemoryFile file;
    CodeJpegBare(Photo(), {}, file);
    benchmark::DoNotOptimize(file.Bytes().data());
  }
}

const bool added = [] {
  const auto add = [](const char* name, auto run) {
    benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMillisecond)->UseRealTime();
  };
  add("Codec/G4Read", [](benchmark::State& state) { ReadOurs(state, TiffFormat); });
  add("Codec/G4Write", [](benchmark::State& state) { WriteOurs(state, TiffFormat, Fax()); });
  add("Codec/JpegRead", [](benchmark::State& state) { ReadOurs(state, JpegFormat); });
  add("Codec/JpegWrite", [](benchmark::State& state) { WriteOurs(state, JpegFormat, Photo()); });
  add("Library/G4Read", ReadG4Bare);
  add("Library/G4Write", WriteG4Bare);
  add("Library/JpegRead", ReadJpegBare);
  add("Library/JpegWrite", WriteJpegBare);
  return true;
}();

}  // namespace
}  // namespace kw
