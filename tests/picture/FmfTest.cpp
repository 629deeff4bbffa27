#include <array>
#include <climits>

#include "picture/PictureDocument.h"
#include "picture/formats/Formats.h"
#include "tests/picture/TiffMaker.h"

namespace kw {
namespace {

constexpr std::uint32_t VersionTag = 65100;
// A directory begins with the number of its entries.
constexpr std::size_t CountBytes = 2;

class Fmf : public ScratchTest {
protected:
  // A document of these pages.
  std::string Document(const std::vector<Bitmap>& pages, const std::string& name = "document.fmf") {
    std::string path = At(name);
    for (const Bitmap& page : pages) {
      PictureDocument maker;
      maker.Replace(page);
      maker.Append(path);
    }
    return path;
  }
  void ExpectPages(const std::string& path, const std::vector<Bitmap>& pages) {
    ASSERT_TRUE(engine.Load(path)) << engine.LastLoadError();
    ASSERT_EQ(static_cast<std::int32_t>(pages.size()), engine.PageCount());
    for (std::int32_t page = engine.PageCount(); page >= 1; --page) {
      engine.SelectPage(page);
      EXPECT_TRUE(SamePicture(pages[static_cast<std::size_t>(page - 1)], engine.Current())) << "page " << page;
      EXPECT_EQ("", engine.Warning());
    }
  }
  PictureDocument engine;
};

const std::vector<Bitmap>& SomePages() {
  static const std::vector<Bitmap> pages{FaxPage(100, 60), Noise(33, 21, 24), Noise(17, 40, 8),
                                         Noise(9, 9, 4),   Noise(40, 8, 32),  FaxPage(64, 64, 2)};
  return pages;
}

TEST_F(Fmf, HoldsPagesOfEveryDepthWithoutLoss) { ExpectPages(Document(SomePages()), SomePages()); }

TEST_F(Fmf, SavedPageIsADocumentOfOnePage) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    Bitmap picture = Noise(31, 17, depth);
    picture.SetResolution(300, 200);
    engine.Replace(picture);
    engine.Save(At("one.fmf"));
    ExpectPages(At("one.fmf"), {picture});
    EXPECT_EQ(depth, engine.PageValue());
    EXPECT_NEAR(300, engine.Current().HorizontalResolution(), 0.01);
    EXPECT_NEAR(200, engine.Current().VerticalResolution(), 0.01);
  }
}

TEST_F(Fmf, AnyTiffReaderOpensIt) {
  const std::string path = Document(SomePages());
  TIFF* codec = TIFFOpen(path.c_str(), "r");
  ASSERT_NE(nullptr, codec);
  EXPECT_EQ(SomePages().size(), TIFFNumberOfDirectories(codec));
  for (const Bitmap& page : SomePages()) {
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(page.Width() * page.Height()));
    ASSERT_EQ(
        1, TIFFReadRGBAImageOriented(codec, static_cast<std::uint32_t>(page.Width()),
                                     static_cast<std::uint32_t>(page.Height()), pixels.data(), ORIENTATION_TOPLEFT, 1));
    for (std::int32_t y = 0; y < page.Height() && page.BitsPerPixel() != 32; ++y) {
      for (std::int32_t x = 0; x < page.Width(); ++x) {
        const std::uint32_t pixel =
            pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(page.Width()) + static_cast<std::size_t>(x)];
        ASSERT_EQ((Rgb{static_cast<std::uint8_t>(TIFFGetR(pixel)), static_cast<std::uint8_t>(TIFFGetG(pixel)),
                       static_cast<std::uint8_t>(TIFFGetB(pixel))}),
                  page.PixelAt(x, y));
      }
    }
    TIFFReadDirectory(codec);
  }
  TIFFClose(codec);
}

