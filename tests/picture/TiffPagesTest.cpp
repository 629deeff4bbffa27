#include <tuple>

#include "picture/PictureDocument.h"
#include "tests/picture/Scratch.h"
#include "tests/picture/TiffMaker.h"

namespace kw {
namespace {

class TiffPages : public ScratchTest, public testing::WithParamInterface<const char*> {
protected:
  static constexpr int PageTotal = 7;
  static constexpr std::int32_t WidthOf(int page) { return 100 + page * 16; }

  // Pages of different sizes, most of them of several strips. The parameter is how the library opens its file: byte
  // order and whether it is a BigTIFF.
  void MakeDocument() const {
    TiffMaker maker(path, GetParam());
    for (int page = 1; page <= PageTotal; ++page) {
      maker.Set(TIFFTAG_PAGENUMBER, page - 1, PageTotal);
      maker.Set(TIFFTAG_IMAGEDESCRIPTION, ("page " + std::to_string(page)).c_str());
      maker.FaxPageOf(PageOf(page), COMPRESSION_CCITTFAX4, page == 1 ? 80 : 32);
    }
  }
  static Bitmap PageOf(int page) { return FaxPage(WidthOf(page), 80, static_cast<unsigned>(page)); }

  std::string path = At("document.tif");
  PictureDocument engine;
};

TEST_P(TiffPages, CountsSelectsAndShowsEachPage) {
  MakeDocument();
  ASSERT_TRUE(engine.Load(path)) << engine.LastLoadError();
  ASSERT_EQ(PageTotal, engine.PageCount());
  EXPECT_TRUE(SamePicture(PageOf(1), engine.Current())) << "the first page is selected";
  for (const int page : {7, 2, 5, 1, 1, 3, 4, 6}) {
    engine.SelectPage(page);
    EXPECT_EQ(WidthOf(page), engine.Width());
    EXPECT_EQ(80, engine.Height());
    EXPECT_EQ(1, engine.PageValue());
    EXPECT_TRUE(SamePicture(PageOf(page), engine.Current())) << "page " << page;
  }
}

TEST_P(TiffPages, SplittingKeepsCodedBytesAndTagsOfEachPage) {
  MakeDocument();
  const Bytes before = BytesOf(path);
  ASSERT_TRUE(engine.Load(path)) << engine.LastLoadError();
  for (int page = PageTotal; page >= 1; --page) {
    engine.SelectPage(page);
    const std::string out = At("document_Page_" + std::to_string(page) + ".tif");
    engine.Save(out);
    const auto pieces = CodedPieces(out, 0);
    ASSERT_EQ(page == 1 ? 1U : 3U, pieces.size());
    EXPECT_EQ(CodedPieces(path, static_cast<std::uint16_t>(page - 1)), pieces);
    const Bytes head = BytesOf(out);
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + 4, head.begin())) << "byte order or kind of file changed";

    TIFF* codec = TIFFOpen(out.c_str(), "r");
    ASSERT_NE(nullptr, codec);
    EXPECT_EQ(1, TIFFNumberOfDirectories(codec));
    const char* description = nullptr;
    ASSERT_EQ(1, TIFFGetField(codec, TIFFTAG_IMAGEDESCRIPTION, &description));
    EXPECT_EQ("page " + std::to_string(page), description);
    float resolution = 0;
    EXPECT_EQ(1, TIFFGetField(codec, TIFFTAG_XRESOLUTION, &resolution));
    EXPECT_EQ(300.0F, resolution);
    TIFFClose(codec);

    PictureDocument again;
    ASSERT_TRUE(again.Load(out)) << again.LastLoadError();
    EXPECT_EQ(1, again.PageCount());
    EXPECT_TRUE(SamePicture(PageOf(page), again.Current()));
  }
  EXPECT_EQ(before, BytesOf(path)) << "the document itself was changed";
}

TEST_P(TiffPages, PageWhosePixelsWereSeenIsStillCopiedAsItIs) {
  MakeDocument();
  ASSERT_TRUE(engine.Load(path));
  engine.SelectPage(2);
  EXPECT_EQ(WidthOf(2), engine.Width());
  engine.Save(At("out.tif"));
  EXPECT_EQ(CodedPieces(path, 1), CodedPieces(At("out.tif"), 0));
}

INSTANTIATE_TEST_SUITE_P(KindsOfFile, TiffPages, testing::Values("wl", "wb", "wl8", "wb8"));

