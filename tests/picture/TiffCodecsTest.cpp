#include <array>
#include <tuple>

#include "picture/PictureDocument.h"
#include "tests/picture/Scratch.h"
#include "tests/picture/TiffMaker.h"

namespace kw {
namespace {

class CodecsOfTheLibrary : public testing::TestWithParam<int> {};

TEST_P(CodecsOfTheLibrary, CodecIsBuiltIn) {
  EXPECT_EQ(1, TIFFIsCODECConfigured(static_cast<std::uint16_t>(GetParam())));
}

// The codecs that every build reads, on every system.
INSTANTIATE_TEST_SUITE_P(All, CodecsOfTheLibrary,
                         testing::Values(COMPRESSION_NONE, COMPRESSION_CCITTRLE, COMPRESSION_CCITTRLEW,
                                         COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4, COMPRESSION_LZW,
                                         COMPRESSION_OJPEG, COMPRESSION_JPEG, COMPRESSION_NEXT, COMPRESSION_PACKBITS,
                                         COMPRESSION_THUNDERSCAN, COMPRESSION_PIXARLOG, COMPRESSION_DEFLATE,
                                         COMPRESSION_ADOBE_DEFLATE, COMPRESSION_SGILOG, COMPRESSION_SGILOG24,
                                         COMPRESSION_LERC, COMPRESSION_LZMA, COMPRESSION_ZSTD, COMPRESSION_WEBP));

class TiffCodecs : public ScratchTest {
protected:
  void Open(const std::string& file) { ASSERT_TRUE(engine.Load(file)) << engine.LastLoadError(); }

  void WriteColours(const Bitmap& picture, int codec, std::uint32_t rowsPerStrip) const {
    TiffMaker maker(path);
    maker.Page(static_cast<std::uint32_t>(picture.Width()), static_cast<std::uint32_t>(picture.Height()), 8, 3,
               PHOTOMETRIC_RGB, codec, rowsPerStrip);
    if (codec == COMPRESSION_WEBP) maker.Set(TIFFTAG_WEBP_LOSSLESS, 1);
    for (std::int32_t y = 0; y < picture.Height(); ++y) {
      Bytes line;
      for (std::int32_t x = 0; x < picture.Width(); ++x) {
        const Rgb colour = picture.PixelAt(x, y);
        line.insert(line.end(), {colour.red, colour.green, colour.blue});
      }
      maker.Line(static_cast<std::uint32_t>(y), line);
    }
    maker.EndPage();
  }

  // A page of one strip with these coded pixels.
  void WriteJbig(std::uint32_t width, std::uint32_t height, const Bytes& code) const {
    TiffMaker maker(path);
    maker.Page(width, height, 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_JBIG, height);
    maker.Set(TIFFTAG_FILLORDER, FILLORDER_LSB2MSB);
    maker.CodedStrip(0, code);
    maker.EndPage();
  }

