#include <array>
#include <cstdlib>
#include <tuple>

#include "picture/Depth.h"
#include "picture/PictureDocument.h"
#include "picture/TiffPageWriter.h"
#include "picture/effects/ParallelRows.h"
#include "picture/formats/Formats.h"
#include "tests/picture/Scratch.h"

namespace kw {
namespace {

class RoundTrip : public ScratchTest, public testing::WithParamInterface<std::tuple<const char*, int, int>> {};

TEST_P(RoundTrip, LosslessFormatKeepsSizeDepthPaletteAndPixels) {
  const auto [extension, depth, width] = GetParam();
  const Bitmap picture = Noise(width, 23, depth);
  const std::string path = At(std::string("picture.") + extension);
  PictureDocument engine;
  engine.Replace(picture);
  engine.Save(path);

  PictureDocument again;
  ASSERT_TRUE(again.Load(path)) << again.LastLoadError();
  EXPECT_EQ(1, again.PageCount());
  EXPECT_EQ(depth, again.BitsPerPixel());
  EXPECT_EQ(depth, again.PageValue());
  EXPECT_TRUE(SamePicture(picture, again.Current()));
}

INSTANTIATE_TEST_SUITE_P(AllDepths, RoundTrip,
                         testing::Combine(testing::Values("tif", "bmp"), testing::Values(1, 4, 8, 24, 32),
                                          testing::Values(1, 2, 7, 8, 9, 31, 64, 65)));
INSTANTIATE_TEST_SUITE_P(PaletteDepths, RoundTrip,
                         testing::Combine(testing::Values("gif"), testing::Values(1, 4, 8),
                                          testing::Values(1, 2, 7, 8, 9, 31, 64, 65)));

class GreyRoundTrip : public ScratchTest, public testing::WithParamInterface<std::tuple<const char*, int>> {};

TEST_P(GreyRoundTrip, GreyLevelsKeepTheirPalette) {
  const auto [extension, depth] = GetParam();
  PictureDocument engine;
  engine.Replace(Noise(45, 19, depth, false));
  const Bitmap picture = engine.Current();
  engine.Save(At(std::string("grey.") + extension));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At(std::string("grey.") + extension))) << again.LastLoadError();
  EXPECT_TRUE(SamePicture(picture, again.Current()));
}

INSTANTIATE_TEST_SUITE_P(AllFormats, GreyRoundTrip,
                         testing::Combine(testing::Values("tif", "bmp", "gif"), testing::Values(1, 4, 8)));

class ColourRoundTrip : public ScratchTest {
protected:
  // The largest difference of a channel between two pictures of one size.
  static int WorstError(const Bitmap& a, const Bitmap& b) {
    int worst = 0;
    for (std::int32_t y = 0; y < a.Height(); ++y) {
      for (std::int32_t x = 0; x < a.Width(); ++x) {
        const Rgb p = a.PixelAt(x, y);
        const Rgb q = b.PixelAt(x, y);
        worst = std::max({worst, std::abs(p.red - q.red), std::abs(p.green - q.green), std::abs(p.blue - q.blue)});
      }
    }
    return worst;
  }

  static Bitmap Gradient() {
    Bitmap picture(64, 48, 24);
    for (std::int32_t y = 0; y < 48; ++y) {
      const auto row = picture.MutableRow(y);
      for (std::int32_t x = 0; x < 64; ++x) {
        const auto at = static_cast<std::size_t>(x) * 3;
        row[at] = static_cast<std::uint8_t>(x * 4);
        row[at + 1] = static_cast<std::uint8_t>(y * 5);
        row[at + 2] = static_cast<std::uint8_t>(255 - x * 2);
      }
    }
    return picture;
  }
};

TEST_F(ColourRoundTrip, JpegStaysCloseToColoursAndTheirPlaces) {
  PictureDocument engine;
  engine.Replace(Gradient());
  engine.Save(At("a.jpg"));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At("a.jpg"))) << again.LastLoadError();
  ASSERT_EQ(64, again.Width());
  ASSERT_EQ(48, again.Height());
  EXPECT_EQ(24, again.BitsPerPixel());
  EXPECT_LE(WorstError(Gradient(), again.Current()), 12);
}

TEST_F(ColourRoundTrip, JpegOfGreyPaletteIsGrey) {
  Bitmap grey(40, 40, 4);
  for (std::int32_t y = 0; y < 40; ++y) std::ranges::fill(grey.MutableRow(y), static_cast<std::uint8_t>(y / 8 * 0x33));
  PictureDocument engine;
  engine.Replace(grey);
  engine.Save(At("a.jpeg"));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At("a.jpeg"))) << again.LastLoadError();
  EXPECT_EQ(8, again.BitsPerPixel());
  EXPECT_LE(WorstError(grey, again.Current()), 6);
}

TEST_F(ColourRoundTrip, GifOfFewColoursIsExact) {
  Bitmap picture(30, 30, 24);
  for (std::int32_t y = 0; y < 30; ++y) {
    auto row = picture.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) row[i] = static_cast<std::uint8_t>(i / 3 % 5 * 50 + i % 3);
  }
  PictureDocument engine;
  engine.Replace(picture);
  engine.Save(At("a.gif"));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At("a.gif"))) << again.LastLoadError();
  EXPECT_EQ(0, WorstError(picture, again.Current()));
}

