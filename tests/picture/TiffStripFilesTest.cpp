// Files in strips that no usual writer makes, and files that are damaged or change while they are read.
#include <algorithm>
#include <array>
#include <vector>

#include "tests/picture/StripThreads.h"

namespace kw {
namespace {

// A page of levels of grey in strips of `rows` rows; of a mode of TIFFOpen.
void WriteGreyStrips(const std::string& path, int compression, std::uint32_t rows, const char* mode = "w") {
  TiffMaker maker(path, mode);
  maker.Page(StripWidth, StripHeight, 8, 1, PHOTOMETRIC_MINISBLACK, compression, rows);
  for (std::uint32_t y = 0; y < StripHeight; ++y) maker.Line(y, SoftSamples(y, StripWidth));
  maker.EndPage();
}

// The same page with other coded strips.
void RewriteStrips(const std::string& path, int compression, std::uint32_t rows, const std::vector<Bytes>& pieces,
                   Bytes jpegTables = {}) {
  TiffMaker maker(path);
  maker.Page(StripWidth, StripHeight, 8, 1, PHOTOMETRIC_MINISBLACK, compression, rows);
  if (!jpegTables.empty()) {
    maker.Set(TIFFTAG_JPEGTABLES, static_cast<std::uint32_t>(jpegTables.size()), jpegTables.data());
  }
  for (std::size_t i = 0; i < pieces.size(); ++i) maker.CodedStrip(static_cast<std::uint32_t>(i), pieces[i]);
  maker.EndPage();
}

// The differences of a plane are those of neighbours, however many planes there are.
TEST_F(StripThreads, DifferencesInManyPlanes) {
  constexpr std::uint16_t planes = 128;
  {
    TiffMaker maker(path);
    maker.Page(2, 1, 8, planes, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZW, 1);
    maker.Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_SEPARATE).Set(TIFFTAG_PREDICTOR, 2);
    for (std::uint16_t plane = 0; plane < planes; ++plane) maker.Line(0, {7, 9}, plane);
    maker.EndPage();
  }
  ReadOutcome outcome;
  EXPECT_TRUE(IsReadByThreads(BytesOf(path), &outcome));
  EXPECT_TRUE(outcome.isRead) << outcome.error;
}

// A file that another process gives a wider page once its header was read so many times.
class WideningFile : public MemoryReader {
public:
  WideningFile(Bytes contents, std::size_t placeOfWidth)
      : MemoryReader(contents), bytes(std::move(contents)), width(placeOfWidth) {}

