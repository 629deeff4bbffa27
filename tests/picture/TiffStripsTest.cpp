#include <array>
#include <tuple>

#include "picture/formats/Formats.h"
#include "tests/picture/ThreadsTest.h"
#include "tests/picture/TiffMaker.h"
#include "tests/picture/WatchedFile.h"

namespace kw {
namespace {

class StripThreads : public ThreadsTest {
protected:
  // Whether one thread and several make of a file what the page's own handle makes of it row by row.
  testing::AssertionResult IsReadByThreads(const Bytes& bytes, ReadOutcome* outcome = nullptr) {
    ReadOutcome plain;
    const auto result = IsReadTheSame(bytes, {4}, &plain);
    if (outcome != nullptr) *outcome = plain;
    if (!result) return result;
    const ReadOutcome rows = ReadByRows(bytes);
    if (plain.isRead != rows.isRead || plain.warning != rows.warning) {
      return testing::AssertionFailure() << plain.error << plain.warning << " / by rows: " << rows.error
                                         << rows.warning;
    }
    return SamePicture(plain.picture, rows.picture) ? testing::AssertionSuccess()
                                                    : testing::AssertionFailure() << "other pixels by rows";
  }

  static ReadOutcome ReadByRows(const Bytes& bytes) {
    SetMostThreads(1);
    MemoryReader file(bytes);
    ReadOutcome outcome;
    try {
      outcome.picture = TiffFormat.open(file, FewLimits)->Read(file, 1, outcome.warning);
      outcome.isRead = true;
    } catch (const RunTimeError& error) {
      outcome.error = error.Description();
    }
    return outcome;
  }

  // How often the byte is read while the page is.
  static unsigned TimesRead(const Bytes& bytes, unsigned threads, std::size_t byte, const ReadLimits& limits = {}) {
    SetMostThreads(threads);
    WatchedFile file(bytes);
    const auto source = TiffFormat.open(file, limits);
    file.Watch();
    std::string warning;
    source->Read(file, 1, warning);
    return file.TimesRead(byte);
  }

  // Each handle reads the file's header. The threads' handles are more than the plain one. A page of 32 bits may be too
  // small for some of them, so the limits are those of 64 bits.
  static bool HasHandlesOfThreads(const Bytes& bytes, const ReadLimits& limits = {std::uint64_t{1} << 30U}) {
    return TimesRead(bytes, 4, HeaderByte, limits) > TimesRead(bytes, 1, HeaderByte, FewLimits);
  }

