#include <tuple>

#include "tests/picture/StripThreads.h"

namespace kw {
namespace {

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

}  // namespace
}  // namespace kw