TEST_F(Fmf, IsTakenForATiffWithoutItsSignatureAndForFmfUnderAnyName) {
  const Bytes bytes = BytesOf(Document(SomePages()));
  EXPECT_EQ(&FmfFormat, FormatOfContent({bytes.data(), RecognisedBytes}));
  Bytes other = bytes;
  other[8] = 'X';
  EXPECT_EQ(&TiffFormat, FormatOfContent({other.data(), RecognisedBytes}));
  ExpectPages(Put("renamed.tif", bytes), SomePages());
  ExpectPages(Put("other.fmf", other), SomePages());
}

// The file with another number in the version tag of its first page.
Bytes OfVersion(Bytes bytes, std::uint8_t version) {
  const std::array<std::uint8_t, 8> entry{VersionTag & 0xFF, VersionTag >> 8, 3, 0, 2, 0, 0, 0};
  const auto found = std::search(bytes.begin(), bytes.end(), entry.begin(), entry.end());
  EXPECT_NE(bytes.end(), found);
  if (found != bytes.end()) found[entry.size()] = version;
  return bytes;
}

TEST_F(Fmf, VersionIsInAPrivateTagOfEachPageAndALaterOneIsRefused) {
  const std::string path = Document(SomePages());
  TIFF* codec = TIFFOpen(path.c_str(), "r");
  ASSERT_NE(nullptr, codec);
  for (std::size_t page = 0; page < SomePages().size(); ++page) {
    ASSERT_EQ(1, TIFFSetDirectory(codec, static_cast<std::uint16_t>(page)));
    std::uint32_t count = 0;
    std::uint16_t* version = nullptr;
    ASSERT_EQ(1, TIFFGetField(codec, VersionTag, &count, &version)) << page;
    ASSERT_EQ(2U, count);
    EXPECT_EQ(1, version[0]);
    EXPECT_EQ(0, version[1]);
  }
  TIFFClose(codec);

  EXPECT_TRUE(engine.Load(Put("same.fmf", OfVersion(BytesOf(path), 1)))) << engine.LastLoadError();
  EXPECT_FALSE(engine.Load(Put("later.fmf", OfVersion(BytesOf(path), 2))));
  EXPECT_EQ("The FMF file is of version 2; this program knows version 1.", engine.LastLoadError());
  EXPECT_FALSE(engine.Load(Put("none.fmf", OfVersion(BytesOf(path), 0))));
}

TEST_F(Fmf, UnchangedPageIsSavedAndAppendedWithItsCodedPixels) {
  const std::string path = Document(SomePages());
  ASSERT_TRUE(engine.Load(path));
  engine.SelectPage(2);
  engine.Save(At("two.fmf"));
  engine.Append(At("other.fmf"));
  engine.Append(At("pages.tif"));
  EXPECT_EQ(CodedPieces(path, 1), CodedPieces(At("two.fmf"), 0));
  EXPECT_EQ(CodedPieces(path, 1), CodedPieces(At("other.fmf"), 0));
  EXPECT_EQ(CodedPieces(path, 1), CodedPieces(At("pages.tif"), 0));
}

TEST_F(Fmf, TakesOverPagesOfAnyTiff) {
  // Either byte order, offsets of 32 and 64 bits; the second page's pixels have no byte order, the third page's have.
  for (const char* mode : {"wl", "wb", "wl8", "wb8"}) {
    SCOPED_TRACE(mode);
    const std::string path = At(std::string(mode) + ".tif");
    {
      TiffMaker maker(path, mode);
      maker.FaxPageOf(FaxPage(96, 70), COMPRESSION_CCITTFAX4, 16);
      maker.Page(5, 3, 8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW, 1);
      for (std::uint32_t y = 0; y < 3; ++y) maker.Line(y, Bytes(15, static_cast<std::uint8_t>(40 * y + 7)));
      maker.EndPage();
      maker.Page(4, 1, 16, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE, 1);
      maker.Line(0, {0, 0, 0xFF, 0x7F, 0, 0x80, 0xFF, 0xFF});
      maker.EndPage();
    }
    const std::string document = At(std::string(mode) + ".fmf");
    std::vector<Bitmap> pages;
    ASSERT_TRUE(engine.Load(path)) << engine.LastLoadError();
    for (std::int32_t page = 1; page <= 3; ++page) {
      engine.SelectPage(page);
      engine.Append(document);
      pages.push_back(engine.Current());
    }
    EXPECT_EQ(CodedPieces(path, 0), CodedPieces(document, 0));
    EXPECT_EQ(CodedPieces(path, 1), CodedPieces(document, 1));
    ExpectPages(document, pages);
  }
}

