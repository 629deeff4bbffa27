#include <array>
#include <string>

#include <gif_lib.h>

#include "tests/picture/KindsTest.h"

namespace kw {
namespace {

using GifKinds = KindsTest;

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

TEST_F(GifKinds, Interlaced) {
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

TEST_F(GifKinds, TransparencyShowsWhitePaper) {
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

TEST_F(GifKinds, PictureThatCoversAPartOfTheScreen) {
  MemoryStream file;
  { GifMaker(file, 3, 3, GifColours).Frame(1, 1, 2, {"12"}); }
  Open(file.bytes);
  EXPECT_EQ(3, engine.Width());
  EXPECT_EQ((Rgb{255, 255, 255}), Pixel(0, 0));
  EXPECT_EQ((Rgb{255, 0, 0}), Pixel(1, 1));
  EXPECT_EQ((Rgb{0, 255, 0}), Pixel(2, 1));
}

TEST_F(GifKinds, FramesArePagesDrawnOverEachOther) {
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

TEST_F(GifKinds, FramesSplitIntoFilesOfOnePage) {
  MemoryStream file;
  {
    GifMaker gif(file, 2, 1, GifColours);
    gif.Frame(0, 0, 2, {"11"});
    gif.Frame(1, 0, 1, {"2"});
  }
  Open(file.bytes);
  engine.SelectPage(2);
  engine.Save(At("page.gif"));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At("page.gif"))) << again.LastLoadError();
  EXPECT_EQ(1, again.PageCount());
  EXPECT_EQ((Rgb{255, 0, 0}), again.Current().PixelAt(0, 0));
  EXPECT_EQ((Rgb{0, 255, 0}), again.Current().PixelAt(1, 0));
}

TEST_F(GifKinds, PictureWithoutAnyPaletteIsRefused) {
  MemoryStream file;
  { GifMaker(file, 1, 1, GifColours).Frame(0, 0, 1, {"0"}); }
  // The screen's palette is taken out: its flag, and its entries behind the 13 bytes of the screen.
  file.bytes[10] = static_cast<std::uint8_t>(file.bytes[10] & 0x7FU);
  file.bytes.erase(file.bytes.begin() + 13, file.bytes.begin() + 13 + 12);
  EXPECT_FALSE(engine.Load(Put("a.gif", file.bytes)));
  EXPECT_NE("", engine.LastLoadError());
}

// The transparent index that the file's first frame names.
int TransparentIndexOf(const std::string& path) {
  int error = 0;
  GifFileType* codec = DGifOpenFileName(path.c_str(), &error);
  if (codec == nullptr || DGifSlurp(codec) != GIF_OK) return -2;
  GraphicsControlBlock control{};
  const bool found = DGifSavedExtensionToGCB(codec, 0, &control) == GIF_OK;
  DGifCloseFile(codec, nullptr);
  return found ? control.TransparentColor : NO_TRANSPARENT_COLOR;
}

TEST_F(GifKinds, TransparencyIsKeptOnSave) {
  for (const bool manyColours : {false, true}) {
    Bitmap picture(30, 20, 32);
    for (std::int32_t y = 0; y < 20; ++y) {
      const auto row = picture.MutableRow(y);
      for (std::size_t x = 0; x < 30; ++x) {
        row[x * 4] = static_cast<std::uint8_t>(manyColours ? x * 8 : 0);
        row[x * 4 + 1] = static_cast<std::uint8_t>(manyColours ? y * 12 : 0);
        row[x * 4 + 2] = 40;
        row[x * 4 + 3] = x < 10 ? 0 : x < 20 ? 128 : 255;
      }
    }
    engine.Replace(picture);
    engine.Save(At("alpha.gif"));
    const int transparent = TransparentIndexOf(At("alpha.gif"));
    ASSERT_GE(transparent, 0);
    ASSERT_TRUE(engine.Load(At("alpha.gif"))) << engine.LastLoadError();
    for (std::int32_t y = 0; y < 20; ++y) {
      for (std::int32_t x = 0; x < 30; ++x) {
        const bool isTransparent = engine.Current().Row(y)[static_cast<std::size_t>(x)] == transparent;
        const bool isIndexed = engine.BitsPerPixel() == 8;
        if (isIndexed) {
          ASSERT_EQ(x < 10, isTransparent) << x << ' ' << y;
        }
        EXPECT_EQ(x < 10, Pixel(x, y) == (Rgb{255, 255, 255})) << x << ' ' << y;
      }
    }
    // Unchanged, it keeps its coded pixels and with them what is transparent.
    engine.Save(At("again.gif"));
    EXPECT_EQ(transparent, TransparentIndexOf(At("again.gif")));
  }
  Bitmap opaque(5, 5, 32);
  for (std::int32_t y = 0; y < 5; ++y) std::ranges::fill(opaque.MutableRow(y), std::uint8_t{255});
  engine.Replace(opaque);
  engine.Save(At("opaque.gif"));
  EXPECT_EQ(NO_TRANSPARENT_COLOR, TransparentIndexOf(At("opaque.gif")));
}

// Two by two pixels, black (0) and white (1), in these codes of 3 bits: 4 is clear, 5 the end, 6 the first new one.
Bytes GifOfCodes(std::initializer_list<unsigned> codes) {
  unsigned bits = 0;
  unsigned place = 0;
  for (const unsigned code : codes) bits |= code << (3 * place++);
  const auto low = static_cast<std::uint8_t>(bits);
  const auto high = static_cast<std::uint8_t>(bits >> 8U);
  return {'G', 'I', 'F', '8', '9', 'a', 2, 0, 2, 0, 0x80, 0, 0, 0,   0,    0, 255, 255,
          255, ',', 0,   0,   0,   0,   2, 0, 2, 0, 0,    2, 2, low, high, 0, ';'};
}

TEST_F(GifKinds, BlocksBehindTheLastPixelDoNotMatter) {
  Bytes bytes = GifOfCodes({4, 0, 1, 6, 5});
  // In front of the end of the blocks and the end of the file.
  for (int i = 0; i < 40; ++i) bytes.insert(bytes.end() - 2, {2, 0xFF, 0xFF});
  ASSERT_TRUE(engine.Load(Put("blocks.gif", bytes))) << engine.LastLoadError();
  EXPECT_EQ("", engine.Warning());
  EXPECT_EQ((Rgb{255, 255, 255}), Pixel(1, 1));
}

TEST_F(GifKinds, CodesOutOfRangeEndThePicture) {
  ASSERT_TRUE(engine.Load(Put("codes.gif", GifOfCodes({4, 0, 1, 6, 5})))) << engine.LastLoadError();
  EXPECT_EQ("", engine.Warning());
  EXPECT_EQ((Rgb{255, 255, 255}), Pixel(1, 1));
  // 7 is two further than the codes that there are.
  EXPECT_FALSE(engine.Load(Put("codes.gif", GifOfCodes({4, 0, 7, 7, 5}))));
  EXPECT_NE(std::string::npos, engine.LastLoadError().find("GIF data is damaged")) << engine.LastLoadError();
  // The end comes behind the first row.
  ASSERT_TRUE(engine.Load(Put("codes.gif", GifOfCodes({4, 0, 0, 5, 5})))) << engine.LastLoadError();
  EXPECT_NE(std::string::npos, engine.Warning().find("1 of 2 rows")) << engine.Warning();
  EXPECT_EQ((Rgb{0, 0, 0}), Pixel(1, 0));
  EXPECT_EQ((Rgb{255, 255, 255}), Pixel(1, 1));
}

}  // namespace
}  // namespace kw
