// Pages that are not coded, and pages that are larger than the caches.

#include <algorithm>
#include <tuple>

#include "picture/formats/Formats.h"
#include "tests/picture/ThreadsTest.h"
#include "tests/picture/TiffMaker.h"

namespace kw {
namespace {

struct PlainKind {
  int bits;
  int samples;
  int photometric;
  int compression;
  int fillOrder = FILLORDER_MSB2LSB;
};

void PrintTo(const PlainKind& kind, std::ostream* to) {
  *to << "compression " << kind.compression << ", " << kind.samples << " x " << kind.bits << " bits, order "
      << kind.fillOrder;
}

// Rows that do not end with a vector of pixels.
constexpr std::uint32_t LargeWidth = 1501;
constexpr std::uint32_t LargeHeight = 1103;

// Samples of a row: noise, cut out of the same bytes at another place for each row.
Bytes NoiseOf(std::uint32_t y, std::size_t size) {
  static const Bytes all = [] {
    std::minstd_rand random(1);
    Bytes noise(std::size_t{LargeWidth} * 4 + LargeHeight);
    for (std::uint8_t& byte : noise) byte = static_cast<std::uint8_t>(random() >> 8U);
    return noise;
  }();
  const auto begin = all.begin() + static_cast<std::ptrdiff_t>(y);
  return {begin, begin + static_cast<std::ptrdiff_t>(size)};
}

std::uint8_t Reversed(std::uint8_t byte) {
  unsigned turned = 0;
  for (unsigned bit = 0; bit < 8; ++bit) turned = turned << 1U | (static_cast<unsigned>(byte) >> bit & 1U);
  return static_cast<std::uint8_t>(turned);
}

class PlainPages : public ThreadsTest, public testing::WithParamInterface<std::tuple<PlainKind, std::uint32_t>> {
protected:
  std::size_t LineSize() const {
    const PlainKind& kind = std::get<0>(GetParam());
    return (std::size_t{LargeWidth} * static_cast<unsigned>(kind.samples * kind.bits) + 7) / 8;
  }

  void Describe(TiffMaker& maker) const {
    const auto& [kind, rows] = GetParam();
    maker.Page(LargeWidth, LargeHeight, kind.bits, kind.samples, kind.photometric, kind.compression, rows);
    maker.Set(TIFFTAG_FILLORDER, kind.fillOrder);
    if (kind.samples == 4) {
      const std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
      maker.Set(TIFFTAG_EXTRASAMPLES, 1, &alpha);
    }
  }

  // The samples of a row, as the page keeps them.
  Bytes Expected(std::uint32_t y) const {
    const auto samples = static_cast<std::size_t>(std::get<0>(GetParam()).samples);
    Bytes line = NoiseOf(y, LineSize());
    for (std::size_t at = 0; samples > 1 && at < line.size(); at += samples) std::swap(line[at], line[at + 2]);
    return line;
  }

  testing::AssertionResult HasAllRows(const Bitmap& page) const {
    for (std::uint32_t y = 0; y < LargeHeight; ++y) {
      const auto row = page.Row(static_cast<std::int32_t>(y));
      const Bytes line = Expected(y);
      if (row.size() != line.size()) return testing::AssertionFailure() << "rows of " << row.size() << " bytes";
      // The bits behind the pixels may be anything.
      if (!std::equal(line.begin(), line.end() - 1, row.begin())) return testing::AssertionFailure() << "row " << y;
      if (LargeWidth * static_cast<unsigned>(page.BitsPerPixel()) % 8 == 0 && line.back() != row.back()) {
        return testing::AssertionFailure() << "end of row " << y;
      }
    }
    return testing::AssertionSuccess();
  }

  std::string path = At("page.tif");
};

TEST_P(PlainPages, KeepEachSample) {
  {
    TiffMaker maker(path);
    Describe(maker);
    for (std::uint32_t y = 0; y < LargeHeight; ++y) maker.Line(y, NoiseOf(y, LineSize()));
    maker.EndPage();
  }
  const ReadOutcome outcome = Read(BytesOf(path), 2);
  ASSERT_TRUE(outcome.isRead) << outcome.error;
  EXPECT_EQ("", outcome.warning);
  EXPECT_TRUE(HasAllRows(outcome.picture));
}

INSTANTIATE_TEST_SUITE_P(
    All, PlainPages,
    testing::Combine(testing::Values(PlainKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE},
                                     PlainKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE, FILLORDER_LSB2MSB},
                                     PlainKind{8, 4, PHOTOMETRIC_RGB, COMPRESSION_NONE},
                                     PlainKind{8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE},
                                     PlainKind{1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_NONE},
                                     PlainKind{1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_NONE, FILLORDER_LSB2MSB},
                                     PlainKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_PACKBITS}),
                     testing::Values(29U, LargeHeight)));