TEST_F(Fmf, DocumentIsAppendedToItself) {
  const std::string path = Document({FaxPage(64, 40), Noise(20, 20, 8)});
  ASSERT_TRUE(engine.Load(path));
  engine.Append(path);
  EXPECT_TRUE(SamePicture(FaxPage(64, 40), engine.Current()));
  ExpectPages(path, {FaxPage(64, 40), Noise(20, 20, 8), FaxPage(64, 40)});
}

TEST_F(Fmf, OnlyDocumentsOfSeveralPagesAreAppendedTo) {
  engine.Replace(Noise(8, 8, 24));
  for (const char* name : {"page.bmp", "page.gif", "page.jpg", "page", "page.doc"}) {
    EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), ErrorOf([&] { engine.Append(At(name)); })) << name;
  }
  const Bytes text{'n', 'o', ' ', 'p', 'i', 'c', 't', 'u', 'r', 'e'};
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { engine.Append(Put("text.fmf", text)); }));
  EXPECT_EQ(text, BytesOf(At("text.fmf")));
  EXPECT_EQ(NumberOf(ErrorNumber::PathNotFound), ErrorOf([&] { engine.Append(At("no/folder/page.fmf")); }));
  EXPECT_EQ(NumberOf(ErrorNumber::ObjectVariableNotSet), ErrorOf([&] { PictureDocument().Append(At("none.fmf")); }));
  EXPECT_EQ((std::vector<std::string>{"text.fmf"}), Names());
}

// A file on a machine that stops after so many bytes were written: later ones are lost. The link of four bytes lies in
// one sector of the disk and is written whole or not at all.
class StoppingFile : public MemoryStream {
public:
  StoppingFile(Bytes contents, std::size_t bytesUntilThen) : MemoryStream(std::move(contents)), left(bytesUntilThen) {}

  std::size_t Write(const void* from, std::size_t count) noexcept override {
    const std::size_t part = std::min(count, left);
    left -= part;
    if (count == 4 && part != 4) return 0;
    // Each write that is not settled yet could come later than the next one.
    if (Position() < settledSize && !settled) linkedBeforeSettled = true;
    settled = false;
    return MemoryStream::Write(from, part);
  }
  bool Settle() noexcept override {
    settled = true;
    return left > 0;
  }

  std::size_t left;
  std::size_t settledSize = bytes.size();
  bool settled = false;
  bool linkedBeforeSettled = false;
};

TEST_F(Fmf, MachineThatStopsWhileAPageIsAppendedLeavesTheOldPagesAsTheyAre) {
  const std::vector<Bitmap> old{FaxPage(64, 40), Noise(12, 9, 8)};
  const Bitmap added = Noise(10, 7, 24);
  const Bytes before = BytesOf(Document(old));
  MemoryFile page;
  TiffFormat.write(added, page, {});
  StoppingFile whole(before, SIZE_MAX / 2);
  ASSERT_TRUE(FmfFormat.append(whole)->Append(page));
  EXPECT_FALSE(whole.linkedBeforeSettled) << "the page is on the disk before its link";
  const std::size_t written = SIZE_MAX / 2 - whole.left;
  ASSERT_GT(written, 200U);
  const auto source = FmfFormat.open(whole, {});
  ASSERT_EQ(3, source->PageCount());
  std::size_t changed = 0;
  for (std::size_t i = 0; i < before.size(); ++i) changed += before[i] != whole.bytes[i] ? 1U : 0U;
  EXPECT_LE(changed, 4U) << "nothing but the link";

  for (std::size_t stop = 0; stop < written; ++stop) {
    SCOPED_TRACE(stop);
    StoppingFile file(before, stop);
    EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { FmfFormat.append(file)->Append(page); }));
    ASSERT_TRUE(std::equal(before.begin(), before.end(), file.bytes.begin())) << "the old bytes";
    const std::string path = Put("stopped.fmf", file.bytes);
    if (stop % 16 == 0) ExpectPages(path, old);
    // The next attempt goes on behind what is left of this one.
    StoppingFile again(file.bytes, SIZE_MAX);
    ASSERT_TRUE(FmfFormat.append(again)->Append(page));
    if (stop % 16 == 0) ExpectPages(Put("again.fmf", again.bytes), {old[0], old[1], added});
  }
}

