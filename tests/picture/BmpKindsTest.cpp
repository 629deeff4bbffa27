#include <array>
#include <string>

#include "picture/Bytes.h"
#include "tests/picture/KindsTest.h"

namespace kw {
namespace {

using BmpKinds = KindsTest;

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

class BmpHeaders : public KindsTest, public testing::WithParamInterface<std::uint32_t> {};

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

TEST_F(BmpKinds, RowsFromTheTop) {
  BmpMaker bmp;
  bmp.height = -2;
  bmp.palette = Colours;
  bmp.pixels = {2, 3, 0, 0, 0, 1, 0, 0};
  Open(bmp.Make());
  EXPECT_EQ(Colours[2], Pixel(0, 0));
  EXPECT_EQ(Colours[1], Pixel(1, 1));
  EXPECT_NEAR(96, engine.Current().HorizontalResolution(), 0.1);
}

TEST_F(BmpKinds, TwoBitsBecomeFour) {
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

class BmpMasks : public KindsTest, public testing::WithParamInterface<Masked> {};

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

TEST_F(BmpKinds, RunsOfEightBits) {
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

TEST_F(BmpKinds, RunsOfFourBits) {
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

TEST_F(BmpKinds, PictureWithAnEmptyPaletteStaysBlack) {
  // A count of 0 would stand for a palette of full length, which is then read from the pixels.
  for (const int depth : {1, 4, 8}) {
    Bitmap picture(3, 2, depth);
    picture.SetPalette({});
    engine.Replace(picture);
    engine.Save(At("black.bmp"));
    ASSERT_TRUE(engine.Load(At("black.bmp"))) << engine.LastLoadError();
    EXPECT_EQ(depth, engine.BitsPerPixel());
    EXPECT_EQ((Rgb{0, 0, 0}), Pixel(2, 1));
  }
}

}  // namespace
}  // namespace kw
