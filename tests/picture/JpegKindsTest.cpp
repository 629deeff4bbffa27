#include <array>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include "picture/Bytes.h"
#include "picture/formats/Formats.h"
#include "tests/picture/KindsTest.h"

namespace kw {
namespace {

using JpegKinds = KindsTest;

// A JPEG made with the codec library.
Bytes JpegOf(J_COLOR_SPACE space, int components, const Bytes& pixel, bool progressive) {
  jpeg_compress_struct codec{};
  jpeg_error_mgr errors{};
  codec.err = jpeg_std_error(&errors);
  jpeg_create_compress(&codec);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&codec, &data, &size);
  codec.image_width = 16;
  codec.image_height = 16;
  codec.input_components = components;
  codec.in_color_space = space;
  jpeg_set_defaults(&codec);
  jpeg_set_quality(&codec, 100, TRUE);
  codec.density_unit = 2;
  codec.X_density = 100;
  codec.Y_density = 50;
  if (progressive) jpeg_simple_progression(&codec);
  jpeg_start_compress(&codec, TRUE);
  Bytes row;
  for (int x = 0; x < 16; ++x) row.insert(row.end(), pixel.begin(), pixel.end());
  for (int y = 0; y < 16; ++y) {
    JSAMPROW line = row.data();
    jpeg_write_scanlines(&codec, &line, 1);
  }
  jpeg_finish_compress(&codec);
  jpeg_destroy_compress(&codec);
  Bytes bytes(data, data + size);
  std::free(data);
  return bytes;
}

TEST_F(JpegKinds, GreyProgressiveAndColour) {
  for (const bool progressive : {false, true}) {
    Open(JpegOf(JCS_GRAYSCALE, 1, {100}, progressive));
    EXPECT_EQ(8, engine.BitsPerPixel());
    EXPECT_EQ(8, engine.PageValue());
    EXPECT_EQ((Rgb{100, 100, 100}), Pixel(9, 9));
    Open(JpegOf(JCS_RGB, 3, {200, 100, 50}, progressive));
    EXPECT_EQ(24, engine.BitsPerPixel());
    EXPECT_EQ(24, engine.PageValue());
    EXPECT_NEAR(200, Pixel(9, 9).red, 2);
    EXPECT_NEAR(100, Pixel(9, 9).green, 2);
    EXPECT_NEAR(50, Pixel(9, 9).blue, 2);
  }
}

TEST_F(JpegKinds, DotsPerCentimetre) {
  Open(JpegOf(JCS_GRAYSCALE, 1, {100}, false));
  EXPECT_NEAR(254, engine.Current().HorizontalResolution(), 0.01);
  EXPECT_NEAR(127, engine.Current().VerticalResolution(), 0.01);
}

TEST_F(JpegKinds, InksAsAdobeStoresThem) {
  // The library marks four inks as Adobe's; these say how much paper shows.
  Open(JpegOf(JCS_CMYK, 4, {255, 0, 0, 255}, false));
  EXPECT_EQ(32, engine.PageValue());
  EXPECT_EQ(24, engine.BitsPerPixel());
  EXPECT_NEAR(255, Pixel(5, 5).red, 2);
  EXPECT_NEAR(0, Pixel(5, 5).green, 2);
  EXPECT_NEAR(0, Pixel(5, 5).blue, 2);
}

TEST_F(JpegKinds, ProgressiveJpegCutShortIsRefusedOrLacksDetailsWithAWarning) {
  const Bytes whole = JpegOf(JCS_RGB, 3, {200, 100, 50}, true);
  std::size_t recovered = 0;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    if (!engine.Load(Put("cut.jpg", {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)}))) continue;
    ++recovered;
    EXPECT_NE("", engine.Warning()) << length;
  }
  EXPECT_GT(recovered, 0U);
  EXPECT_LT(recovered, whole.size() / 2) << "without a whole scan there is nothing to show";
  Open(whole);
  EXPECT_EQ("", engine.Warning());
}

class ExifOrientation : public KindsTest, public testing::WithParamInterface<int> {};