class ScatteredStrips : public PlainPages {
protected:
  static Bytes Coded(Bytes bytes) {
    if (std::get<0>(GetParam()).fillOrder == FILLORDER_LSB2MSB) {
      std::ranges::transform(bytes, bytes.begin(), Reversed);
    }
    return bytes;
  }

  // The strips lie in the file from the last one to the first one.
  void Write() {
    const std::uint32_t rows = std::get<1>(GetParam());
    const std::uint32_t strips = (LargeHeight + rows - 1) / rows;
    TiffMaker maker(path);
    Describe(maker);
    for (std::uint32_t strip = strips; strip-- > 0;) {
      Bytes bytes;
      for (std::uint32_t y = strip * rows; y < std::min((strip + 1) * rows, LargeHeight); ++y) {
        const Bytes line = NoiseOf(y, LineSize());
        bytes.insert(bytes.end(), line.begin(), line.end());
      }
      maker.CodedStrip(strip, Coded(std::move(bytes)));
    }
    maker.EndPage();
  }
};

TEST_P(ScatteredStrips, KeepEachSample) {
  Write();
  const ReadOutcome outcome = Read(BytesOf(path), 4);
  ASSERT_TRUE(outcome.isRead) << outcome.error;
  EXPECT_EQ("", outcome.warning);
  EXPECT_TRUE(HasAllRows(outcome.picture));
}

// The first strip, the last one of the file, ends behind the file's end: its rows are missed, and no others.
TEST_P(ScatteredStrips, StripBehindTheEndIsMissed) {
  Write();
  Bytes bytes = BytesOf(path);
  const std::uint32_t rows = std::get<1>(GetParam());
  const auto numberOf = [](std::size_t value) {
    return Bytes{static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8U),
                 static_cast<std::uint8_t>(value >> 16U), static_cast<std::uint8_t>(value >> 24U)};
  };
  const Bytes row = Coded(NoiseOf(0, LineSize()));
  const Bytes place = numberOf(
      static_cast<std::size_t>(std::search(bytes.begin(), bytes.end(), row.begin(), row.end()) - bytes.begin()));
  const auto stated = std::find_end(bytes.begin(), bytes.end(), place.begin(), place.end());
  ASSERT_NE(bytes.end(), stated);
  std::ranges::copy(numberOf(bytes.size() - LineSize() * rows / 2), stated);
  const ReadOutcome outcome = Read(bytes, 4);
  ASSERT_TRUE(outcome.isRead) << outcome.error;
  EXPECT_TRUE(outcome.warning.starts_with(std::to_string(rows) + " of 1103 rows of the page are not whole."))
      << outcome.warning;
}

INSTANTIATE_TEST_SUITE_P(All, ScatteredStrips,
                         testing::Combine(testing::Values(PlainKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE},
                                                          PlainKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE,
                                                                    FILLORDER_LSB2MSB},
                                                          PlainKind{8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE}),
                                          testing::Values(1U, 29U, 640U)));

using ShortStrips = PlainPages;

// What lies behind a strip is another one's. (If the first two differ in size, the library takes all sizes for wrong.)
TEST_P(ShortStrips, AreNotFilledFromTheNextOne) {
  const std::uint32_t rows = std::get<1>(GetParam());
  const std::uint32_t strips = (LargeHeight + rows - 1) / rows;
  {
    TiffMaker maker(path);
    Describe(maker);
    for (std::uint32_t strip = 0; strip < strips; ++strip) {
      Bytes bytes(LineSize() * std::min(rows, LargeHeight - strip * rows), 7);
      if (strip + 2 == strips) bytes.pop_back();
      maker.CodedStrip(strip, bytes);
    }
    maker.EndPage();
  }
  const ReadOutcome outcome = Read(BytesOf(path), 2);
  ASSERT_TRUE(outcome.isRead) << outcome.error;
  EXPECT_NE(outcome.warning.find(" of 1103 rows of the page "), std::string::npos) << outcome.warning;
}

INSTANTIATE_TEST_SUITE_P(All, ShortStrips,
                         testing::Combine(testing::Values(PlainKind{8, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE},
                                                          PlainKind{8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE}),
                                          testing::Values(1U, 29U, 640U)));

}  // namespace
}  // namespace kw