TEST_F(ColourRoundTrip, GifOfManyColoursIsCloseByAMadePalette) {
  PictureDocument engine;
  engine.Replace(Gradient());
  engine.Save(At("a.gif"));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At("a.gif"))) << again.LastLoadError();
  EXPECT_EQ(8, again.BitsPerPixel());
  EXPECT_LE(WorstError(Gradient(), again.Current()), 24);
}

TEST_F(ColourRoundTrip, AlphaIsLaidOnWhiteWhereTheFormatHasNone) {
  Bitmap picture(16, 16, 32);  // black and wholly transparent
  PictureDocument engine;
  engine.Replace(picture);
  engine.Save(At("a.gif"));
  engine.Save(At("a.jpg"));
  for (const char* name : {"a.gif", "a.jpg"}) {
    PictureDocument again;
    ASSERT_TRUE(again.Load(At(name))) << again.LastLoadError();
    EXPECT_EQ((Rgb{255, 255, 255}), again.Current().PixelAt(7, 7)) << name;
  }
}

class ResolutionRoundTrip : public ScratchTest, public testing::WithParamInterface<const char*> {};

TEST_P(ResolutionRoundTrip, ResolutionIsKept) {
  Bitmap picture = Noise(20, 20, 24);
  picture.SetResolution(300, 200);
  PictureDocument engine;
  engine.Replace(picture);
  const std::string path = At(std::string("a.") + GetParam());
  engine.Save(path);
  PictureDocument again;
  ASSERT_TRUE(again.Load(path)) << again.LastLoadError();
  EXPECT_NEAR(300, again.Current().HorizontalResolution(), 0.05);
  EXPECT_NEAR(200, again.Current().VerticalResolution(), 0.05);
}

TEST_P(ResolutionRoundTrip, MissingResolutionStaysMissing) {
  PictureDocument engine;
  engine.Replace(Noise(20, 20, 24));
  const std::string path = At(std::string("a.") + GetParam());
  engine.Save(path);
  PictureDocument again;
  ASSERT_TRUE(again.Load(path)) << again.LastLoadError();
  EXPECT_EQ(0, again.Current().HorizontalResolution());
  EXPECT_EQ(0, again.Current().VerticalResolution());
}

INSTANTIATE_TEST_SUITE_P(AllThatHaveOne, ResolutionRoundTrip, testing::Values("tif", "bmp", "jpg"));

class StoredCopy : public ScratchTest, public testing::WithParamInterface<const char*> {};

TEST_P(StoredCopy, UnchangedPictureIsSavedByteForByte) {
  const std::string extension = GetParam();
  PictureDocument engine;
  engine.Replace(Noise(40, 30, 8));
  engine.Save(At("a." + extension));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At("a." + extension))) << again.LastLoadError();
  again.Save(At("b." + extension));
  EXPECT_EQ(BytesOf(At("a." + extension)), BytesOf(At("b." + extension)));
}

INSTANTIATE_TEST_SUITE_P(All, StoredCopy, testing::Values("jpg", "gif", "bmp"));

class Recognition : public ScratchTest, public testing::WithParamInterface<std::tuple<const char*, const char*>> {};

TEST_P(Recognition, ContentDecidesNotTheExtension) {
  const auto [format, extension] = GetParam();
  const std::string honest = At(std::string("a.") + format);
  const std::string disguised = At(std::string("b") + extension);
  PictureDocument engine;
  engine.Replace(FaxPage(90, 60));
  engine.Save(honest);
  std::filesystem::copy_file(ToFilesystemPath(honest), ToFilesystemPath(disguised));
  PictureDocument again;
  ASSERT_TRUE(again.Load(disguised)) << again.LastLoadError();
  EXPECT_EQ(90, again.Width());
  EXPECT_EQ(60, again.Height());
}

INSTANTIATE_TEST_SUITE_P(WrongExtensions, Recognition,
                         testing::Combine(testing::Values("tif", "jpg", "gif", "bmp"),
                                          testing::Values(".tif", ".jpg", ".gif", ".bmp", ".txt", "")));

// The strips of a whole page are coded by several threads, those of a page in bands one after the other.
TEST(TiffStrips, OfAWholePageAreThoseOfItsBands) {
  SetMostThreads(4);
  std::vector<Bitmap> pictures;
  for (const int depth : {4, 8, 24, 32}) pictures.push_back(Noise(1501, 907, depth));
  // More strips than are coded at once, each of one row.
  Bitmap& manyStrips = pictures.emplace_back(270000, 140, 8);
  for (std::int32_t y = 0; y < manyStrips.Height(); ++y) manyStrips.MutableRow(y)[0] = static_cast<std::uint8_t>(y);
  for (const Bitmap& picture : pictures) {
    MemoryFile whole;
    TiffFormat.write(picture, whole, {});
    MemoryFile banded;
    TiffPageWriter writer(banded, picture.Height());
    writer.Add(picture);
    writer.Finish();
    EXPECT_TRUE(std::ranges::equal(banded.Bytes(), whole.Bytes())) << picture.BitsPerPixel();
  }
  SetMostThreads(0);
}

}  // namespace
}  // namespace kw
