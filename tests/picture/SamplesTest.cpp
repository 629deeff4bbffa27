#include <cstdlib>

#include "picture/KWPicEd.h"
#include "picture/Scratch.h"
#include "picture/TiffMaker.h"

namespace kw {
namespace {

// Real scans and photographs, where the machine has them.
class Samples : public ScratchTest {
protected:
  void SetUp() override {
    const char* place = std::getenv("KW_SAMPLES");
    if (place == nullptr || !std::filesystem::exists(std::filesystem::path(place) / "scanned-5-pages.tif")) {
      GTEST_SKIP() << "no sample files (KW_SAMPLES)";
    }
    samples = place;
  }
  std::string Sample(const char* name) const { return (samples / name).string(); }

  std::filesystem::path samples;
  KWPicEd engine;
};

TEST_F(Samples, ScannedDocumentIsSplitWithoutLoss) {
  const std::string path = Sample("scanned-5-pages.tif");
  ASSERT_TRUE(engine.Load(path)) << engine.LastLoadError();
  ASSERT_EQ(5, engine.PageCount());
  for (std::int32_t page = 5; page >= 1; --page) {
    engine.SelectPage(page);
    const std::string out = At("scan_Page_" + std::to_string(page) + ".tif");
    engine.Save(out);
    EXPECT_EQ(CodedPieces(path, static_cast<std::uint16_t>(page - 1)), CodedPieces(out, 0));
    KWPicEd again;
    ASSERT_TRUE(again.Load(out)) << again.LastLoadError();
    EXPECT_TRUE(SamePicture(engine.Current(), again.Current()));
    EXPECT_EQ(1, again.PageValue());
  }
  EXPECT_EQ(2528, engine.Width());
  EXPECT_EQ(3300, engine.Height());
  EXPECT_NEAR(300, engine.Current().HorizontalResolution(), 0.01);
}

TEST_F(Samples, EachIsReadInItsDepthAndSavedInEveryFormat) {
  struct Case {
    const char* name;
    int depth;
    std::int32_t width;
    std::int32_t height;
  };
  for (const Case& sample : {Case{"scanned-page.tif", 1, 2528, 3300}, Case{"gray-page.jpg", 8, 532, 939},
                             Case{"colour-photo.jpg", 24, 1041, 908}, Case{"background.jpg", 24, 296, 191},
                             Case{"palette-4bpp.bmp", 4, 82, 73}}) {
    SCOPED_TRACE(sample.name);
    ASSERT_TRUE(engine.Load(Sample(sample.name))) << engine.LastLoadError();
    EXPECT_EQ(sample.depth, engine.BitsPerPixel());
    EXPECT_EQ(sample.width, engine.Width());
    EXPECT_EQ(sample.height, engine.Height());
    for (const char* extension : {"tif", "bmp", "gif", "jpg"}) {
      const std::string out = At(std::string("out.") + extension);
      engine.Save(out);
      KWPicEd again;
      ASSERT_TRUE(again.Load(out)) << again.LastLoadError();
      EXPECT_EQ(sample.width, again.Width());
      EXPECT_EQ(sample.height, again.Height());
      if (std::string(extension) == "tif" || std::string(extension) == "bmp") {
        EXPECT_TRUE(SamePicture(engine.Current(), again.Current())) << extension;
      }
    }
  }
}

}  // namespace
}  // namespace kw