  static constexpr std::size_t HeaderByte = 4;
  // Too little memory for another handle.
  static constexpr ReadLimits FewLimits{std::uint64_t{2} << 20U};
  std::string path = At("page.tif");
};

constexpr std::uint32_t StripWidth = 61;
constexpr std::uint32_t StripHeight = 97;

// Soft colours, which JPEG keeps, with enough noise for codes of every length.
Bytes SoftSamples(std::uint32_t y, std::size_t size) {
  std::mt19937 random(y);
  Bytes line(size);
  for (std::size_t i = 0; i < size; ++i) line[i] = static_cast<std::uint8_t>(90 + i / 3 % 50 + y + random() % 4);
  return line;
}

struct StripKind {
  int bits;
  int samples;
  int photometric;
  int compression;
  int predictor = 0;
  int planar = PLANARCONFIG_CONTIG;
  int jpegTables = -1;
};

class StripKinds : public StripThreads, public testing::WithParamInterface<std::tuple<StripKind, int>> {
protected:
  void Write() {
    const auto& [kind, rows] = GetParam();
    TiffMaker maker(path);
    maker.Page(StripWidth, StripHeight, kind.bits, kind.samples, kind.photometric, kind.compression,
               static_cast<std::uint32_t>(rows));
    maker.Set(TIFFTAG_PLANARCONFIG, kind.planar);
    if (kind.predictor != 0) maker.Set(TIFFTAG_PREDICTOR, kind.predictor);
    if (kind.jpegTables >= 0) maker.Set(TIFFTAG_JPEGTABLESMODE, kind.jpegTables);
    if (kind.photometric == PHOTOMETRIC_YCBCR) maker.Set(TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    const int planes = kind.planar == PLANARCONFIG_SEPARATE ? kind.samples : 1;
    const std::size_t size =
        (std::size_t{StripWidth} * static_cast<unsigned>(kind.samples / planes * kind.bits) + 7) / 8;
    for (int plane = 0; plane < planes; ++plane) {
      for (std::uint32_t y = 0; y < StripHeight; ++y) {
        maker.Line(y, SoftSamples(y + static_cast<std::uint32_t>(plane), size), static_cast<std::uint16_t>(plane));
      }
    }
    maker.EndPage();
  }
};

void PrintTo(const StripKind& kind, std::ostream* to) {
  *to << "compression " << kind.compression << ", " << kind.samples << " x " << kind.bits << " bits";
}

TEST_P(StripKinds, SeveralThreadsReadWhatOneReads) {
  Write();
  const Bytes bytes = BytesOf(path);
  ReadOutcome outcome;
  EXPECT_TRUE(IsReadByThreads(bytes, &outcome));
  EXPECT_TRUE(outcome.isRead) << outcome.error;
  EXPECT_EQ("", outcome.warning);
  const int compression = std::get<0>(GetParam()).compression;
  EXPECT_TRUE(HasHandlesOfThreads(bytes));
  // No strip is decoded a second time in the plain way. Of JPEG, all tables are looked at before.
  const Bytes piece = CodedPieces(path, 0).back();
  const auto end = std::search(bytes.begin(), bytes.end(), piece.begin(), piece.end()) + std::ssize(piece) - 1;
  EXPECT_EQ(compression == COMPRESSION_JPEG ? 2U : 1U,
            TimesRead(bytes, 4, static_cast<std::size_t>(end - bytes.begin())));
}

// Any strip, cut short or with other bytes in it: what is lost and what is said about it does not change.
TEST_P(StripKinds, DamageIsToldAsByOneThread) {
  Write();
  const Bytes good = BytesOf(path);
  const auto pieces = CodedPieces(path, 0);
  std::mt19937 random(5);
  std::size_t damaged = 0;
  for (int round = 0; round < 12; ++round) {
    const Bytes& piece = pieces.at(round == 0 ? pieces.size() / 2 : random() % pieces.size());
    const auto place = std::search(good.begin(), good.end(), piece.begin(), piece.end());
    ASSERT_NE(good.end(), place);
    const auto first = static_cast<std::size_t>(place - good.begin());
    const std::size_t at = random() % piece.size();
    const std::size_t count =
        round % 3 == 0 ? piece.size() - at : std::min<std::size_t>(1 + random() % 4, piece.size() - at);
    Bytes bad = good;
    for (std::size_t i = at; i < at + count; ++i) {
      bad[first + i] = round % 3 == 0 ? std::uint8_t{0} : static_cast<std::uint8_t>(random());
    }
    ReadOutcome outcome;
    EXPECT_TRUE(IsReadByThreads(bad, &outcome)) << "round " << round;
    damaged += outcome.isRead && outcome.warning.empty() ? 0 : 1;
  }
  const int compression = std::get<0>(GetParam()).compression;
  if (compression == COMPRESSION_LZW || compression == COMPRESSION_ADOBE_DEFLATE) {
    EXPECT_GT(damaged, 0U);
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, StripKinds,
    testing::Combine(testing::Values(StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE},
                                     StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW, 2},
                                     StripKind{8, 4, PHOTOMETRIC_RGB, COMPRESSION_LZW},
                                     StripKind{16, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW, 2},
                                     StripKind{8, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_LZW},
                                     StripKind{4, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZW},
                                     StripKind{2, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZW},
                                     StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW, 0, PLANARCONFIG_SEPARATE},
                                     StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_ADOBE_DEFLATE, 2},
                                     StripKind{8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_DEFLATE},
                                     StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_PACKBITS},
                                     StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_ZSTD},
                                     StripKind{1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTRLE},
                                     StripKind{1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX3},
                                     StripKind{1, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_CCITTFAX4},
                                     StripKind{8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_JPEG},
                                     StripKind{8, 3, PHOTOMETRIC_YCBCR, COMPRESSION_JPEG},
                                     StripKind{8, 3, PHOTOMETRIC_YCBCR, COMPRESSION_JPEG, 0, PLANARCONFIG_CONTIG, 0},
                                     StripKind{8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_JPEG, 0, PLANARCONFIG_CONTIG,
                                               1},
                                     StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_JPEG, 0, PLANARCONFIG_SEPARATE}),
                     testing::Values(16, 48)));

// Whole strips are decoded apart from the page's own handle even if there is one only.
INSTANTIATE_TEST_SUITE_P(OneStrip, StripKinds,
                         testing::Combine(testing::Values(StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE},
                                                          StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW, 2},
                                                          StripKind{4, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZW},
                                                          StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_ADOBE_DEFLATE,
                                                                    2},
                                                          StripKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_ADOBE_DEFLATE},
                                                          StripKind{8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_DEFLATE}),
                                          testing::Values(static_cast<int>(StripHeight))));

// Strips of any number of rows, the last one shorter; JPEG takes multiples of its blocks only.
class StripRows : public StripThreads, public testing::WithParamInterface<std::tuple<int, int>> {};

TEST_P(StripRows, SeveralThreadsReadWhatOneReads) {
  const auto [compression, rows] = GetParam();
  const Bitmap page = FaxPage(203, 97);
  TiffMaker(path).FaxPageOf(page, compression, static_cast<std::uint32_t>(rows));
  ReadOutcome outcome;
  EXPECT_TRUE(IsReadByThreads(BytesOf(path), &outcome));
  EXPECT_TRUE(SamePicture(page, outcome.picture));
}

INSTANTIATE_TEST_SUITE_P(All, StripRows,
                         testing::Combine(testing::Values(COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4, COMPRESSION_LZW,
                                                          COMPRESSION_ADOBE_DEFLATE),
                                          testing::Values(1, 7, 49, 96)));

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