class Engine : public ScratchTest {
protected:
  std::string MakeTwoPages() const {
    std::string path = At("two.tif");
    TiffMaker maker(path);
    maker.FaxPageOf(FaxPage(64, 40, 1), COMPRESSION_CCITTFAX4, 40);
    maker.FaxPageOf(FaxPage(96, 40, 2), COMPRESSION_CCITTFAX4, 40);
    return path;
  }
  PictureDocument engine;
};

TEST_F(Engine, HoldsNothingAtFirst) {
  EXPECT_EQ(0, engine.PageCount());
  EXPECT_EQ(0, engine.Width());
  EXPECT_EQ(0, engine.Height());
  EXPECT_EQ(0, engine.BitsPerPixel());
  EXPECT_EQ(0, engine.PageValue());
  EXPECT_TRUE(engine.Current().IsEmpty());
  EXPECT_EQ(NumberOf(ErrorNumber::ObjectVariableNotSet), ErrorOf([&] { engine.Save(At("a.tif")); }));
  EXPECT_EQ(NumberOf(ErrorNumber::ObjectVariableNotSet), ErrorOf([&] { engine.PrepareSignature(); }));
  EXPECT_EQ(NumberOf(ErrorNumber::SubscriptOutOfRange), ErrorOf([&] { engine.SelectPage(1); }));
  std::int16_t bits = 8;
  engine.ConvertToBitsPerPixel(bits);
  EXPECT_EQ(0, engine.BitsPerPixel());
}

TEST_F(Engine, PageOutOfRangeIsRefusedAndTheSelectionStays) {
  ASSERT_TRUE(engine.Load(MakeTwoPages()));
  engine.SelectPage(2);
  for (const std::int32_t page : {0, -1, 3, 32768, INT32_MAX, INT32_MIN}) {
    EXPECT_EQ(NumberOf(ErrorNumber::SubscriptOutOfRange), ErrorOf([&] { engine.SelectPage(page); })) << page;
  }
  EXPECT_EQ(96, engine.Width());
}

TEST_F(Engine, FailedLoadEmptiesIt) {
  ASSERT_TRUE(engine.Load(MakeTwoPages()));
  EXPECT_EQ("", engine.LastLoadError());
  EXPECT_FALSE(engine.Load(At("missing.tif")));
  EXPECT_NE("", engine.LastLoadError());
  EXPECT_EQ(0, engine.PageCount());
  EXPECT_EQ(0, engine.Width());
  EXPECT_TRUE(engine.Load(MakeTwoPages())) << "it takes the next file";
  EXPECT_EQ("", engine.LastLoadError());
}

TEST_F(Engine, LoadingDecodesNoPageOfADocument) {
  // The second page's pixels are damaged; only who asks for them meets that.
  const std::string path = MakeTwoPages();
  TIFF* codec = TIFFOpen(path.c_str(), "r+");
  ASSERT_NE(nullptr, codec);
  ASSERT_EQ(1, TIFFSetDirectory(codec, 1));
  TIFFSetField(codec, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
  ASSERT_EQ(1, TIFFRewriteDirectory(codec));
  TIFFClose(codec);

  ASSERT_TRUE(engine.Load(path)) << engine.LastLoadError();
  ASSERT_EQ(2, engine.PageCount());
  engine.SelectPage(2);
  EXPECT_EQ(1, engine.PageValue());
  engine.Save(At("copy.tif"));
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { engine.Current(); }));
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { engine.Save(At("page.bmp")); }));
  EXPECT_FALSE(std::filesystem::exists(folder / "page.bmp"));
  engine.SelectPage(1);
  EXPECT_TRUE(SamePicture(FaxPage(64, 40, 1), engine.Current()));
  EXPECT_FALSE(engine.Load(At("copy.tif"))) << "the page of a one-page file is decoded at once";
}

TEST_F(Engine, DocumentThatChangedGivesNoMorePages) {
  const std::string path = MakeTwoPages();
  ASSERT_TRUE(engine.Load(path));
  Put("two.tif", {'n', 'o', 't', ' ', 'i', 't'});
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { engine.SelectPage(2); }));
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { engine.Save(At("out.tif")); }));
  EXPECT_FALSE(std::filesystem::exists(folder / "out.tif"));
}

