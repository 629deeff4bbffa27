// How pages lie in an fmf document, read with the codec library alone.

#include "picture/PictureDocument.h"
#include "tests/picture/TiffMaker.h"

namespace kw {
namespace {

struct Coding {
  Bitmap page;
  int photometric;
  int samples;
  int bits;
  int compression;
  int predictor;
  std::uint32_t rowsPerStrip;
};

Bitmap WithPaletteOf(Bitmap picture, std::vector<Rgb> palette) {
  picture.SetPalette(std::move(palette));
  return picture;
}

class FmfCoding : public ScratchTest {
protected:
  // The library does not know the version's tag.
  FmfCoding() : warn(TIFFSetWarningHandler(nullptr)) {}
  ~FmfCoding() override { TIFFSetWarningHandler(warn); }

  static std::uint32_t Tag(TIFF* file, std::uint32_t tag) {
    std::uint16_t value = 0;
    return TIFFGetFieldDefaulted(file, tag, &value) == 1 ? value : 0;
  }

  TIFFErrorHandler warn;
};

TEST_F(FmfCoding, OfEachKindOfPageIsTheDocumentedOne) {
  constexpr std::uint32_t stripBytes = 256 * 1024;
  constexpr std::uint32_t height = 700;
  const Coding codings[] = {
      {FaxPage(3000, height), PHOTOMETRIC_MINISWHITE, 1, 1, COMPRESSION_CCITTFAX4, PREDICTOR_NONE, height},
      {Noise(3000, height, 1, false), PHOTOMETRIC_MINISBLACK, 1, 1, COMPRESSION_CCITTFAX4, PREDICTOR_NONE, height},
      {WithPaletteOf(Noise(8000, height, 1), {{9, 8, 7}, {1, 2, 3}}), PHOTOMETRIC_PALETTE, 1, 1, COMPRESSION_LZW,
       PREDICTOR_NONE, stripBytes / 1000},
      {Noise(3000, height, 4, false), PHOTOMETRIC_MINISBLACK, 1, 4, COMPRESSION_LZW, PREDICTOR_NONE, stripBytes / 1500},
      {Noise(3000, height, 4), PHOTOMETRIC_PALETTE, 1, 4, COMPRESSION_LZW, PREDICTOR_NONE, stripBytes / 1500},
      {Noise(3000, height, 8, false), PHOTOMETRIC_MINISBLACK, 1, 8, COMPRESSION_LZW, PREDICTOR_HORIZONTAL,
       stripBytes / 3000},
      {Noise(3000, height, 8), PHOTOMETRIC_PALETTE, 1, 8, COMPRESSION_LZW, PREDICTOR_NONE, stripBytes / 3000},
      {Noise(3000, height, 24), PHOTOMETRIC_RGB, 3, 8, COMPRESSION_LZW, PREDICTOR_HORIZONTAL, stripBytes / 9000},
      {Noise(3000, height, 32), PHOTOMETRIC_RGB, 4, 8, COMPRESSION_LZW, PREDICTOR_HORIZONTAL, stripBytes / 12000},
  };
  for (const Coding& coding : codings) {
    PictureDocument engine;
    engine.Replace(coding.page);
    engine.Save(At("page.fmf"));
    TIFF* const file = TIFFOpen(At("page.fmf").c_str(), "r");
    ASSERT_NE(file, nullptr);
    const int depth = coding.page.BitsPerPixel();
    EXPECT_EQ(coding.photometric, static_cast<int>(Tag(file, TIFFTAG_PHOTOMETRIC))) << depth;
    EXPECT_EQ(coding.samples, static_cast<int>(Tag(file, TIFFTAG_SAMPLESPERPIXEL))) << depth;
    EXPECT_EQ(coding.bits, static_cast<int>(Tag(file, TIFFTAG_BITSPERSAMPLE))) << depth;
    EXPECT_EQ(coding.compression, static_cast<int>(Tag(file, TIFFTAG_COMPRESSION))) << depth;
    std::uint16_t predictor = PREDICTOR_NONE;
    if (coding.compression == COMPRESSION_LZW) TIFFGetField(file, TIFFTAG_PREDICTOR, &predictor);
    EXPECT_EQ(coding.predictor, predictor) << depth;
    EXPECT_EQ(1U, Tag(file, TIFFTAG_ORIENTATION));
    std::uint32_t rows = 0;
    TIFFGetField(file, TIFFTAG_ROWSPERSTRIP, &rows);
    EXPECT_EQ(coding.rowsPerStrip, rows) << depth;
    if (depth == 32) {
      std::uint16_t count = 0;
      std::uint16_t* kinds = nullptr;
      ASSERT_EQ(1, TIFFGetField(file, TIFFTAG_EXTRASAMPLES, &count, &kinds));
      EXPECT_EQ(1, count);
      EXPECT_EQ(EXTRASAMPLE_UNASSALPHA, kinds[0]);
    }
    TIFFClose(file);
  }
}

}  // namespace
}  // namespace kw
