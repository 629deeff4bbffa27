#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <tuple>

#include <jpeglib.h>

#include "picture/formats/Formats.h"
#include "picture/formats/JpegScan.h"
#include "tests/picture/ThreadsTest.h"

namespace kw {
namespace {

class JpegWriting : public ThreadsTest {
protected:
  // Soft colours with some noise.
  static Bitmap Page(std::int32_t width, std::int32_t height, int bits) {
    Bitmap made(width, height, bits);
    made.SetResolution(300, 200);
    std::minstd_rand random(3);
    for (std::int32_t y = 0; y < height; ++y) {
      const auto row = made.MutableRow(y);
      for (std::size_t i = 0; i < row.size(); ++i) {
        row[i] = static_cast<std::uint8_t>(60 + i / 9 % 90 + static_cast<std::size_t>(y) / 5 % 80 + random() % 8);
      }
    }
    return made;
  }

  static Bytes Written(const Bitmap& page, int quality, unsigned threads) {
    SetMostThreads(threads);
    MemoryFile file;
    WriteOptions options;
    options.jpegQuality = quality;
    JpegFormat.write(page, file, options);
    return {file.Bytes().begin(), file.Bytes().end()};
  }

  // The same picture by the codec library alone, with a restart marker every `rows` rows of units.
  static Bytes ByLibrary(const Bitmap& page, int quality, int rows) {
    jpeg_compress_struct codec{};
    jpeg_error_mgr errors{};
    codec.err = jpeg_std_error(&errors);
    jpeg_create_compress(&codec);
    unsigned char* data = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&codec, &data, &size);
    const bool grey = page.BitsPerPixel() == 8;
    codec.image_width = static_cast<JDIMENSION>(page.Width());
    codec.image_height = static_cast<JDIMENSION>(page.Height());
    codec.input_components = grey ? 1 : 3;
    codec.in_color_space = grey ? JCS_GRAYSCALE : JCS_EXT_BGR;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, quality, TRUE);
    if (quality >= 90) codec.comp_info[0].h_samp_factor = codec.comp_info[0].v_samp_factor = 1;
    codec.restart_in_rows = rows;
    codec.density_unit = 1;
    codec.X_density = 300;
    codec.Y_density = 200;
    jpeg_start_compress(&codec, TRUE);
    for (std::int32_t y = 0; y < page.Height(); ++y) {
      auto* row = const_cast<JSAMPLE*>(page.Row(y).data());
      jpeg_write_scanlines(&codec, &row, 1);
    }
    jpeg_finish_compress(&codec);
    jpeg_destroy_compress(&codec);
    Bytes bytes(data, data + size);
    std::free(data);
    return bytes;
  }
};

class JpegQualities : public JpegWriting, public testing::WithParamInterface<std::tuple<int, int>> {};

// Every number of threads writes the bytes of the library, whatever rows are left for the last band.
TEST_P(JpegQualities, ThreadsWriteWhatTheLibraryWrites) {
  const auto [bits, quality] = GetParam();
  const std::int32_t width = bits == 8 ? 4003 : 1335;
  // Of 16 pixels are the units if the colours have half the resolution.
  const int rows = bits == 8 || quality >= 90 ? 2 : 1;
  for (const std::int32_t height : {1152, 1153, 1279}) {
    const Bitmap page = Page(width, height, bits);
    const Bytes library = ByLibrary(page, quality, rows);
    for (const unsigned threads : {1U, 2U, 5U}) {
      EXPECT_TRUE(library == Written(page, quality, threads)) << height << " rows, " << threads << " threads";
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, JpegQualities, testing::Combine(testing::Values(8, 24), testing::Values(75, 90)));

// What threads wrote, threads read.
TEST_F(JpegWriting, LargePictureHasRestartMarkersAndASmallOneHasNone) {
  const Bytes large = Written(Page(1335, 1153, 24), 90, 3);
  const auto scan = JpegScanOf(large);
  ASSERT_TRUE(scan);
  EXPECT_EQ(1153U, scan->height);
  EXPECT_EQ(72U, scan->restarts.size());
  EXPECT_TRUE(IsReadTheSame(large, {2, 4}));

  const Bytes small = Written(Page(300, 200, 24), 90, 3);
  EXPECT_TRUE(small == ByLibrary(Page(300, 200, 24), 90, 0));
}

// The codec has no larger ones.
TEST_F(JpegWriting, PictureOfTooManyRowsIsRefused) {
  const Bitmap page(80, 65501, 8);
  EXPECT_THROW(Written(page, 90, 2), RunTimeError);
}

// A stream that takes some of the bytes only.
class ShortStream : public MemoryFile {
public:
  explicit ShortStream(std::uint64_t size) : most(size) {}
  std::size_t Write(const void* from, std::size_t count) noexcept override {
    const std::uint64_t left = most - std::min(most, Position());
    return MemoryFile::Write(from, static_cast<std::size_t>(std::min<std::uint64_t>(left, count)));
  }

private:
  std::uint64_t most;
};

TEST_F(JpegWriting, FullStreamEndsIt) {
  SetMostThreads(3);
  const Bitmap page = Page(1335, 1153, 24);
  for (const std::uint64_t size : {0U, 1U, 200U, 700U, 100000U}) {
    ShortStream file(size);
    EXPECT_THROW(JpegFormat.write(page, file, {}), RunTimeError) << size;
  }
}

}  // namespace
}  // namespace kw