  std::size_t Read(void* to, std::size_t count) noexcept override {
    constexpr std::uint64_t header = 4;
    const bool isOfHeader = Position() <= header && header < Position() + count;
    if (isOfHeader && left-- == 0) bytes[width + 1] = 8;
    return MemoryReader::Read(to, count);
  }
  void WidenAfter(unsigned headers) { left = static_cast<int>(headers); }
  bool IsWider() const { return bytes[width + 1] != 0; }

private:
  Bytes bytes;
  std::size_t width;
  int left = -1;
};

TEST_F(StripThreads, PageThatBecomesWiderMeanwhile) {
  {
    TiffMaker maker(path);
    maker.Page(StripWidth, StripHeight, 8, 3, PHOTOMETRIC_RGB, COMPRESSION_PACKBITS, 16);
    for (std::uint32_t y = 0; y < StripHeight; ++y) maker.Line(y, SoftSamples(y, std::size_t{3} * StripWidth));
    maker.EndPage();
  }
  const Bytes bytes = BytesOf(path);
  const Bytes entry{0, 1, 3, 0, 1, 0, 0, 0, StripWidth, 0};
  const auto at = std::search(bytes.begin(), bytes.end(), entry.begin(), entry.end());
  ASSERT_NE(at, bytes.end());
  const auto widthAt = static_cast<std::size_t>(at - bytes.begin()) + entry.size() - 2;
  const ReadOutcome plain = ReadByRows(bytes);
  const unsigned ofThePage = TimesRead(bytes, 1, HeaderByte, FewLimits);
  SetMostThreads(4);
  WideningFile file(bytes, widthAt);
  const auto source = TiffFormat.open(file, {std::uint64_t{1} << 30U});
  file.WidenAfter(ofThePage);
  std::string warning;
  const Bitmap picture = source->Read(file, 1, warning);
  EXPECT_TRUE(file.IsWider());
  EXPECT_EQ(plain.warning, warning);
  EXPECT_TRUE(SamePicture(plain.picture, picture));
}

// The file with another beginning of the strip that begins at `from`; empty if no number of `Size` bytes says that.
template <std::size_t Size>
Bytes WithPlace(Bytes file, std::uint64_t from, std::uint64_t to) {
  const auto number = [](std::uint64_t value) {
    std::array<std::uint8_t, Size> bytes{};
    for (std::size_t i = 0; i < Size; ++i) bytes[i] = static_cast<std::uint8_t>(value >> 8 * i);
    return bytes;
  };
  const auto place = number(from);
  const auto stated = std::find_end(file.begin(), file.end(), place.begin(), place.end());
  if (stated == file.end()) return {};
  std::ranges::copy(number(to), stated);
  return file;
}

TEST_F(StripThreads, FileThatEndsInTheMiddleOfAStrip) {
  constexpr std::uint32_t rows = 7;
  WriteGreyStrips(path, COMPRESSION_LZW, rows);
  const Bytes good = BytesOf(path);
  const Bytes piece = CodedPieces(path, 0).at(StripHeight / rows / 2);
  const auto at = std::search(good.begin(), good.end(), piece.begin(), piece.end()) - good.begin();
  for (const std::size_t begin : {good.size() - piece.size() / 2, good.size(), good.size() + 1000000000}) {
    const Bytes bad = WithPlace<4>(good, static_cast<std::uint64_t>(at), begin);
    ASSERT_FALSE(bad.empty());
    ReadOutcome outcome;
    EXPECT_TRUE(IsReadByThreads(bad, &outcome)) << begin;
    EXPECT_TRUE(outcome.isRead) << outcome.error;
    EXPECT_TRUE(outcome.warning.starts_with("7 of 97 rows of the page are not whole.")) << outcome.warning;
  }
}

// Its later rows would lie at the beginning of the file, if places were counted on from 0.
TEST_F(StripThreads, StripAtTheEndOfAllPlaces) {
  for (const int compression : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE}) {
    WriteGreyStrips(path, compression, StripHeight, "w8");
    const Bytes good = BytesOf(path);
    const Bytes piece = CodedPieces(path, 0).at(0);
    const auto at = std::search(good.begin(), good.end(), piece.begin(), piece.end()) - good.begin();
    for (const std::uint64_t before :
         {std::uint64_t{1}, std::uint64_t{StripWidth}, std::uint64_t{3} * StripWidth, std::uint64_t{1} << 63U}) {
      const Bytes bad = WithPlace<8>(good, static_cast<std::uint64_t>(at), 0 - before);
      ASSERT_FALSE(bad.empty());
      ReadOutcome outcome;
      EXPECT_TRUE(IsReadByThreads(bad, &outcome)) << before;
      EXPECT_TRUE(!outcome.isRead || outcome.warning.starts_with("97 of 97 rows")) << outcome.warning;
    }
  }
}