TEST_F(Fmf, FileThatLostItsEndBehindTheLinkedPagesKeepsThem) {
  const std::vector<Bitmap> old{FaxPage(64, 40), Noise(12, 9, 8)};
  const Bytes before = BytesOf(Document(old));
  Bytes after = before;
  after.insert(after.end(), 500, 0xEE);
  for (std::size_t length = before.size(); length <= after.size(); length += 50) {
    ExpectPages(Put("cut.fmf", {after.begin(), after.begin() + static_cast<std::ptrdiff_t>(length)}), old);
  }
}

// A file whose size cannot be told for a moment.
class SizelessFile : public MemoryStream {
public:
  SizelessFile(Bytes contents, int sizesUntilThen) : MemoryStream(std::move(contents)), left(sizesUntilThen) {}
  std::uint64_t Size() noexcept override { return left-- == 0 ? 0 : MemoryStream::Size(); }
  bool HasFailed() const noexcept override { return left < 0; }
  int left;
};

TEST_F(Fmf, DocumentWhoseSizeCannotBeToldIsNotTakenForAnEmptyOne) {
  const Bytes before = BytesOf(Document({FaxPage(64, 40), Noise(12, 9, 8)}));
  MemoryFile page;
  TiffFormat.write(Noise(10, 7, 24), page, {});
  SizelessFile whole(before, INT_MAX);
  ASSERT_TRUE(FmfFormat.append(whole)->Append(page));
  const int sizes = INT_MAX - whole.left;
  ASSERT_GE(sizes, 2);
  for (int until = 0; until < sizes; ++until) {
    SizelessFile file(before, until);
    EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { FmfFormat.append(file)->Append(page); })) << until;
    EXPECT_TRUE(std::equal(before.begin(), before.end(), file.bytes.begin())) << until;
  }
}

TEST_F(Fmf, LongPathOfADocumentIsAppendedTo) {
  const std::string path = LongFolder() + "/document.fmf";
  const std::vector<Bitmap> pages{FaxPage(64, 40), Noise(12, 9, 8), Noise(20, 20, 24)};
  for (const Bitmap& page : pages) {
    engine.Replace(page);
    engine.Append(path);
  }
  ExpectPages(path, pages);
  engine.Append(path);
  ExpectPages(path, {pages[0], pages[1], pages[2], pages[0]});
}

TEST_F(Fmf, LinksLieAtMultiplesOfTheirSize) {
  const Bytes bytes = BytesOf(Document(SomePages()));
  const auto number = [&bytes](std::size_t at, std::size_t size) {
    std::size_t value = 0;
    for (std::size_t i = size; i-- > 0;) value = value << 8U | bytes[at + i];
    return value;
  };
  std::size_t link = 4;
  std::size_t pages = 0;
  for (; number(link, 4) != 0; ++pages) {
    const std::size_t directory = number(link, 4);
    link = directory + CountBytes + number(directory, 2) * 12;
    EXPECT_EQ(0U, link % 4);
  }
  EXPECT_EQ(SomePages().size(), pages);
}

}  // namespace
}  // namespace kw
