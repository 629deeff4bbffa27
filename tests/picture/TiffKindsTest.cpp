#include <array>
#include <tuple>

#include "tests/picture/KindsTest.h"
#include "tests/picture/TiffMaker.h"

namespace kw {
namespace {

class TiffKinds : public KindsTest {
protected:
  std::string path = At("page.tif");
};

TEST_F(TiffKinds, FaxRowsThatBeginAtWholeWords) {
  // By hand, since the library cannot read what it writes of this kind: 16 white pixels are the code 101010, 16 black
  // ones follow 0 white ones, 00110101 and 0000010111.
  {
    TiffMaker maker(path);
    maker.Page(16, 3, 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTRLEW, 3);
    Bytes rows{0xA8, 0x00, 0x35, 0x05, 0xC0, 0x00, 0xA8, 0x00};
    maker.CodedStrip(0, rows);
    maker.EndPage();
  }
  Open(path);
  EXPECT_EQ("", engine.Warning());
  for (std::int32_t x = 0; x < 16; ++x) {
    for (std::int32_t y = 0; y < 3; ++y) {
      EXPECT_EQ(y == 1 ? 0 : 255, engine.Current().PixelAt(x, y).red) << x << ' ' << y;
    }
  }
}

// A file of 1 x 1 pixel of each kind, and the pixel that it is to be decoded to.
struct Kind {
  const char* name;
  int bits;
  int samples;
  int photometric;
  bool planar;
  Bytes row;
  int depth;
  Rgb colour;
  int format = SAMPLEFORMAT_UINT;
};

std::ostream& operator<<(std::ostream& stream, const Kind& kind) { return stream << kind.name; }

class SampleKinds : public TiffKinds, public testing::WithParamInterface<Kind> {};

TEST_P(SampleKinds, PixelHasTheRightColour) {
  const Kind& kind = GetParam();
  {
    TiffMaker maker(path);
    maker.Page(2, 1, kind.bits, kind.samples, kind.photometric, COMPRESSION_NONE, 1);
    if (kind.format != SAMPLEFORMAT_UINT) maker.Set(TIFFTAG_SAMPLEFORMAT, kind.format);
    if (kind.photometric == PHOTOMETRIC_SEPARATED) maker.Set(TIFFTAG_INKSET, INKSET_CMYK);
    if (kind.photometric == PHOTOMETRIC_YCBCR) maker.Set(TIFFTAG_YCBCRSUBSAMPLING, 1, 1);
    if (kind.photometric == PHOTOMETRIC_PALETTE) {
      std::vector<std::uint16_t> red(std::size_t{1} << kind.bits, 0);
      std::vector<std::uint16_t> green = red;
      std::vector<std::uint16_t> blue = red;
      red[1] = 0x1111;
      green[1] = 0x2222;
      blue[1] = 0x3333;
      maker.Set(TIFFTAG_COLORMAP, red.data(), green.data(), blue.data());
    }
    if (kind.planar) {
      maker.Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
      const std::size_t size = kind.row.size() / static_cast<std::size_t>(kind.samples);
      for (std::size_t plane = 0; plane < static_cast<std::size_t>(kind.samples); ++plane) {
        const auto begin = kind.row.begin() + static_cast<std::ptrdiff_t>(plane * size);
        maker.Line(0, {begin, begin + static_cast<std::ptrdiff_t>(size)}, static_cast<std::uint16_t>(plane));
      }
    } else {
      maker.Line(0, kind.row);
    }
    maker.EndPage();
  }
  Open(path);
  EXPECT_EQ(kind.depth, engine.BitsPerPixel());
  EXPECT_EQ(kind.bits * kind.samples, engine.PageValue());
  // The second pixel, so that a wrong step from one to the next shows.
  EXPECT_EQ(kind.colour, engine.Current().PixelAt(1, 0))
      << int{engine.Current().PixelAt(1, 0).red} << ' ' << int{engine.Current().PixelAt(1, 0).green} << ' '
      << int{engine.Current().PixelAt(1, 0).blue};
}

// Samples of 16 bits are given in the byte order of the machine, which is little endian wherever this runs.
const std::array<Kind, 27> AllKinds{{
    {"grey, 1 bit, 0 black", 1, 1, PHOTOMETRIC_MINISBLACK, false, {0x40}, 1, {255, 255, 255}},
    {"grey, 1 bit, 0 white", 1, 1, PHOTOMETRIC_MINISWHITE, false, {0x40}, 1, {0, 0, 0}},
    {"grey, 2 bits", 2, 1, PHOTOMETRIC_MINISBLACK, false, {0x10}, 4, {85, 85, 85}},
    {"grey, 4 bits", 4, 1, PHOTOMETRIC_MINISBLACK, false, {0x03}, 4, {51, 51, 51}},
    {"grey, 4 bits, 0 white", 4, 1, PHOTOMETRIC_MINISWHITE, false, {0x03}, 4, {204, 204, 204}},
    {"grey, 6 bits", 6, 1, PHOTOMETRIC_MINISBLACK, false, {0x03, 0xF0}, 8, {255, 255, 255}},
    {"grey, 8 bits", 8, 1, PHOTOMETRIC_MINISBLACK, false, {1, 77}, 8, {77, 77, 77}},
    {"grey, 8 bits, 0 white", 8, 1, PHOTOMETRIC_MINISWHITE, false, {1, 77}, 8, {178, 178, 178}},
    {"grey, 12 bits", 12, 1, PHOTOMETRIC_MINISBLACK, false, {0x00, 0x0F, 0xFF}, 8, {255, 255, 255}},
    {"grey, 16 bits", 16, 1, PHOTOMETRIC_MINISBLACK, false, {0, 0, 0x80, 0x80}, 8, {128, 128, 128}},
    {"grey, 16 bits, 0 white", 16, 1, PHOTOMETRIC_MINISWHITE, false, {0, 0, 0xFF, 0xFF}, 8, {0, 0, 0}},
    {"palette, 1 bit", 1, 1, PHOTOMETRIC_PALETTE, false, {0x40}, 1, {0x11, 0x22, 0x33}},
    {"palette, 2 bits", 2, 1, PHOTOMETRIC_PALETTE, false, {0x10}, 4, {0x11, 0x22, 0x33}},
    {"palette, 4 bits", 4, 1, PHOTOMETRIC_PALETTE, false, {0x01}, 4, {0x11, 0x22, 0x33}},
    {"palette, 8 bits", 8, 1, PHOTOMETRIC_PALETTE, false, {0, 1}, 8, {0x11, 0x22, 0x33}},
    {"colour, 8 bits", 8, 3, PHOTOMETRIC_RGB, false, {0, 0, 0, 10, 20, 30}, 24, {10, 20, 30}},
    {"colour, 8 bits, planar", 8, 3, PHOTOMETRIC_RGB, true, {0, 10, 0, 20, 0, 30}, 24, {10, 20, 30}},
    {"colour, 4 bits", 4, 3, PHOTOMETRIC_RGB, false, {0x00, 0x01, 0x23}, 24, {17, 34, 51}},
    {"colour, 16 bits",
     16,
     3,
     PHOTOMETRIC_RGB,
     false,
     {0, 0, 0, 0, 0, 0, 0, 0, 0x80, 0x80, 0xFF, 0xFF},
     24,
     {0, 128, 255}},
    {"colour, 16 bits, planar",
     16,
     3,
     PHOTOMETRIC_RGB,
     true,
     {0, 0, 0, 0, 0, 0, 0x80, 0x80, 0, 0, 0xFF, 0xFF},
     24,
     {0, 128, 255}},
    {"colour and something unnamed", 8, 4, PHOTOMETRIC_RGB, false, {0, 0, 0, 0, 10, 20, 30, 7}, 24, {10, 20, 30}},
    {"inks", 8, 4, PHOTOMETRIC_SEPARATED, false, {0, 0, 0, 0, 0, 255, 255, 0}, 24, {255, 0, 0}},
    {"black ink", 8, 4, PHOTOMETRIC_SEPARATED, false, {0, 0, 0, 0, 0, 0, 0, 255}, 24, {0, 0, 0}},
    {"brightness and colour difference",
     8,
     3,
     PHOTOMETRIC_YCBCR,
     false,
     {0, 128, 128, 255, 128, 128},
     24,
     {255, 255, 255}},
    {"grey and something unnamed", 8, 2, PHOTOMETRIC_MINISBLACK, false, {0, 7, 99, 7}, 8, {99, 99, 99}},
    {"palette and something unnamed, planar", 8, 2, PHOTOMETRIC_PALETTE, true, {0, 1, 7, 7}, 8, {0x11, 0x22, 0x33}},
    {"untyped samples", 8, 1, PHOTOMETRIC_MINISBLACK, false, {0, 9}, 8, {9, 9, 9}, SAMPLEFORMAT_VOID},
}};

INSTANTIATE_TEST_SUITE_P(All, SampleKinds, testing::ValuesIn(AllKinds));

TEST_F(TiffKinds, StraightAndPremultipliedAlphaGiveTheSameColour) {
  for (const int kind : {EXTRASAMPLE_UNASSALPHA, EXTRASAMPLE_ASSOCALPHA}) {
    {
      TiffMaker maker(path);
      maker.Page(1, 1, 8, 4, PHOTOMETRIC_RGB, COMPRESSION_NONE, 1);
      auto extra = static_cast<std::uint16_t>(kind);
      maker.Set(TIFFTAG_EXTRASAMPLES, 1, &extra);
      maker.Line(0, kind == EXTRASAMPLE_UNASSALPHA ? Bytes{200, 100, 50, 51} : Bytes{40, 20, 10, 51});
      maker.EndPage();
    }
    Open(path);
    ASSERT_EQ(32, engine.BitsPerPixel());
    EXPECT_EQ((Rgb{200, 100, 50}), engine.Current().PixelAt(0, 0));
    EXPECT_EQ(51, engine.Current().Row(0)[3]);
  }
}

TEST_F(TiffKinds, GreyWithAlphaKeepsIt) {
  {
    TiffMaker maker(path);
    maker.Page(2, 1, 8, 2, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE, 1);
    std::uint16_t extra = EXTRASAMPLE_UNASSALPHA;
    maker.Set(TIFFTAG_EXTRASAMPLES, 1, &extra);
    maker.Line(0, {0, 255, 99, 255});
    maker.EndPage();
  }
  Open(path);
  ASSERT_EQ(32, engine.BitsPerPixel());
  EXPECT_EQ((Rgb{99, 99, 99}), engine.Current().PixelAt(1, 0));
  EXPECT_EQ(255, engine.Current().Row(0)[7]);
}

TEST_F(TiffKinds, FloatingPointSamplesAreRefusedWithAReason) {
  {
    TiffMaker maker(path);
    maker.Page(1, 1, 32, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE, 1).Set(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    maker.Line(0, {0, 0, 0, 0});
    maker.EndPage();
  }
  EXPECT_FALSE(engine.Load(path));
  EXPECT_NE("", engine.LastLoadError());
}

class Tiles : public TiffKinds, public testing::WithParamInterface<std::tuple<int, bool>> {};

TEST_P(Tiles, TilesLieInTheirPlaces) {
  const auto [depth, planar] = GetParam();
  constexpr std::uint32_t width = 75;
  constexpr std::uint32_t height = 50;
  constexpr std::uint32_t tileWidth = 32;
  constexpr std::uint32_t tileHeight = 16;
  const Bitmap picture = Noise(width, height, depth, false);
  const bool colour = depth == 24;
  {
    TiffMaker maker(path);
    maker.Page(width, height, colour ? 8 : depth, colour ? 3 : 1, colour ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK,
               COMPRESSION_LZW, 0);
    maker.Set(TIFFTAG_TILEWIDTH, tileWidth).Set(TIFFTAG_TILELENGTH, tileHeight);
    if (planar) maker.Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE);
    const std::size_t planes = planar ? 3 : 1;
    for (std::size_t plane = 0; plane < planes; ++plane) {
      for (std::uint32_t top = 0; top < height; top += tileHeight) {
        for (std::uint32_t left = 0; left < width; left += tileWidth) {
          Bytes tile(maker.TileSize());
          const std::size_t tileRow = tile.size() / tileHeight;
          for (std::uint32_t y = top; y < std::min(top + tileHeight, height); ++y) {
            const auto row = picture.Row(static_cast<std::int32_t>(y));
            for (std::uint32_t x = left; x < std::min(left + tileWidth, width); ++x) {
              std::uint8_t* to = tile.data() + (y - top) * tileRow;
              if (planar) {
                to[x - left] = row[x * 3 + 2 - plane];
              } else if (colour) {
                for (std::size_t i = 0; i < 3; ++i) to[std::size_t{x - left} * 3 + i] = row[x * 3 + 2 - i];
              } else {
                const std::size_t bit = (x - left) * static_cast<std::size_t>(depth);
                const unsigned index = PaletteIndexAt(row, x, depth);
                to[bit / 8] =
                    static_cast<std::uint8_t>(to[bit / 8] | index << (8 - static_cast<unsigned>(depth) - bit % 8));
              }
            }
          }
          maker.Tile(left, top, tile, static_cast<std::uint16_t>(plane));
        }
      }
    }
    maker.EndPage();
  }
  Open(path);
  EXPECT_TRUE(SamePicture(picture, engine.Current()));
}

INSTANTIATE_TEST_SUITE_P(All, Tiles,
                         testing::Values(std::tuple{1, false}, std::tuple{4, false}, std::tuple{8, false},
                                         std::tuple{24, false}, std::tuple{24, true}));

class JpegInTiff : public TiffKinds, public testing::WithParamInterface<int> {};

TEST_P(JpegInTiff, SmoothPictureComesBackClose) {
  const int photometric = GetParam();
  const bool grey = photometric == PHOTOMETRIC_MINISBLACK;
  {
    TiffMaker maker(path);
    maker.Page(64, 64, 8, grey ? 1 : 3, photometric, COMPRESSION_JPEG, 16);
    maker.Set(TIFFTAG_JPEGQUALITY, 95);
    if (!grey) maker.Set(TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    for (std::uint32_t y = 0; y < 64; ++y) {
      Bytes line;
      for (std::uint32_t x = 0; x < 64; ++x) {
        const auto level = static_cast<std::uint8_t>(x * 2 + y);
        line.push_back(level);
        if (!grey) line.insert(line.end(), {static_cast<std::uint8_t>(255 - level), std::uint8_t{60}});
      }
      maker.Line(y, line);
    }
    maker.EndPage();
  }
  Open(path);
  EXPECT_EQ(grey ? 8 : 24, engine.BitsPerPixel());
  const Rgb colour = engine.Current().PixelAt(40, 30);
  EXPECT_NEAR(110, colour.red, 6);
  EXPECT_NEAR(grey ? 110 : 145, colour.green, 6);
  EXPECT_NEAR(grey ? 110 : 60, colour.blue, 6);
}

INSTANTIATE_TEST_SUITE_P(All, JpegInTiff, testing::Values(PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_YCBCR));

class Orientations : public TiffKinds, public testing::WithParamInterface<int> {};

TEST_P(Orientations, PageIsShownUpright) {
  // As stored: A B C / D E F.
  const int orientation = GetParam();
  {
    TiffMaker maker(path);
    maker.Page(3, 2, 8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE, 2).Set(TIFFTAG_ORIENTATION, orientation);
    maker.Set(TIFFTAG_XRESOLUTION, 200.0).Set(TIFFTAG_YRESOLUTION, 100.0).Set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    maker.Line(0, {'A', 'B', 'C'});
    maker.Line(1, {'D', 'E', 'F'});
    maker.EndPage();
  }
  const std::array<std::string, 9> seen{"",          "ABC/DEF/",  "CBA/FED/",  "FED/CBA/", "DEF/ABC/",
                                        "AD/BE/CF/", "DA/EB/FC/", "FC/EB/DA/", "CF/BE/AD/"};
  Open(path);
  std::string rows;
  for (std::int32_t y = 0; y < engine.Height(); ++y) {
    for (std::int32_t x = 0; x < engine.Width(); ++x) rows += static_cast<char>(engine.Current().PixelAt(x, y).red);
    rows += '/';
  }
  EXPECT_EQ(seen[static_cast<std::size_t>(orientation)], rows);
  EXPECT_NEAR(orientation >= 5 ? 100 : 200, engine.Current().HorizontalResolution(), 0.01);
}

INSTANTIATE_TEST_SUITE_P(All, Orientations, testing::Range(1, 9));

TEST_F(TiffKinds, CentimetresBecomeInches) {
  {
    TiffMaker maker(path);
    maker.Page(1, 1, 8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE, 1);
    maker.Set(TIFFTAG_XRESOLUTION, 100.0)
        .Set(TIFFTAG_YRESOLUTION, 50.0)
        .Set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_CENTIMETER);
    maker.Line(0, {0});
    maker.EndPage();
  }
  Open(path);
  EXPECT_NEAR(254, engine.Current().HorizontalResolution(), 0.01);
  EXPECT_NEAR(127, engine.Current().VerticalResolution(), 0.01);
}

TEST_F(TiffKinds, LeastSignificantBitFirstIsUnderstood) {
  const Bitmap picture = FaxPage(64, 40);
  {
    TiffMaker maker(path);
    maker.Set(TIFFTAG_FILLORDER, FILLORDER_LSB2MSB);
    maker.FaxPageOf(picture, COMPRESSION_CCITTFAX4, 40);
  }
  Open(path);
  EXPECT_TRUE(SamePicture(picture, engine.Current()));
}

}  // namespace
}  // namespace kw