TEST_F(Engine, PictureOutlivesItsFile) {
  const std::string path = At("one.tif");
  TiffMaker(path).FaxPageOf(FaxPage(64, 40), COMPRESSION_CCITTFAX4, 40);
  ASSERT_TRUE(engine.Load(path));
  std::filesystem::remove(ToFilesystemPath(path));
  EXPECT_TRUE(SamePicture(FaxPage(64, 40), engine.Current()));
  engine.Save(At("again.tif"));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At("again.tif"))) << again.LastLoadError();
  EXPECT_TRUE(SamePicture(FaxPage(64, 40), again.Current()));
}

TEST_F(Engine, LoadedFileCanBeSavedOverItself) {
  const std::string path = At("one.tif");
  TiffMaker(path).FaxPageOf(FaxPage(64, 40), COMPRESSION_CCITTFAX4, 40);
  ASSERT_TRUE(engine.Load(path));
  engine.Save(path);
  engine.Save(path);
  PictureDocument again;
  ASSERT_TRUE(again.Load(path)) << again.LastLoadError();
  EXPECT_TRUE(SamePicture(FaxPage(64, 40), again.Current()));
}

TEST_F(Engine, PageSavedOverItsDocumentIsTheOnlyPageLeft) {
  const std::string path = MakeTwoPages();
  ASSERT_TRUE(engine.Load(path));
  engine.SelectPage(2);
  engine.Save(At(".") + "/two.tif");
  EXPECT_EQ(1, engine.PageCount());
  EXPECT_TRUE(SamePicture(FaxPage(96, 40, 2), engine.Current()));
  PictureDocument again;
  ASSERT_TRUE(again.Load(path)) << again.LastLoadError();
  EXPECT_EQ(1, again.PageCount());
  EXPECT_TRUE(SamePicture(FaxPage(96, 40, 2), again.Current()));
}

TEST_F(Engine, ReplacedPictureIsOnePageOfItsOwn) {
  ASSERT_TRUE(engine.Load(MakeTwoPages()));
  engine.Replace(Noise(10, 10, 8));
  EXPECT_EQ(1, engine.PageCount());
  EXPECT_EQ(8, engine.PageValue());
  engine.SelectPage(1);
  EXPECT_EQ(10, engine.Width());
  engine.Save(At("out.tif"));
  PictureDocument again;
  ASSERT_TRUE(again.Load(At("out.tif")));
  EXPECT_TRUE(SamePicture(Noise(10, 10, 8), again.Current()));
}

TEST_F(Engine, FaxPageStaysFaxCodedAndSmallWhenItIsCodedAnew) {
  ASSERT_TRUE(engine.Load(MakeTwoPages()));
  engine.Replace(FaxPage(1600, 2200));
  engine.Save(At("fax.tif"));
  TIFF* codec = TIFFOpen(At("fax.tif").c_str(), "r");
  ASSERT_NE(nullptr, codec);
  std::uint16_t compression = 0;
  EXPECT_EQ(1, TIFFGetField(codec, TIFFTAG_COMPRESSION, &compression));
  TIFFClose(codec);
  EXPECT_EQ(COMPRESSION_CCITTFAX4, compression);
  EXPECT_LT(BytesOf(At("fax.tif")).size(), 1600U * 2200 / 8 / 2);
}

TEST_F(Engine, OldJpegPointersAreNeverCopied) {
  // A page whose coding points into its file has to be decoded and coded anew; one that cannot be is refused.
  Bytes file{'I', 'I', 42, 0, 8, 0, 0, 0, 6, 0};
  const auto entry = [&file](unsigned tag, unsigned type, std::uint32_t value) {
    for (const std::uint32_t part : {tag, type})
      file.insert(file.end(), {static_cast<std::uint8_t>(part), static_cast<std::uint8_t>(part >> 8U)});
    file.insert(file.end(), {1, 0, 0, 0});
    for (unsigned i = 0; i < 4; ++i) file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  };
  entry(256, 3, 8);
  entry(257, 3, 8);
  entry(259, 3, 6);
  entry(273, 4, 8);
  entry(279, 4, 4);
  entry(513, 4, 8);
  file.insert(file.end(), {0, 0, 0, 0});
  EXPECT_FALSE(engine.Load(Put("old.tif", file)));
  EXPECT_NE("", engine.LastLoadError());
}

}  // namespace
}  // namespace kw