// A decoder keeps the tables of a strip for the next one.
TEST_F(StripThreads, TablesThatOneStripBringsCountForTheNext) {
  constexpr std::uint32_t rows = 16;
  WriteGreyStrips(path, COMPRESSION_JPEG, rows);
  auto pieces = CodedPieces(path, 0);
  Bytes tables;
  {
    TIFF* codec = TIFFOpen(path.c_str(), "r");
    std::uint32_t size = 0;
    const std::uint8_t* data = nullptr;
    ASSERT_EQ(1, TIFFGetField(codec, TIFFTAG_JPEGTABLES, &size, &data));
    tables.assign(data, data + size);
    TIFFClose(codec);
  }
  RewriteStrips(path, COMPRESSION_JPEG, rows, pieces, tables);
  ReadOutcome plain;
  EXPECT_TRUE(IsReadByThreads(BytesOf(path), &plain));

  Bytes quantizers{0xFF, 0xDB, 0, 67, 0};
  quantizers.resize(69, 40);
  pieces[1].insert(pieces[1].begin() + 2, quantizers.begin(), quantizers.end());
  RewriteStrips(path, COMPRESSION_JPEG, rows, pieces, tables);
  ReadOutcome changed;
  EXPECT_TRUE(IsReadByThreads(BytesOf(path), &changed));
  EXPECT_TRUE(changed.isRead);
  EXPECT_EQ("", changed.warning);
  const auto isChanged = [&](std::int32_t y) {
    return !std::ranges::equal(plain.picture.Row(y), changed.picture.Row(y));
  };
  EXPECT_FALSE(isChanged(0));
  EXPECT_TRUE(isChanged(static_cast<std::int32_t>(rows)));
  EXPECT_TRUE(isChanged(90));

  // Those behind the pixels, too.
  auto behind = CodedPieces(path, 0);
  behind[1] = pieces[0];
  behind[2].insert(behind[2].end() - 2, quantizers.begin(), quantizers.end());
  RewriteStrips(path, COMPRESSION_JPEG, rows, behind, tables);
  EXPECT_TRUE(IsReadByThreads(BytesOf(path)));
}

// Literals alone: codes of 9 bits, the lowest bit first in the old style.
Bytes LiteralLzw(const Bytes& values, bool old) {
  constexpr unsigned clear = 256;
  constexpr unsigned end = 257;
  std::vector<unsigned> codes{clear};
  codes.insert(codes.end(), values.begin(), values.end());
  codes.push_back(end);
  Bytes bytes(codes.size() * 9 / 8 + 1);
  for (std::size_t bit = 0; bit < codes.size() * 9; ++bit) {
    const unsigned code = codes[bit / 9];
    const auto place = static_cast<unsigned>(bit % 9);
    if ((code >> (old ? place : 8 - place) & 1U) == 0) continue;
    bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] | (old ? 1U << bit % 8 : 0x80U >> bit % 8));
  }
  return bytes;
}

// The library stays with the old style once it has met it.
TEST_F(StripThreads, StylesOfLzwCodesMayDiffer) {
  for (const std::uint32_t oldOnes : {0U, 1U, StripHeight / 2, StripHeight}) {
    std::vector<Bytes> pieces;
    for (std::uint32_t y = 0; y < StripHeight; ++y)
      pieces.push_back(LiteralLzw(SoftSamples(y, StripWidth), y < oldOnes));
    RewriteStrips(path, COMPRESSION_LZW, 1, pieces);
    ReadOutcome outcome;
    EXPECT_TRUE(IsReadByThreads(BytesOf(path), &outcome)) << oldOnes;
    EXPECT_TRUE(outcome.isRead) << outcome.error;
  }
}

// What a thread's handle needs is bounded as a page is: rows of any number of samples, of which a page keeps few.
TEST_F(StripThreads, HandlesThatNeedTooMuchMemoryAreNotMade) {
  constexpr std::uint32_t rows = 16;
  WriteGreyStrips(path, COMPRESSION_ZSTD, rows);
  const Bytes bytes = BytesOf(path);
  EXPECT_TRUE(HasHandlesOfThreads(bytes));
  EXPECT_FALSE(HasHandlesOfThreads(bytes, {std::uint64_t{64} << 20U}));
}

}  // namespace
}  // namespace kw