TEST_P(ExifOrientation, PhotographIsShownUpright) {
  Bitmap picture(32, 16, 8);  // its left half black, its right half white
  for (std::int32_t y = 0; y < 16; ++y) {
    const auto row = picture.MutableRow(y);
    std::fill(row.begin() + 16, row.end(), std::uint8_t{255});
  }
  MemoryStream stream;
  JpegFormat.write(picture, stream, {});
  const auto orientation = static_cast<std::uint8_t>(GetParam());
  const Bytes exif{0xFF, 0xE1, 0,    34,   'E', 'x', 'i', 'f', 0, 0, 'M', 'M',         0, 42, 0, 0, 0, 8,
                   0,    1,    0x01, 0x12, 0,   3,   0,   0,   0, 1, 0,   orientation, 0, 0,  0, 0, 0, 0};
  stream.bytes.insert(stream.bytes.begin() + 2, exif.begin(), exif.end());
  Open(stream.bytes);
  const bool turned = orientation >= 5 && orientation <= 8;
  EXPECT_EQ(turned ? 16 : 32, engine.Width());
  EXPECT_EQ(turned ? 32 : 16, engine.Height());
  // Where the black half is seen: left, or with the turned ones at the top, unless mirrored.
  const bool atEnd = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
  const Rgb first = Pixel(2, 2);
  EXPECT_EQ(atEnd ? 255 : 0, first.red);
  EXPECT_EQ(atEnd ? 0 : 255, Pixel(engine.Width() - 3, engine.Height() - 3).red);
}

INSTANTIATE_TEST_SUITE_P(All, ExifOrientation, testing::Range(0, 10));

TEST_F(JpegKinds, OrientationDoesNotDependOnTheSmallPictureBehindIt) {
  MemoryStream stream;
  JpegFormat.write(Noise(32, 16, 8), stream, {});
  for (const Bytes& link : {Bytes{0, 0, 0, 0}, Bytes{0x7F, 0xFF, 0xFF, 0xFF}, Bytes{0, 0, 0, 8}, Bytes{0}, Bytes{}}) {
    Bytes exif{0xFF, 0xE1, 0,   static_cast<std::uint8_t>(30 + link.size()),
               'E',  'x',  'i', 'f',
               0,    0,    'M', 'M',
               0,    42,   0,   0,
               0,    8,    0,   1,
               0x01, 0x12, 0,   3,
               0,    0,    0,   1,
               0,    6,    0,   0};
    exif.insert(exif.end(), link.begin(), link.end());
    Bytes bytes = stream.bytes;
    bytes.insert(bytes.begin() + 2, exif.begin(), exif.end());
    Open(bytes);
    EXPECT_EQ(16, engine.Width()) << "a link of " << link.size() << " bytes";
  }
}

TEST_F(JpegKinds, PictureWithDamagedExifIsShownAsItIs) {
  MemoryStream stream;
  JpegFormat.write(Noise(16, 16, 24), stream, {});
  const Bytes whole = stream.bytes;
  PictureDocument plain;
  ASSERT_TRUE(plain.Load(Put("plain.jpg", whole)));
  for (const Bytes& exif :
       {Bytes{0xFF, 0xE1, 0, 8, 'E', 'x', 'i', 'f', 0, 0},
        Bytes{0xFF, 0xE1, 0, 16, 'E', 'x', 'i', 'f', 0, 0, 'I', 'I', 42, 0, 0xFF, 0xFF, 0xFF, 0x7F}}) {
    Bytes bytes = whole;
    bytes.insert(bytes.begin() + 2, exif.begin(), exif.end());
    Open(bytes);
    EXPECT_TRUE(SamePicture(plain.Current(), engine.Current()));
  }
}

