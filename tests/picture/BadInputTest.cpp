#include <array>
#include <cstring>

#ifdef _WIN32
#include <share.h>
#endif

#include "picture/Depth.h"
#include "picture/PictureDocument.h"
#include "picture/formats/Formats.h"
#include "tests/picture/Scratch.h"
#include "tests/picture/TiffMaker.h"

namespace kw {
namespace {

class BadInput : public ScratchTest {
protected:
  // A failed load says why and leaves the engine empty but usable.
  void ExpectRefused(const std::string& path) {
    EXPECT_FALSE(engine.Load(path)) << path;
    EXPECT_NE("", engine.LastLoadError());
    EXPECT_EQ(0, engine.PageCount());
    EXPECT_TRUE(engine.Current().IsEmpty());
  }
  void ExpectRefused(const char* what, const Bytes& bytes) {
    SCOPED_TRACE(what);
    ExpectRefused(Put("bad", bytes));
  }
  PictureDocument engine;
};

TEST_F(BadInput, PathsThatNameNoReadableFile) {
  ExpectRefused(At("missing.tif"));
  ExpectRefused(At("no/such/folder/page.tif"));
  ExpectRefused(folder.string());
  ExpectRefused("");
  ExpectRefused(std::string("a\0b.tif", 7));
  ExpectRefused("\xff\xfe.tif");
  ExpectRefused(std::string(40000, 'x'));
  ExpectRefused(At("pa?ge*.tif"));
}

#ifdef _WIN32
TEST_F(BadInput, FileThatAnotherProgramLocked) {
  const std::string path = Put("locked.bmp", Bytes(100, 'B'));
  std::FILE* holder = _wfsopen(ToFilesystemPath(path).c_str(), L"rb", _SH_DENYRW);
  ASSERT_NE(nullptr, holder);
  ExpectRefused(path);
  std::fclose(holder);
}
#endif

TEST_F(BadInput, FilesThatAreNoPictures) {
  ExpectRefused("empty", {});
  ExpectRefused("one byte", {'B'});
  ExpectRefused("text", {'B', 'M', ' ', 'i', 's', ' ', 'n', 'o', ' ', 'p', 'i',
                         'c', 't', 'u', 'r', 'e', ',', ' ', 'b', 'u', 't'});
  ExpectRefused("zeros", Bytes(5000));
  ExpectRefused("only a mark: BMP", {'B', 'M'});
  ExpectRefused("only a mark: GIF", {'G', 'I', 'F', '8', '9', 'a'});
  ExpectRefused("only a mark: JPEG", {0xFF, 0xD8, 0xFF, 0xE0});
  ExpectRefused("only a mark: TIFF", {'I', 'I', 42, 0});
  ExpectRefused("no directory", {'I', 'I', 42, 0, 0, 0, 0, 0});
  ExpectRefused("directory outside the file", {'I', 'I', 42, 0, 0xFF, 0xFF, 0xFF, 0xFF});
  ExpectRefused("big directory outside the file",
                {'M', 'M', 0, 43, 0, 8, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF});
}

void Patch(Bytes& bytes, std::size_t at, std::uint64_t value, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

Bytes Written(const PictureFormat& format, const Bitmap& picture) {
  MemoryStream stream;
  format.write(picture, stream, {});
  return stream.bytes;
}

TEST_F(BadInput, BitmapsWithImpossibleHeaders) {
  const Bytes good = Written(BmpFormat, Noise(20, 20, 8));
  struct Change {
    const char* what;
    std::size_t at;
    std::uint64_t value;
    std::size_t size;
  };
  constexpr std::array changes{
      Change{"no width", 18, 0, 4},
      Change{"negative width", 18, 0xFFFFFFEC, 4},
      Change{"no height", 22, 0, 4},
      Change{"smallest height", 22, 0x80000000, 4},
      Change{"wider than memory", 18, 0x7FFFFFFF, 4},
      Change{"larger than memory", 22, 0x7FFFFFFF, 4},
      Change{"3 bits per pixel", 28, 3, 2},
      Change{"0 bits per pixel", 28, 0, 2},
      Change{"unknown compression", 30, 9, 4},
      Change{"JPEG inside", 30, 4, 4},
      Change{"RLE4 of 8 bits", 30, 2, 4},
      Change{"pixels outside the file", 10, 0xFFFFFFFF, 4},
      Change{"header of 13 bytes, cut", 14, 0xFFFF, 4},
      Change{"header too short", 14, 11, 4},
  };
  for (const Change& change : changes) {
    Bytes bad = good;
    Patch(bad, change.at, change.value, change.size);
    ExpectRefused(change.what, bad);
  }
}

TEST_F(BadInput, BitmapPaletteThatClaimsTooMuchIsCutToWhatThereCanBe) {
  Bytes bytes = Written(BmpFormat, Noise(20, 20, 4));
  Patch(bytes, 46, 0xFFFFFFFF, 4);
  ASSERT_TRUE(engine.Load(Put("a.bmp", bytes))) << engine.LastLoadError();
  EXPECT_TRUE(SamePicture(Noise(20, 20, 4), engine.Current()));
}

TEST_F(BadInput, SizesBeyondTheMemoryForAPage) {
  // Each claims far more pixels than its few bytes hold.
  Bytes gif = Written(GifFormat, Noise(8, 8, 8));
  Patch(gif, 6, 0xFFFF, 2);
  Patch(gif, 8, 0xFFFF, 2);
  ExpectRefused("GIF", gif);

  Bytes jpeg = Written(JpegFormat, Noise(8, 8, 24));
  const std::array<std::uint8_t, 2> startOfFrame{0xFF, 0xC0};
  const auto frame = std::search(jpeg.begin(), jpeg.end(), startOfFrame.begin(), startOfFrame.end());
  ASSERT_NE(jpeg.end(), frame);
  for (std::ptrdiff_t i = 5; i < 9; ++i) frame[i] = 0xFF;
  ExpectRefused("JPEG", jpeg);

  for (const std::uint32_t side : {100000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    const std::string path = At("huge.tif");
    {
      TiffMaker maker(path);
      maker.Page(8, 8, 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4, 8);
      for (std::uint32_t y = 0; y < 8; ++y) maker.Line(y, {0});
      maker.EndPage();
    }
    TIFF* codec = TIFFOpen(path.c_str(), "r+");
    ASSERT_NE(nullptr, codec);
    TIFFSetField(codec, TIFFTAG_IMAGEWIDTH, side);
    TIFFSetField(codec, TIFFTAG_IMAGELENGTH, side);
    ASSERT_EQ(1, TIFFRewriteDirectory(codec));
    TIFFClose(codec);
    SCOPED_TRACE(side);
    ExpectRefused(path);
  }
}

// A directory at 8 of the given entries, followed by the given link to the next.
Bytes TiffOf(const std::vector<std::array<std::uint32_t, 4>>& entries, std::uint32_t next) {
  Bytes file{'I', 'I', 42, 0, 8, 0, 0, 0};
  const auto append = [&file](std::uint32_t value, unsigned size) {
    for (unsigned i = 0; i < size; ++i) file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  };
  append(static_cast<std::uint32_t>(entries.size()), 2);
  for (const auto& [tag, type, count, value] : entries) {
    append(tag, 2);
    append(type, 2);
    append(count, 4);
    append(value, 4);
  }
  append(next, 4);
  return file;
}

TEST_F(BadInput, TiffDirectoriesThatRunInACircleOrOutOfTheFile) {
  const std::array<std::uint32_t, 4> width{256, 3, 1, 8};
  const std::array<std::uint32_t, 4> height{257, 3, 1, 8};
  ExpectRefused("to itself", TiffOf({width, height}, 8));
  Bytes circle = TiffOf({width, height}, 40);
  circle.resize(40);
  const Bytes second = TiffOf({width, height}, 8);
  circle.insert(circle.end(), second.begin() + 8, second.end());
  ExpectRefused("from the second to the first", circle);
  EXPECT_EQ("The pages of the TIFF file run in a circle.", engine.LastLoadError());
  ExpectRefused("out of the file", TiffOf({width, height}, 5000));
  ExpectRefused("no entries", TiffOf({}, 0));
  ExpectRefused("no size", TiffOf({width}, 0));
  ExpectRefused("no pixels", TiffOf({width, height}, 0));
}

TEST_F(BadInput, PaletteIndicesBehindThePaletteAreBlack) {
  Bitmap picture(4, 1, 8);
  picture.SetPalette({{255, 255, 255}, {9, 8, 7}});
  const auto row = picture.MutableRow(0);
  row[1] = 1;
  row[2] = 2;
  row[3] = 255;
  ASSERT_TRUE(engine.Load(Put("short palette", Written(BmpFormat, picture)))) << engine.LastLoadError();
  EXPECT_EQ((Rgb{9, 8, 7}), engine.Current().PixelAt(1, 0));
  EXPECT_EQ(Rgb{}, engine.Current().PixelAt(2, 0));
  EXPECT_EQ(Rgb{}, engine.Current().PixelAt(3, 0));
  for (const int depth : {1, 4, 24, 32}) EXPECT_FALSE(ToDepth(engine.Current(), depth).IsEmpty());
}

TEST_F(BadInput, MemoryForAPageIsAnOptionOfTheEngine) {
  const std::string path = Put("page.bmp", Written(BmpFormat, Noise(100, 100, 24)));
  EXPECT_EQ(std::uint64_t{1} << (sizeof(void*) == 4 ? 28U : 30U), engine.GetOptions().reading.pageMemory);
  engine.GetOptions().reading.pageMemory = 20000;
  ExpectRefused(path);
  EXPECT_EQ("The picture is too large: 100 x 100 pixels.", engine.LastLoadError());
  engine.GetOptions().reading.pageMemory = 40000;
  EXPECT_TRUE(engine.Load(path)) << engine.LastLoadError();
}

TEST_F(BadInput, TiffValuesThatClaimMoreThanTheFileHolds) {
  const std::array<std::uint32_t, 4> width{256, 3, 1, 8};
  const std::array<std::uint32_t, 4> height{257, 3, 1, 8};
  const std::array<std::uint32_t, 4> uncoded{259, 3, 1, 1};
  const std::array<std::uint32_t, 4> grey{262, 3, 1, 1};
  ExpectRefused("strip outside", TiffOf({width, height, uncoded, grey, {273, 4, 1, 5000}, {279, 4, 1, 8}}, 0));
  ExpectRefused("strip that begins inside and ends outside",
                TiffOf({width, height, uncoded, grey, {273, 4, 1, 84}, {279, 4, 1, 8}}, 0));
  ExpectRefused("millions of strips",
                TiffOf({width, height, uncoded, grey, {273, 4, 0x7FFFFFFF, 8}, {279, 4, 0x7FFFFFFF, 8}}, 0));
  ExpectRefused("values behind the end",
                TiffOf({width, height, uncoded, grey, {273, 4, 2, 0xFFFFFFF0}, {279, 4, 2, 8}}, 0));
  ExpectRefused(
      "too many samples",
      TiffOf({width, height, {258, 3, 1, 8}, {277, 3, 1, 65535}, uncoded, grey, {273, 4, 1, 8}, {279, 4, 1, 64}}, 0));
  ExpectRefused("no bits", TiffOf({width, height, {258, 3, 1, 0}, uncoded, grey, {273, 4, 1, 8}, {279, 4, 1, 64}}, 0));
  ExpectRefused(
      "tiles of no size",
      TiffOf({width, height, {322, 3, 1, 0}, {323, 3, 1, 0}, uncoded, grey, {324, 4, 1, 8}, {325, 4, 1, 64}}, 0));
  ExpectRefused("tiles beyond memory", TiffOf({width,
                                               height,
                                               {322, 4, 1, 0x7FFFFFF0},
                                               {323, 4, 1, 0x7FFFFFF0},
                                               uncoded,
                                               grey,
                                               {324, 4, 1, 8},
                                               {325, 4, 1, 64}},
                                              0));
}

TEST_F(BadInput, StripsThatShareBytesAreNotCopiedIntoALargeFile) {
  // Eight rows that all lie in the same bytes, and say that each is the whole file long.
  Bytes file = TiffOf({{256, 3, 1, 8},
                       {257, 3, 1, 8},
                       {259, 3, 1, 1},
                       {262, 3, 1, 1},
                       {273, 4, 8, 120},
                       {278, 3, 1, 1},
                       {279, 4, 8, 152}},
                      0);
  file.resize(120);
  for (int i = 0; i < 8; ++i) file.insert(file.end(), {8, 0, 0, 0});
  for (int i = 0; i < 8; ++i) file.insert(file.end(), {150, 0, 0, 0});
  const std::string path = Put("shared.tif", file);
  if (!engine.Load(path)) return;
  engine.Save(At("out.tif"));
  EXPECT_LT(BytesOf(At("out.tif")).size(), file.size() * 4);
}

struct Small {
  const char* name;
  Bytes bytes;
};

std::vector<Small> SmallFiles() {
  std::vector<Small> files;
  const Bitmap fax = FaxPage(40, 40);
  files.push_back({"BMP of 1 bit", Written(BmpFormat, fax)});
  files.push_back({"BMP of 8 bits", Written(BmpFormat, Noise(11, 9, 8))});
  files.push_back({"BMP of 32 bits", Written(BmpFormat, Noise(11, 9, 32))});
  Bytes runs = Written(BmpFormat, Noise(4, 2, 8));
  Patch(runs, 30, 1, 4);
  runs.resize(14 + 40 + 1024);
  runs.insert(runs.end(), {4, 7, 0, 0, 0, 4, 1, 2, 3, 4, 0, 1});
  files.push_back({"BMP of runs", runs});
  files.push_back({"GIF", Written(GifFormat, Noise(13, 11, 8))});
  files.push_back({"GIF of 1 bit", Written(GifFormat, fax)});
  files.push_back({"JPEG", Written(JpegFormat, Noise(24, 16, 24))});
  files.push_back({"grey JPEG", Written(JpegFormat, Noise(24, 16, 8, false))});
  files.push_back({"TIFF G4", Written(TiffFormat, fax)});
  files.push_back({"TIFF LZW", Written(TiffFormat, Noise(13, 11, 24))});
  files.push_back({"TIFF with palette", Written(TiffFormat, Noise(13, 11, 4))});
  return files;
}

bool SameRow(const Bitmap& a, const Bitmap& b, std::int32_t y) {
  for (std::int32_t x = 0; x < a.Width(); ++x) {
    if (a.PixelAt(x, y) != b.PixelAt(x, y)) return false;
  }
  return true;
}

// As light as paper can be in this palette.
bool IsPaper(const Bitmap& picture, std::int32_t y) {
  std::uint8_t lightest = picture.Palette().empty() ? 255 : 0;
  for (const Rgb& entry : picture.Palette()) lightest = std::max(lightest, Luma(entry));
  for (std::int32_t x = 0; x < picture.Width(); ++x) {
    if (Luma(picture.PixelAt(x, y)) != lightest) return false;
  }
  return true;
}

// Every row is as in the whole picture or empty; how many are as there.
std::int32_t RecoveredRows(const Bitmap& whole, const Bitmap& recovered) {
  EXPECT_EQ(whole.Width(), recovered.Width());
  EXPECT_EQ(whole.Height(), recovered.Height());
  if (whole.Width() != recovered.Width() || whole.Height() != recovered.Height()) return 0;
  std::int32_t rows = 0;
  for (std::int32_t y = 0; y < whole.Height(); ++y) {
    if (SameRow(whole, recovered, y))
      ++rows;
    else
      EXPECT_TRUE(IsPaper(recovered, y)) << "row " << y;
  }
  return rows;
}

TEST_F(BadInput, FileCutShortAnywhereIsRefusedRecoveredWithAWarningOrStillWhole) {
  for (const Small& small : SmallFiles()) {
    SCOPED_TRACE(small.name);
    ASSERT_TRUE(engine.Load(Put("whole", small.bytes))) << engine.LastLoadError();
    const Bitmap whole = engine.Current();
    std::size_t stillWhole = 0;
    std::int32_t rows = 0;
    for (std::size_t length = 0; length < small.bytes.size(); ++length) {
      const bool loaded =
          engine.Load(Put("cut", {small.bytes.begin(), small.bytes.begin() + static_cast<std::ptrdiff_t>(length)}));
      if (!loaded) {
        EXPECT_NE("", engine.LastLoadError());
        continue;
      }
      SCOPED_TRACE("cut to " + std::to_string(length) + " of " + std::to_string(small.bytes.size()));
      if (engine.Warning().empty()) {
        ++stillWhole;
        EXPECT_TRUE(SamePicture(whole, engine.Current()));
        continue;
      }
      const std::int32_t before = std::exchange(rows, RecoveredRows(whole, engine.Current()));
      EXPECT_GE(rows, 1);
      EXPECT_GE(rows, before) << "more of the file, more of the picture";
    }
    // Only end marks, padding and the resolution may be missing.
    EXPECT_LE(stillWhole, 16U);
  }
}

TEST_F(BadInput, FileWithAnyByteChangedDoesNotBreakAnything) {
  for (const Small& small : SmallFiles()) {
    SCOPED_TRACE(small.name);
    for (std::size_t at = 0; at < small.bytes.size(); ++at) {
      for (const unsigned change : {0x01U, 0x80U, 0xFFU}) {
        Bytes bytes = small.bytes;
        bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ change);
        MemoryStream stream(std::move(bytes));
        const PictureFormat* format =
            FormatOfContent({stream.bytes.data(), std::min<std::size_t>(stream.bytes.size(), RecognisedBytes)});
        if (format == nullptr) continue;
        try {
          const auto source = format->open(stream, {std::uint64_t{1} << 18U});
          source->RequireSoundCodes(stream);
          source->Header(stream, 1);
          for (std::int32_t page = 1; page <= source->PageCount(); ++page) {
            std::string warning;
            EXPECT_FALSE(source->Read(stream, page, warning).IsEmpty());
            MemoryStream copy;
            source->Copy(stream, page, copy);
          }
        } catch (const RunTimeError& error) {
          EXPECT_NE("", error.Description());
        }
      }
    }
  }
}

TEST_F(BadInput, LimitOfPageMemoryHolds) {
  for (const Small& small : SmallFiles()) {
    SCOPED_TRACE(small.name);
    MemoryStream stream(small.bytes);
    const PictureFormat* format = FormatOfContent({small.bytes.data(), RecognisedBytes});
    ASSERT_NE(nullptr, format);
    EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { format->open(stream, {63})->Header(stream, 1); }));
  }
}

}  // namespace
}  // namespace kw