  std::string path = At("page.tif");
  PictureDocument engine;
};

class BilevelCodecs : public TiffCodecs, public testing::WithParamInterface<std::tuple<int, int>> {};

TEST_P(BilevelCodecs, PageStaysOneBit) {
  const auto [codec, rowsPerStrip] = GetParam();
  const Bitmap picture = FaxPage(203, 97);
  TiffMaker(path).FaxPageOf(picture, codec, static_cast<std::uint32_t>(rowsPerStrip));
  Open(path);
  EXPECT_EQ(1, engine.PageValue());
  EXPECT_TRUE(SamePicture(picture, engine.Current()));
  EXPECT_NEAR(300, engine.Current().HorizontalResolution(), 0.01);
}

INSTANTIATE_TEST_SUITE_P(All, BilevelCodecs,
                         testing::Combine(testing::Values(COMPRESSION_NONE, COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3,
                                                          COMPRESSION_CCITTFAX4, COMPRESSION_LZW, COMPRESSION_PACKBITS,
                                                          COMPRESSION_DEFLATE, COMPRESSION_ADOBE_DEFLATE,
                                                          COMPRESSION_LZMA, COMPRESSION_ZSTD),
                                          testing::Values(97, 16)));
#ifndef _WIN32
// The library writes this one in a single strip only.
INSTANTIATE_TEST_SUITE_P(WholeStrip, BilevelCodecs, testing::Values(std::tuple{COMPRESSION_JBIG, 97}));
#endif

class ByteCodecs : public TiffCodecs, public testing::WithParamInterface<std::tuple<int, int>> {};

TEST_P(ByteCodecs, ColoursAreExact) {
  const auto [codec, rowsPerStrip] = GetParam();
  const Bitmap picture = Noise(37, 29, 24);
  WriteColours(picture, codec, static_cast<std::uint32_t>(rowsPerStrip));
  Open(path);
  EXPECT_EQ(24, engine.PageValue());
  EXPECT_TRUE(SamePicture(picture, engine.Current()));
}

INSTANTIATE_TEST_SUITE_P(All, ByteCodecs,
                         testing::Combine(testing::Values(COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_PACKBITS,
                                                          COMPRESSION_DEFLATE, COMPRESSION_ADOBE_DEFLATE,
                                                          COMPRESSION_LERC, COMPRESSION_LZMA, COMPRESSION_ZSTD,
                                                          COMPRESSION_WEBP),
                                          testing::Values(29, 8)));

class LercPacking : public TiffCodecs, public testing::WithParamInterface<int> {};

TEST_P(LercPacking, GreysAreExact) {
  const Bitmap picture = Noise(61, 40, 8, false);
  {
    TiffMaker maker(path);
    maker.Page(61, 40, 8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LERC, 16);
    maker.Set(TIFFTAG_LERC_ADD_COMPRESSION, GetParam());
    for (std::int32_t y = 0; y < 40; ++y) {
      const auto row = picture.Row(y).first(61);
      maker.Line(static_cast<std::uint32_t>(y), {row.begin(), row.end()});
    }
    maker.EndPage();
  }
  Open(path);
  EXPECT_EQ("", engine.Warning());
  EXPECT_TRUE(SamePicture(picture, engine.Current()));
}

INSTANTIATE_TEST_SUITE_P(All, LercPacking,
                         testing::Values(LERC_ADD_COMPRESSION_NONE, LERC_ADD_COMPRESSION_DEFLATE,
                                         LERC_ADD_COMPRESSION_ZSTD));

class DamagedPixels : public TiffCodecs, public testing::WithParamInterface<int> {};

TEST_P(DamagedPixels, PageIsReadOrRefusedWithAReason) {
  if (GetParam() == COMPRESSION_JBIG) {
    TiffMaker(path).FaxPageOf(FaxPage(203, 97), GetParam(), 97);
  } else {
    WriteColours(Noise(37, 29, 24), GetParam(), 29);
  }
  const Bytes good = BytesOf(path);
  const Bytes pixels = CodedPieces(path, 0).at(0);
  const auto place = std::search(good.begin(), good.end(), pixels.begin(), pixels.end());
  ASSERT_NE(good.end(), place);
  const auto first = static_cast<std::size_t>(place - good.begin());
  std::mt19937 random(1);
  for (int round = 0; round < 200; ++round) {
    Bytes bad = good;
    const std::size_t at = random() % pixels.size();
    const std::size_t end = std::min(at + 4, pixels.size());
    for (std::size_t i = at; i < end; ++i) bad[first + i] = static_cast<std::uint8_t>(random());
    const bool read = engine.Load(Put("bad.tif", bad));
    EXPECT_EQ(read, engine.LastLoadError().empty());
  }
  Open(path);
  EXPECT_EQ("", engine.Warning());
}

INSTANTIATE_TEST_SUITE_P(All, DamagedPixels,
                         testing::Values(COMPRESSION_LERC, COMPRESSION_LZMA, COMPRESSION_ZSTD, COMPRESSION_WEBP));

// A page of 16 x 8 pixels, which a libtiff without JBIG cannot write.
Bytes SmallJbigFile() {
  const Bytes code{0x00, 0x00, 0x80, 0x00, 0x00, 0x00, 0x00, 0x08, 0x00, 0x00, 0x00, 0x10, 0x00,
                   0x00, 0x00, 0x40, 0x10, 0x00, 0xC0, 0x38, 0xFF, 0x00, 0xCF, 0xD9, 0x1F, 0xFF,
                   0x40, 0x5B, 0x61, 0x6E, 0xFF, 0x40, 0xE0, 0xFF, 0x40, 0xFF, 0x40};
  constexpr std::uint16_t Entries = 8;
  constexpr std::uint16_t CodeOffset = 8 + 2 + Entries * 12 + 4;
  const std::array<std::array<std::uint16_t, 2>, Entries> tags{{{TIFFTAG_IMAGEWIDTH, 16},
                                                                {TIFFTAG_IMAGELENGTH, 8},
                                                                {TIFFTAG_BITSPERSAMPLE, 1},
                                                                {TIFFTAG_COMPRESSION, COMPRESSION_JBIG},
                                                                {TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK},
                                                                {TIFFTAG_STRIPOFFSETS, CodeOffset},
                                                                {TIFFTAG_ROWSPERSTRIP, 8},
                                                                {TIFFTAG_STRIPBYTECOUNTS, 37}}};
  Bytes file{'I', 'I', 42, 0, 8, 0, 0, 0, Entries, 0};
  for (const auto& [tag, value] : tags) {
    for (const std::uint16_t word :
         {tag, std::uint16_t{TIFF_SHORT}, std::uint16_t{1}, std::uint16_t{0}, value, std::uint16_t{0}}) {
      file.insert(file.end(), {static_cast<std::uint8_t>(word % 256), static_cast<std::uint8_t>(word / 256)});
    }
  }
  file.insert(file.end(), 4, 0);
  file.insert(file.end(), code.begin(), code.end());
  return file;
}

#ifdef _WIN32
TEST_F(TiffCodecs, JbigIsRefusedWithThatReason) {
  EXPECT_EQ(0, TIFFIsCODECConfigured(COMPRESSION_JBIG));
  EXPECT_FALSE(engine.Load(Put("jbig.tif", SmallJbigFile())));
  EXPECT_EQ("This kind of TIFF is not supported: JBIG pixels.", engine.LastLoadError());
}
#else
INSTANTIATE_TEST_SUITE_P(Jbig, DamagedPixels, testing::Values(COMPRESSION_JBIG));

TEST_F(TiffCodecs, JbigIsRead) {
  Open(Put("jbig.tif", SmallJbigFile()));
  EXPECT_EQ("", engine.Warning());
  for (std::int32_t y = 0; y < 8; ++y) {
    for (std::int32_t x = 0; x < 16; ++x) {
      EXPECT_EQ((x * y + x / 3) % 2 == 1, engine.Current().PixelAt(x, y) == (Rgb{0, 0, 0})) << x << ", " << y;
    }
  }
}

// Pixels of a fax whose height its sender knew only at the end.
TEST_F(TiffCodecs, JbigHeightMayFollowThePixels) {
  const Bitmap picture = FaxPage(203, 97);
  TiffMaker(path).FaxPageOf(picture, COMPRESSION_JBIG, 97);
  Bytes code = CodedPieces(path, 0).at(0);
  TIFFReverseBits(code.data(), std::ssize(code));
  std::fill_n(code.begin() + 8, 4, std::uint8_t{0xFF});
  code[19] |= 0x20U;
  code.insert(code.end(), {0xFF, 0x05, 0, 0, 0, 97});
  WriteJbig(203, 97, code);
  Open(path);
  EXPECT_EQ("", engine.Warning());
  EXPECT_TRUE(SamePicture(picture, engine.Current()));
}

class GreedyJbig : public TiffCodecs, public testing::WithParamInterface<Bytes> {};

TEST_P(GreedyJbig, IsRefusedBeforeItTakesMemory) {
  WriteJbig(64, 64, GetParam());
  EXPECT_FALSE(engine.Load(path));
  EXPECT_EQ("The JBIG pixels are more than the page has.", engine.LastLoadError());
}

// Layers, planes, width, height, rows of a stripe, three more; then the end of a stripe, or another height.
const Bytes TooWide{0, 0, 1, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 64, 0, 0, 0, 64, 8, 0, 3, 0, 0xFF, 0x02};
const Bytes TooHigh{0, 0, 1, 0, 0, 0, 0, 64, 0xFF, 0xFF, 0xFF, 0xFE, 0, 0, 0, 64, 8, 0, 3, 0, 0xFF, 0x02};
const Bytes TooManyPlanes{0, 0, 255, 0, 0, 0, 0, 64, 0, 0, 0, 64, 0, 0, 0, 64, 8, 0, 3, 0, 0xFF, 0x02};
const Bytes TooHighInTheEnd{0, 0,  1, 0, 0, 0,    0,    64,   0xFF, 0xFF, 0xFF, 0xFF, 0,    0,
                            0, 64, 8, 0, 3, 0x20, 0xFF, 0x05, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x02};

INSTANTIATE_TEST_SUITE_P(All, GreedyJbig, testing::Values(TooWide, TooHigh, TooManyPlanes, TooHighInTheEnd));
#endif

#ifdef _WIN32
// Elsewhere the library is the system's.
TEST_F(TiffCodecs, FirstLercFormatIsRefusedUndecoded) {
  const auto append = [](Bytes& bytes, auto value) {
    const auto* from = reinterpret_cast<const std::uint8_t*>(&value);
    bytes.insert(bytes.end(), from, from + sizeof value);
  };
  Bytes blob{'C', 'n', 't', 'Z', 'I', 'm', 'a', 'g', 'e', ' '};
  for (const std::int32_t value : {11, 8, 8, 8}) append(blob, value);  // version, type, height, width
  append(blob, 0.5);
  for (const std::int32_t value : {0, 0, 0}) append(blob, value);  // every pixel is valid
  append(blob, 1.0F);
  for (const std::int32_t value : {1, 1, 200}) append(blob, value);  // one tile
  append(blob, 9.0F);
  append(blob, std::uint8_t{1});
  append(blob, 0.0F);
  append(blob, std::uint8_t{8});
  append(blob, std::uint32_t{1} << 27U);  // that many values of 8 bits, of which there are none
  {
    TiffMaker maker(path);
    maker.Page(8, 8, 8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LERC, 8);
    maker.CodedStrip(0, blob);
    maker.EndPage();
  }
  EXPECT_FALSE(engine.Load(path));
  EXPECT_NE("", engine.LastLoadError());
}
#endif

}  // namespace
}  // namespace kw