// The obsolete way to hold a JPEG in a TIFF: tags that point to a whole JPEG stream.
Bytes OldJpegTiff(const Bytes& jpeg) {
  struct Entry {
    unsigned tag;
    unsigned type;
    std::uint32_t count;
    std::uint32_t value;
  };
  constexpr std::uint32_t entryTotal = 12;
  constexpr std::uint32_t bitsAt = 8 + 2 + entryTotal * 12 + 4;
  constexpr std::uint32_t jpegAt = bitsAt + 6;
  const auto length = static_cast<std::uint32_t>(jpeg.size());
  const std::array<Entry, entryTotal> entries{{{256, 3, 1, 16},
                                               {257, 3, 1, 16},
                                               {258, 3, 3, bitsAt},
                                               {259, 3, 1, 6},
                                               {262, 3, 1, 6},
                                               {273, 4, 1, jpegAt},
                                               {277, 3, 1, 3},
                                               {278, 3, 1, 16},
                                               {279, 4, 1, length},
                                               {513, 4, 1, jpegAt},
                                               {514, 4, 1, length},
                                               {530, 3, 2, 0x00020002}}};
  Bytes file{'I', 'I', 42, 0, 8, 0, 0, 0};
  AppendNumber(file, entryTotal, 2);
  for (const Entry& entry : entries) {
    AppendNumber(file, entry.tag, 2);
    AppendNumber(file, entry.type, 2);
    AppendNumber(file, entry.count, 4);
    AppendNumber(file, entry.value, 4);
  }
  AppendNumber(file, 0, 4);
  for (int i = 0; i < 3; ++i) AppendNumber(file, 8, 2);
  file.insert(file.end(), jpeg.begin(), jpeg.end());
  return file;
}

TEST_F(JpegKinds, OldJpegInTiffIsReadAndCodedAnewWhenSaved) {
  Open(OldJpegTiff(JpegOf(JCS_RGB, 3, {200, 100, 50}, false)));
  EXPECT_EQ(24, engine.BitsPerPixel());
  EXPECT_NEAR(200, Pixel(9, 9).red, 3);
  EXPECT_NEAR(100, Pixel(9, 9).green, 3);
  EXPECT_NEAR(50, Pixel(9, 9).blue, 3);
  engine.Save(At("out.tif"));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At("out.tif"))) << again.LastLoadError();
  EXPECT_TRUE(SamePicture(engine.Current(), again.Current()));
}

// The same with its last scan repeated.
Bytes WithScans(const Bytes& bytes, int count) {
  const Bytes mark{0xFF, 0xDA};
  int scans = 0;
  for (std::size_t at = 0; at + 1 < bytes.size(); ++at) scans += bytes[at] == 0xFF && bytes[at + 1] == 0xDA ? 1 : 0;
  const auto last = std::find_end(bytes.begin(), bytes.end(), mark.begin(), mark.end());
  const Bytes scan(last, bytes.end() - 2);
  Bytes more(bytes.begin(), bytes.end() - 2);
  for (; scans < count; ++scans) more.insert(more.end(), scan.begin(), scan.end());
  more.insert(more.end(), {0xFF, 0xD9});
  return more;
}

TEST_F(JpegKinds, AtMost500Scans) {
  for (const int components : {1, 3}) {
    const Bytes few = JpegOf(components == 1 ? JCS_GRAYSCALE : JCS_RGB, components,
                             Bytes(static_cast<std::size_t>(components), 100), true);
    Open(WithScans(few, 500));
    EXPECT_FALSE(engine.Load(Put("scans.jpg", WithScans(few, 501))));
    EXPECT_EQ("The JPEG data is damaged: more than 500 scans.", engine.LastLoadError());
  }
}

TEST_F(JpegKinds, CoefficientsOfAllScansCountAsMemoryOfThePage) {
  const Bytes plain = JpegOf(JCS_RGB, 3, {200, 100, 50}, false);
  const Bytes progressive = JpegOf(JCS_RGB, 3, {200, 100, 50}, true);
  const std::uint64_t page = PixelMemory(16, 16, 24);
  // Four blocks of brightness, one of each colour, 64 numbers of 16 bits.
  const std::uint64_t coefficients = std::uint64_t{6} * 64 * 2;
  engine.GetOptions().reading.pageMemory = page;
  Open(plain);
  engine.GetOptions().reading.pageMemory = page + coefficients;
  Open(progressive);
  --engine.GetOptions().reading.pageMemory;
  EXPECT_FALSE(engine.Load(Put("progressive.jpg", progressive)));
}

}  // namespace
}  // namespace kw
