#include <array>

#include "picture/PictureDocument.h"
#include "tests/data/TestData.h"
#include "tests/picture/Scratch.h"
#include "tests/picture/TiffMaker.h"

namespace kw {
namespace {

// Documents as scanners and cameras make them, which other programs wrote.
class Samples : public ScratchTest {
protected:
  static std::string Sample(const char* name) { return FromFilesystemPath(TestData(name)); }

  struct Expected {
    int depth;
    std::int32_t width;
    std::int32_t height;
    double across;
    double down;
  };
  void ExpectPage(const Expected& page) const {
    EXPECT_EQ(page.depth, engine.BitsPerPixel());
    EXPECT_EQ(page.width, engine.Width());
    EXPECT_EQ(page.height, engine.Height());
    EXPECT_NEAR(page.across, engine.Current().HorizontalResolution(), 0.01);
    EXPECT_NEAR(page.down, engine.Current().VerticalResolution(), 0.01);
  }
  // Saved in any format the current page keeps its size, and in a lossless one its pixels.
  void ExpectSavedInEveryFormat() {
    for (const char* extension : {"tif", "bmp", "gif", "jpg"}) {
      const std::string out = At(std::string("out.") + extension);
      engine.Save(out);
      PictureDocument again;
      ASSERT_TRUE(again.Load(out)) << again.LastLoadError();
      EXPECT_EQ(engine.Width(), again.Width());
      EXPECT_EQ(engine.Height(), again.Height());
      if (std::string(extension) == "tif" || std::string(extension) == "bmp") {
        EXPECT_TRUE(SamePicture(engine.Current(), again.Current())) << extension;
      }
    }
  }

  PictureDocument engine;
};

TEST_F(Samples, ScannedDocumentIsSplitWithoutLoss) {
  constexpr std::array pages{Expected{1, 1654, 2339, 200, 200}, Expected{1, 1240, 1754, 150, 150},
                             Expected{1, 1728, 1145, 204, 98}, Expected{1, 850, 1100, 100, 100},
                             Expected{1, 640, 1500, 203, 203}};
  const std::string path = Sample("letter.tif");
  ASSERT_TRUE(engine.Load(path)) << engine.LastLoadError();
  ASSERT_EQ(std::ssize(pages), engine.PageCount());
  for (std::int32_t page = engine.PageCount(); page >= 1; --page) {
    SCOPED_TRACE(page);
    engine.SelectPage(page);
    ExpectPage(pages[static_cast<std::size_t>(page - 1)]);
    const std::string out = At("scan_Page_" + std::to_string(page) + ".tif");
    engine.Save(out);
    EXPECT_EQ(CodedPieces(path, static_cast<std::uint16_t>(page - 1)), CodedPieces(out, 0));
    PictureDocument again;
    ASSERT_TRUE(again.Load(out)) << again.LastLoadError();
    EXPECT_TRUE(SamePicture(engine.Current(), again.Current()));
    EXPECT_EQ(1, again.PageValue());
  }
}

TEST_F(Samples, EachIsReadInItsDepthAndSavedInEveryFormat) {
  struct Case {
    const char* name;
    std::int32_t page;
    Expected expected;
  };
  for (const Case& sample :
       {Case{"letter.tif", 4, {1, 850, 1100, 100, 100}}, Case{"letter.tif", 5, {1, 640, 1500, 203, 203}},
        Case{"grey.jpg", 1, {8, 532, 752, 150, 150}}, Case{"colour.jpg", 1, {24, 480, 360, 96, 96}}}) {
    SCOPED_TRACE(sample.name);
    ASSERT_TRUE(engine.Load(Sample(sample.name))) << engine.LastLoadError();
    engine.SelectPage(sample.page);
    ExpectPage(sample.expected);
    ExpectSavedInEveryFormat();
  }
}

// A bitmap of 4 bits per pixel: rows from the bottom, each with half a byte too many and three bytes of padding.
TEST_F(Samples, BitmapOfSixteenColoursIsReadAndSavedInEveryFormat) {
  constexpr std::uint32_t width = 9;
  constexpr std::uint32_t height = 7;
  constexpr std::size_t rowBytes = 8;
  constexpr std::uint32_t colours = 16;
  constexpr std::uint32_t pixels = 14 + 40 + colours * 4;
  Bytes file{'B', 'M'};
  const auto append = [&file](std::uint32_t value, unsigned size) {
    for (unsigned i = 0; i < size; ++i) file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  };
  append(pixels + rowBytes * height, 4);
  append(0, 4);
  append(pixels, 4);
  for (const std::uint32_t value : {40U, width, height}) append(value, 4);
  append(1, 2);
  append(4, 2);
  for (const std::uint32_t value : {0U, 0U, 3780U, 3780U, colours, 0U}) append(value, 4);
  for (std::uint32_t colour = 0; colour < colours; ++colour) append(0xFFFFFF - colour * 0x0F0D0B, 4);
  for (std::uint32_t row = 0; row < height; ++row) {
    for (std::uint32_t at = 0; at < rowBytes; ++at) {
      const std::uint32_t left = (2 * at + row) % colours;
      const std::uint32_t right = (2 * at + 1 + row) % colours;
      append(at < 5 ? left << 4U | right : 0, 1);
    }
  }
  ASSERT_TRUE(engine.Load(Put("palette.bmp", file))) << engine.LastLoadError();
  ExpectPage({4, width, height, 3780 * 0.0254, 3780 * 0.0254});
  // The bottom row counts the colours from 0 on, each row above it from the next one on.
  EXPECT_EQ((Rgb{255, 255, 255}), engine.Current().PixelAt(0, height - 1));
  EXPECT_EQ((Rgb{255 - 2 * 0x0F, 255 - 2 * 0x0D, 255 - 2 * 0x0B}), engine.Current().PixelAt(2, height - 1));
  EXPECT_EQ((Rgb{255 - 3 * 0x0F, 255 - 3 * 0x0D, 255 - 3 * 0x0B}), engine.Current().PixelAt(2, height - 2));
  EXPECT_EQ((Rgb{255 - 8 * 0x0F, 255 - 8 * 0x0D, 255 - 8 * 0x0B}), engine.Current().PixelAt(8, height - 1));
  ExpectSavedInEveryFormat();
}

}  // namespace
}  // namespace kw
