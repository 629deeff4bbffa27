#include <array>
#include <cstdio>
#include <string>

#include <gif_lib.h>
#include <jpeglib.h>

#include "Scratch.h"
#include "picture/Bytes.h"
#include "picture/KWPicEd.h"
#include "picture/formats/Formats.h"

namespace kw {
namespace {

class Kinds : public ScratchTest {
protected:
  void Open(const Bytes& bytes) { ASSERT_TRUE(engine.Load(Put("picture", bytes))) << engine.LastLoadError(); }
  Rgb Pixel(std::int32_t x, std::int32_t y) { return engine.Current().PixelAt(x, y); }
  KWPicEd engine;
};

// A BMP file put together field by field: any header, palette and pixels.
struct BmpMaker {
  std::uint32_t headerSize = 40;
  std::int32_t width = 2;
  std::int32_t height = 2;
  unsigned bits = 8;
  std::uint32_t compression = 0;
  std::vector<std::uint32_t> masks;
  std::vector<Rgb> palette;
  Bytes pixels;

  Bytes Make() const {
    Bytes info;
    AppendNumber(info, headerSize, 4);
    const std::size_t field = headerSize == 12 ? 2 : 4;
    AppendNumber(info, static_cast<std::uint32_t>(width), field);
    AppendNumber(info, static_cast<std::uint32_t>(height), field);
    AppendNumber(info, 1, 2);
    AppendNumber(info, bits, 2);
    if (headerSize >= 40) {
      AppendNumber(info, compression, 4);
      AppendNumber(info, 0, 4);
      AppendNumber(info, 3780, 4);
      AppendNumber(info, 3780, 4);
      AppendNumber(info, palette.size(), 4);
      AppendNumber(info, 0, 4);
    }
    for (const std::uint32_t mask : masks) AppendNumber(info, mask, 4);
    if (info.size() < headerSize) info.resize(headerSize);
    for (const Rgb& entry : palette) {
      info.insert(info.end(), {entry.blue, entry.green, entry.red});
      if (headerSize != 12) info.push_back(0);
    }
    Bytes file{'B', 'M'};
    AppendNumber(file, 14 + info.size() + pixels.size(), 4);
    AppendNumber(file, 0, 4);
    AppendNumber(file, 14 + info.size(), 4);
    file.insert(file.end(), info.begin(), info.end());
    file.insert(file.end(), pixels.begin(), pixels.end());
    return file;
  }
};

const std::vector<Rgb> Colours{{1, 2, 3}, {40, 50, 60}, {70, 80, 90}, {250, 240, 230}};

class BmpHeaders : public Kinds, public testing::WithParamInterface<std::uint32_t> {};

TEST_P(BmpHeaders, EveryHeaderIsRead) {
  BmpMaker bmp;
  bmp.headerSize = GetParam();
  bmp.palette = Colours;
  if (bmp.headerSize < 40) bmp.palette.resize(256);
  bmp.pixels = {2, 3, 0, 0, 0, 1, 0, 0};
  Open(bmp.Make());
  EXPECT_EQ(8, engine.PageValue());
  EXPECT_EQ(Colours[0], Pixel(0, 0));
  EXPECT_EQ(Colours[1], Pixel(1, 0));
  EXPECT_EQ(Colours[2], Pixel(0, 1));
  EXPECT_EQ(Colours[3], Pixel(1, 1));
}

INSTANTIATE_TEST_SUITE_P(Sizes, BmpHeaders, testing::Values(12U, 16U, 40U, 52U, 56U, 64U, 108U, 124U));

TEST_F(Kinds, BmpRowsFromTheTop) {
  BmpMaker bmp;
  bmp.height = -2;
  bmp.palette = Colours;
  bmp.pixels = {2, 3, 0, 0, 0, 1, 0, 0};
  Open(bmp.Make());
  EXPECT_EQ(Colours[2], Pixel(0, 0));
  EXPECT_EQ(Colours[1], Pixel(1, 1));
  EXPECT_NEAR(96, engine.Current().HorizontalResolution(), 0.1);
}

TEST_F(Kinds, BmpOfTwoBits) {
  BmpMaker bmp;
  bmp.width = 5;
  bmp.height = 1;
  bmp.bits = 2;
  bmp.palette = Colours;
  bmp.pixels = {0x1B, 0x80, 0, 0};
  Open(bmp.Make());
  EXPECT_EQ(4, engine.BitsPerPixel());
  EXPECT_EQ(2, engine.PageValue());
  for (std::int32_t x = 0; x < 4; ++x) EXPECT_EQ(Colours[static_cast<std::size_t>(x)], Pixel(x, 0));
  EXPECT_EQ(Colours[2], Pixel(4, 0));
}

struct Masked {
  const char* name;
  unsigned bits;
  std::uint32_t compression;
  std::vector<std::uint32_t> masks;
  std::uint32_t headerSize;
  std::uint32_t pixel;
  int depth;
  Rgb colour;
  std::uint8_t alpha;
};

std::ostream& operator<<(std::ostream& stream, const Masked& masked) { return stream << masked.name; }

class BmpMasks : public Kinds, public testing::WithParamInterface<Masked> {};

TEST_P(BmpMasks, ChannelsAreFoundAndWidened) {
  const Masked& masked = GetParam();
  BmpMaker bmp;
  bmp.width = 1;
  bmp.height = 1;
  bmp.bits = masked.bits;
  bmp.compression = masked.compression;
  bmp.masks = masked.masks;
  bmp.headerSize = masked.headerSize;
  AppendNumber(bmp.pixels, masked.pixel, 4);
  Open(bmp.Make());
  EXPECT_EQ(static_cast<int>(masked.bits), engine.PageValue());
  EXPECT_EQ(masked.depth, engine.BitsPerPixel());
  EXPECT_EQ(masked.colour, Pixel(0, 0));
  if (masked.depth == 32) {
    EXPECT_EQ(masked.alpha, engine.Current().Row(0)[3]);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, BmpMasks,
    testing::Values(
        Masked{"16 bits, 5-5-5", 16, 0, {}, 40, 0x7C1F, 24, {255, 0, 255}, 0},
        Masked{"16 bits, 5-6-5", 16, 3, {0xF800, 0x07E0, 0x001F}, 40, 0x07E0, 24, {0, 255, 0}, 0},
        Masked{"16 bits, 4-4-4-4", 16, 3, {0x0F00, 0x00F0, 0x000F, 0xF000}, 56, 0x8F01, 32, {255, 0, 17}, 136},
        Masked{"16 bits, 4-4-4-4, masks behind the header",
               16,
               6,
               {0x0F00, 0x00F0, 0x000F, 0xF000},
               40,
               0x8F01,
               32,
               {255, 0, 17},
               136},
        Masked{"32 bits, plain", 32, 0, {}, 40, 0x00112233, 32, {0x11, 0x22, 0x33}, 255},
        Masked{"32 bits, red last", 32, 3, {0xFF, 0xFF00, 0xFF0000}, 40, 0x00112233, 32, {0x33, 0x22, 0x11}, 255},
        Masked{"32 bits, with alpha",
               32,
               3,
               {0xFF0000, 0xFF00, 0xFF, 0xFF000000},
               108,
               0x80112233,
               32,
               {0x11, 0x22, 0x33},
               128},
        Masked{"32 bits, 10-10-10", 32, 3, {0x3FF00000, 0x000FFC00, 0x000003FF}, 40, 0x3FF00000, 32, {255, 0, 0}, 255},
        Masked{"32 bits, no green", 32, 3, {0xFF0000, 0, 0xFF}, 40, 0x00112233, 32, {0x11, 0, 0x33}, 255}));

TEST_F(Kinds, BmpRunsOfEightBits) {
  BmpMaker bmp;
  bmp.width = 6;
  bmp.height = 3;
  bmp.compression = 1;
  bmp.palette = Colours;
  // Bottom row: 3 of colour 1, then colours 2 3 1 as they are; next: a jump by 2, then 1 of colour 3; the rest
  // untouched.
  bmp.pixels = {3, 1, 0, 3, 2, 3, 1, 0, 0, 0, 0, 2, 2, 0, 1, 3, 0, 1};
  Open(bmp.Make());
  EXPECT_EQ(Colours[1], Pixel(2, 2));
  EXPECT_EQ(Colours[2], Pixel(3, 2));
  EXPECT_EQ(Colours[3], Pixel(4, 2));
  EXPECT_EQ(Colours[1], Pixel(5, 2));
  EXPECT_EQ(Colours[0], Pixel(1, 1));
  EXPECT_EQ(Colours[3], Pixel(2, 1));
  EXPECT_EQ(Colours[0], Pixel(5, 0));
}

TEST_F(Kinds, BmpRunsOfFourBits) {
  BmpMaker bmp;
  bmp.width = 7;
  bmp.height = 1;
  bmp.bits = 4;
  bmp.compression = 2;
  bmp.palette = Colours;
  // Four pixels alternating 1 2, then 3 0 3 as they are; a run that leaves the row is cut off.
  bmp.pixels = {4, 0x12, 0, 3, 0x30, 0x30, 9, 0x11, 0, 1};
  Open(bmp.Make());
  constexpr std::array<std::size_t, 7> expected{1, 2, 1, 2, 3, 0, 3};
  for (std::int32_t x = 0; x < 7; ++x) EXPECT_EQ(Colours[expected[static_cast<std::size_t>(x)]], Pixel(x, 0)) << x;
}

// A GIF made with the codec library: a screen and any number of frames.
class GifMaker {
public:
  GifMaker(MemoryStream& to, int width, int height, const std::vector<GifColorType>& colours, int background = 0) {
    int error = 0;
    codec = EGifOpen(
        &to,
        [](GifFileType* file, const GifByteType* from, int count) {
          return static_cast<int>(
              static_cast<MemoryStream*>(file->UserData)->Write(from, static_cast<std::size_t>(count)));
        },
        &error);
    EGifSetGifVersion(codec, true);
    ColorMapObject* map =
        colours.empty() ? nullptr : GifMakeMapObject(static_cast<int>(colours.size()), colours.data());
    EXPECT_EQ(GIF_OK, EGifPutScreenDesc(codec, width, height, 8, background, map));
    GifFreeMapObject(map);
  }
  ~GifMaker() { EXPECT_EQ(GIF_OK, EGifCloseFile(codec, nullptr)); }

  void Control(int disposal, int transparent) {
    GraphicsControlBlock block{disposal, false, 0, transparent};
    std::array<GifByteType, 4> bytes{};
    EGifGCBToExtension(&block, bytes.data());
    EXPECT_EQ(GIF_OK, EGifPutExtension(codec, GRAPHICS_EXT_FUNC_CODE, 4, bytes.data()));
  }

  // Rows in the order of the file.
  void Frame(int left, int top, int width, const std::vector<std::string>& rows, bool interlaced = false,
             const std::vector<GifColorType>& colours = {}) {
    ColorMapObject* map =
        colours.empty() ? nullptr : GifMakeMapObject(static_cast<int>(colours.size()), colours.data());
    EXPECT_EQ(GIF_OK, EGifPutImageDesc(codec, left, top, width, static_cast<int>(rows.size()), interlaced, map));
    GifFreeMapObject(map);
    for (const std::string& row : rows) {
      Bytes line;
      for (const char digit : row) line.push_back(static_cast<std::uint8_t>(digit - '0'));
      EXPECT_EQ(GIF_OK, EGifPutLine(codec, line.data(), width));
    }
  }

private:
  GifFileType* codec = nullptr;
};

const std::vector<GifColorType> GifColours{{0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}};

TEST_F(Kinds, GifInterlaced) {
  MemoryStream file;
  { GifMaker(file, 1, 9, GifColours).Frame(0, 0, 1, {"0", "1", "2", "3", "0", "1", "2", "3", "0"}, true); }
  Open(file.bytes);
  // Rows 0 8, then 4, then 2 6, then 1 3 5 7.
  constexpr std::array<std::size_t, 9> expected{0, 1, 3, 2, 2, 3, 0, 0, 1};
  for (std::int32_t y = 0; y < 9; ++y) {
    const GifColorType& c = GifColours[expected[static_cast<std::size_t>(y)]];
    EXPECT_EQ((Rgb{c.Red, c.Green, c.Blue}), Pixel(0, y)) << y;
  }
}

TEST_F(Kinds, GifTransparencyShowsWhitePaper) {
  MemoryStream file;
  {
    GifMaker gif(file, 2, 1, GifColours);
    gif.Control(DISPOSE_DO_NOT, 1);
    gif.Frame(0, 0, 2, {"12"});
  }
  Open(file.bytes);
  EXPECT_EQ((Rgb{255, 255, 255}), Pixel(0, 0));
  EXPECT_EQ((Rgb{0, 255, 0}), Pixel(1, 0));
}

TEST_F(Kinds, GifPictureThatCoversAPartOfTheScreen) {
  MemoryStream file;
  { GifMaker(file, 3, 3, GifColours).Frame(1, 1, 2, {"12"}); }
  Open(file.bytes);
  EXPECT_EQ(3, engine.Width());
  EXPECT_EQ((Rgb{255, 255, 255}), Pixel(0, 0));
  EXPECT_EQ((Rgb{255, 0, 0}), Pixel(1, 1));
  EXPECT_EQ((Rgb{0, 255, 0}), Pixel(2, 1));
}

TEST_F(Kinds, GifFramesArePagesDrawnOverEachOther) {
  MemoryStream file;
  {
    GifMaker gif(file, 2, 2, GifColours);
    gif.Frame(0, 0, 2, {"11", "11"});
    gif.Control(DISPOSE_BACKGROUND, 0);
    gif.Frame(1, 0, 1, {"2"});
    gif.Control(DISPOSE_PREVIOUS, NO_TRANSPARENT_COLOR);
    gif.Frame(0, 1, 1, {"1"}, false, {{9, 9, 9}, {7, 8, 9}});
    gif.Frame(1, 1, 1, {"3"}, false, GifColours);
  }
  Open(file.bytes);
  ASSERT_EQ(4, engine.PageCount());
  const Rgb red{255, 0, 0};
  const Rgb green{0, 255, 0};
  const Rgb blue{0, 0, 255};
  const Rgb white{255, 255, 255};
  const Rgb own{7, 8, 9};
  const std::array<std::array<Rgb, 4>, 4> pages{
      {{red, red, red, red}, {red, green, red, red}, {red, white, own, red}, {red, white, red, blue}}};
  for (const std::int32_t page : {4, 1, 3, 2}) {
    engine.SelectPage(page);
    const auto& expected = pages[static_cast<std::size_t>(page - 1)];
    EXPECT_EQ(expected[0], Pixel(0, 0)) << page;
    EXPECT_EQ(expected[1], Pixel(1, 0)) << page;
    EXPECT_EQ(expected[2], Pixel(0, 1)) << page;
    EXPECT_EQ(expected[3], Pixel(1, 1)) << page;
  }
}

TEST_F(Kinds, GifFramesSplitIntoFilesOfOnePage) {
  MemoryStream file;
  {
    GifMaker gif(file, 2, 1, GifColours);
    gif.Frame(0, 0, 2, {"11"});
    gif.Frame(1, 0, 1, {"2"});
  }
  Open(file.bytes);
  engine.SelectPage(2);
  engine.Save(At("page.gif"));
  KWPicEd again;
  ASSERT_TRUE(again.Load(At("page.gif"))) << again.LastLoadError();
  EXPECT_EQ(1, again.PageCount());
  EXPECT_EQ((Rgb{255, 0, 0}), again.Current().PixelAt(0, 0));
  EXPECT_EQ((Rgb{0, 255, 0}), again.Current().PixelAt(1, 0));
}

TEST_F(Kinds, GifWithoutAnyPaletteIsRefused) {
  MemoryStream file;
  { GifMaker(file, 1, 1, GifColours).Frame(0, 0, 1, {"0"}); }
  // The screen's palette is taken out: its flag, and its entries behind the 13 bytes of the screen.
  file.bytes[10] = static_cast<std::uint8_t>(file.bytes[10] & 0x7FU);
  file.bytes.erase(file.bytes.begin() + 13, file.bytes.begin() + 13 + 3 * 4);
  EXPECT_FALSE(engine.Load(Put("a.gif", file.bytes)));
  EXPECT_NE("", engine.LastLoadError());
}

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

TEST_F(Kinds, JpegGreyProgressiveAndColour) {
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

TEST_F(Kinds, JpegDotsPerCentimetre) {
  Open(JpegOf(JCS_GRAYSCALE, 1, {100}, false));
  EXPECT_NEAR(254, engine.Current().HorizontalResolution(), 0.01);
  EXPECT_NEAR(127, engine.Current().VerticalResolution(), 0.01);
}

TEST_F(Kinds, JpegOfInksAsAdobeStoresThem) {
  // The library marks four inks as Adobe's; these say how much paper shows.
  Open(JpegOf(JCS_CMYK, 4, {255, 0, 0, 255}, false));
  EXPECT_EQ(32, engine.PageValue());
  EXPECT_EQ(24, engine.BitsPerPixel());
  EXPECT_NEAR(255, Pixel(5, 5).red, 2);
  EXPECT_NEAR(0, Pixel(5, 5).green, 2);
  EXPECT_NEAR(0, Pixel(5, 5).blue, 2);
}

TEST_F(Kinds, ProgressiveJpegCutShortIsRefused) {
  const Bytes whole = JpegOf(JCS_RGB, 3, {200, 100, 50}, true);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(engine.Load(Put("cut.jpg", {whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)})))
        << length;
  }
}

class ExifOrientation : public Kinds, public testing::WithParamInterface<int> {};

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

TEST_F(Kinds, JpegWithDamagedExifIsShownAsItIs) {
  MemoryStream stream;
  JpegFormat.write(Noise(16, 16, 24), stream, {});
  const Bytes whole = stream.bytes;
  KWPicEd plain;
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

TEST_F(Kinds, OldJpegInTiffIsReadAndCodedAnewWhenSaved) {
  Open(OldJpegTiff(JpegOf(JCS_RGB, 3, {200, 100, 50}, false)));
  EXPECT_EQ(24, engine.BitsPerPixel());
  EXPECT_NEAR(200, Pixel(9, 9).red, 3);
  EXPECT_NEAR(100, Pixel(9, 9).green, 3);
  EXPECT_NEAR(50, Pixel(9, 9).blue, 3);
  engine.Save(At("out.tif"));
  KWPicEd again;
  ASSERT_TRUE(again.Load(At("out.tif"))) << again.LastLoadError();
  EXPECT_TRUE(SamePicture(engine.Current(), again.Current()));
}

class StoredCopy : public Kinds, public testing::WithParamInterface<const char*> {};

TEST_P(StoredCopy, UnchangedPictureIsSavedByteForByte) {
  const std::string extension = GetParam();
  engine.Replace(Noise(40, 30, 8));
  engine.Save(At("a." + extension));
  KWPicEd again;
  ASSERT_TRUE(again.Load(At("a." + extension))) << again.LastLoadError();
  again.Save(At("b." + extension));
  EXPECT_EQ(BytesOf(At("a." + extension)), BytesOf(At("b." + extension)));
}

INSTANTIATE_TEST_SUITE_P(All, StoredCopy, testing::Values("jpg", "gif", "bmp"));

}  // namespace
}  // namespace kw
