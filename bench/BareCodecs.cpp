#include "bench/BareCodecs.h"

#include <cstdio>
#include <cstdlib>

#include <benchmark/benchmark.h>
#include <jpeglib.h>

namespace kw {

TIFF* OpenTiffBare(Stream& stream, const char* mode) {
  return TIFFClientOpen(
      "", mode, &stream,
      [](thandle_t to, void* bytes, tmsize_t count) {
        return static_cast<tmsize_t>(static_cast<Stream*>(to)->Read(bytes, static_cast<std::size_t>(count)));
      },
      [](thandle_t to, void* bytes, tmsize_t count) {
        return static_cast<tmsize_t>(static_cast<Stream*>(to)->Write(bytes, static_cast<std::size_t>(count)));
      },
      [](thandle_t to, toff_t offset, int origin) -> toff_t {
        auto& file = *static_cast<Stream*>(to);
        file.Seek(offset + (origin == SEEK_CUR ? file.Position() : origin == SEEK_END ? file.Size() : 0));
        return file.Position();
      },
      [](thandle_t) { return 0; }, [](thandle_t to) -> toff_t { return static_cast<Stream*>(to)->Size(); }, nullptr,
      nullptr);
}

void DecodeTiffBare(Stream& file) {
  file.Seek(0);
  TIFF* codec = OpenTiffBare(file, "rm");
  std::uint16_t compression = COMPRESSION_NONE;
  TIFFGetFieldDefaulted(codec, TIFFTAG_COMPRESSION, &compression);
  if (compression == COMPRESSION_JPEG) TIFFSetField(codec, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  const tmsize_t size = TIFFStripSize(codec);
  const std::uint32_t strips = TIFFNumberOfStrips(codec);
  auto* page = static_cast<std::uint8_t*>(std::malloc(static_cast<std::size_t>(size) * strips));
  for (std::uint32_t i = 0; i < strips; ++i) {
    benchmark::DoNotOptimize(TIFFReadEncodedStrip(codec, i, page + static_cast<std::size_t>(size) * i, size));
  }
  std::free(page);
  TIFFClose(codec);
}

void DecodeJpegBare(std::span<const std::uint8_t> bytes) {
  jpeg_decompress_struct codec{};
  jpeg_error_mgr errors{};
  codec.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&codec);
  jpeg_mem_src(&codec, bytes.data(), static_cast<unsigned long>(bytes.size()));
  jpeg_read_header(&codec, TRUE);
  codec.out_color_space = JCS_EXT_BGR;
  jpeg_start_decompress(&codec);
  const std::size_t rowBytes = std::size_t{codec.output_width} * 3;
  auto* page = static_cast<JSAMPLE*>(std::malloc(rowBytes * codec.output_height));
  while (codec.output_scanline < codec.output_height) {
    JSAMPROW row = page + codec.output_scanline * rowBytes;
    jpeg_read_scanlines(&codec, &row, 1);
  }
  jpeg_finish_decompress(&codec);
  jpeg_destroy_decompress(&codec);
  benchmark::DoNotOptimize(page[0]);
  std::free(page);
}

void CodeJpegBare(const Bitmap& page, BareJpeg kind, Stream& to) {
  jpeg_compress_struct codec{};
  jpeg_error_mgr errors{};
  codec.err = jpeg_std_error(&errors);
  jpeg_create_compress(&codec);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&codec, &data, &size);
  codec.image_width = static_cast<JDIMENSION>(page.Width());
  codec.image_height = static_cast<JDIMENSION>(page.Height());
  codec.input_components = 3;
  codec.in_color_space = JCS_EXT_BGR;
  jpeg_set_defaults(&codec);
  constexpr int quality = 90;
  jpeg_set_quality(&codec, quality, TRUE);
  if (kind.fineColour) codec.comp_info[0].h_samp_factor = codec.comp_info[0].v_samp_factor = 1;
  codec.restart_in_rows = kind.restartRows;
  jpeg_start_compress(&codec, TRUE);
  for (std::int32_t y = 0; y < page.Height(); ++y) {
    auto* row = const_cast<JSAMPLE*>(page.Row(y).data());
    jpeg_write_scanlines(&codec, &row, 1);
  }
  jpeg_finish_compress(&codec);
  jpeg_destroy_compress(&codec);
  to.WriteAll({data, size});
  std::free(data);
}

}  // namespace kw
