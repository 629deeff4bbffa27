#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include "picture/formats/JpegIntervals.h"
#include "tests/picture/ThreadsTest.h"

namespace kw {
namespace {

constexpr JDIMENSION RestartWidth = 203;
constexpr JDIMENSION RestartHeight = 601;

struct RestartKind {
  // Of the first component, across and down.
  int across = 1;
  int down = 1;
  // Units or, if 0, rows of them.
  unsigned units = 0;
  int rows = 1;
  J_COLOR_SPACE space = JCS_YCbCr;
  bool progressive = false;
};

void PrintTo(const RestartKind& kind, std::ostream* to) {
  *to << kind.across << " x " << kind.down << ", " << kind.units << " units, " << kind.rows << " rows, space "
      << kind.space;
}

Bytes RestartJpegOf(const RestartKind& kind) {
  jpeg_compress_struct codec{};
  jpeg_error_mgr errors{};
  codec.err = jpeg_std_error(&errors);
  jpeg_create_compress(&codec);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&codec, &data, &size);
  codec.image_width = RestartWidth;
  codec.image_height = RestartHeight;
  const int channels = kind.space == JCS_GRAYSCALE ? 1 : kind.space == JCS_CMYK ? 4 : 3;
  codec.input_components = channels;
  codec.in_color_space = kind.space == JCS_YCbCr ? JCS_RGB : kind.space;
  jpeg_set_defaults(&codec);
  jpeg_set_colorspace(&codec, kind.space);
  jpeg_set_quality(&codec, 85, TRUE);
  codec.comp_info[0].h_samp_factor = kind.across;
  codec.comp_info[0].v_samp_factor = kind.down;
  codec.restart_interval = kind.units;
  codec.restart_in_rows = kind.units == 0 ? kind.rows : 0;
  if (kind.progressive) jpeg_simple_progression(&codec);
  jpeg_start_compress(&codec, TRUE);
  std::mt19937 random(3);
  Bytes row(std::size_t{RestartWidth} * static_cast<unsigned>(channels));
  for (JDIMENSION y = 0; y < RestartHeight; ++y) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      row[i] = static_cast<std::uint8_t>(i % 7 * 30 + std::size_t{y} / 5 * 11 + random() % 40);
    }
    JSAMPROW line = row.data();
    jpeg_write_scanlines(&codec, &line, 1);
  }
  jpeg_finish_compress(&codec);
  jpeg_destroy_compress(&codec);
  Bytes bytes(data, data + size);
  std::free(data);
  return bytes;
}

// Where the restart markers lie, and at last the end.
std::vector<std::size_t> RestartsOf(const Bytes& jpeg) {
  constexpr Bytes::value_type scan[]{0xFF, 0xDA};
  const auto begin = std::search(jpeg.begin(), jpeg.end(), std::begin(scan), std::end(scan)) - jpeg.begin();
  std::vector<std::size_t> places;
  for (auto i = static_cast<std::size_t>(begin) + 2; i + 1 < jpeg.size(); ++i) {
    if (jpeg[i] == 0xFF && jpeg[i + 1] >= JPEG_RST0 && jpeg[i + 1] <= JPEG_EOI) places.push_back(i);
  }
  return places;
}

class JpegIntervals : public ThreadsTest {
protected:
  testing::AssertionResult IsReadByThreads(const Bytes& bytes, ReadOutcome* outcome = nullptr) {
    return IsReadTheSame(bytes, {2, 3}, outcome);
  }
};

class JpegIntervalKinds : public JpegIntervals, public testing::WithParamInterface<RestartKind> {};

TEST_P(JpegIntervalKinds, SeveralThreadsDecodeWhatOneDecodes) {
  const Bytes jpeg = RestartJpegOf(GetParam());
  ReadOutcome plain;
  EXPECT_TRUE(IsReadByThreads(jpeg, &plain));
  ASSERT_TRUE(plain.isRead) << plain.error;
  EXPECT_EQ("", plain.warning);

  SetMostThreads(2);
  MemoryReader file(jpeg);
  const auto decoder = std::make_unique<JpegDecoder>(file);
  const auto& codec = decoder->ReadHeader();
  const std::uint64_t place = file.Position();
  Bitmap page(RestartWidth, RestartHeight, decoder->Depth());
  EXPECT_TRUE(ReadIntervalsByThreads(file, codec, page));
  EXPECT_EQ(place, file.Position());
  page.SetPalette({plain.picture.Palette().begin(), plain.picture.Palette().end()});
  EXPECT_TRUE(SamePicture(plain.picture, page));
}

TEST_P(JpegIntervalKinds, DamageIsToldAsByOneThread) {
  const Bytes good = RestartJpegOf(GetParam());
  const auto markers = RestartsOf(good);
  ASSERT_GT(markers.size(), 4U);
  const std::size_t first = markers[0] - 20;
  std::mt19937 random(11);
  for (int round = 0; round < 40; ++round) {
    Bytes bad = good;
    const std::size_t marker = markers[random() % (markers.size() - 1)];
    switch (round % 8) {
      case 0:  // another number
        bad[marker + 1] = static_cast<std::uint8_t>(JPEG_RST0 + random() % 8);
        break;
      case 1:  // no marker
        bad.erase(bad.begin() + static_cast<std::ptrdiff_t>(marker),
                  bad.begin() + static_cast<std::ptrdiff_t>(marker) + 2);
        break;
      case 2:  // one too many
        bad.insert(bad.begin() + static_cast<std::ptrdiff_t>(marker),
                   good.begin() + static_cast<std::ptrdiff_t>(marker),
                   good.begin() + static_cast<std::ptrdiff_t>(marker) + 2);
        break;
      case 3:  // codes between the last code of an interval and its marker
        bad.insert(bad.begin() + static_cast<std::ptrdiff_t>(marker), 1 + random() % 9, std::uint8_t{0x55});
        break;
      case 4:  // an interval that ends too early
        bad.erase(bad.begin() + static_cast<std::ptrdiff_t>(marker) - 3,
                  bad.begin() + static_cast<std::ptrdiff_t>(marker));
        break;
      case 5:  // the file ends
        bad.resize(first + random() % (bad.size() - first));
        break;
      case 6:  // the end is missing, or is another marker
        bad[bad.size() - 1] = round % 16 < 8 ? 0 : 0xDC;
        break;
      default:
        bad[first + random() % (bad.size() - first)] = static_cast<std::uint8_t>(random());
    }
    EXPECT_TRUE(IsReadByThreads(bad)) << "round " << round;
  }
}

INSTANTIATE_TEST_SUITE_P(All, JpegIntervalKinds,
                         testing::Values(RestartKind{}, RestartKind{1, 1, 0, 3}, RestartKind{2, 2},
                                         RestartKind{2, 2, 0, 2}, RestartKind{2, 1}, RestartKind{1, 2},
                                         RestartKind{2, 2, 3}, RestartKind{1, 1, 4},
                                         RestartKind{1, 1, 0, 1, JCS_GRAYSCALE}, RestartKind{1, 1, 0, 1, JCS_CMYK},
                                         RestartKind{1, 1, 0, 1, JCS_RGB}));

// What cannot be cut, or would not gain, is decoded in the plain way.
TEST_F(JpegIntervals, OthersAreDecodedByOneThread) {
  SetMostThreads(4);
  const auto isShared = [](const Bytes& jpeg) {
    MemoryReader file(jpeg);
    const auto decoder = std::make_unique<JpegDecoder>(file);
    const auto& codec = decoder->ReadHeader();
    Bitmap page(RestartWidth, RestartHeight, decoder->Depth());
    return ReadIntervalsByThreads(file, codec, page);
  };
  EXPECT_TRUE(isShared(RestartJpegOf({})));
  EXPECT_FALSE(isShared(RestartJpegOf({.rows = 0})));
  EXPECT_FALSE(isShared(RestartJpegOf({.rows = 100})));
  EXPECT_FALSE(isShared(RestartJpegOf({.units = 1000})));
  EXPECT_FALSE(isShared(RestartJpegOf({.progressive = true})));
  // Comments that each thread would have to hold.
  Bytes large = RestartJpegOf({});
  Bytes comment(65537);
  comment[0] = 0xFF;
  comment[1] = JPEG_COM;
  comment[2] = comment[3] = 0xFF;
  large.insert(large.begin() + 2, comment.begin(), comment.end());
  EXPECT_TRUE(isShared(large));
  for (int i = 0; i < 16; ++i) large.insert(large.begin() + 2, comment.begin(), comment.end());
  EXPECT_FALSE(isShared(large));
  SetMostThreads(1);
  EXPECT_FALSE(isShared(RestartJpegOf({})));
}

TEST_F(JpegIntervals, HeaderCutOrChangedAnywhere) {
  const Bytes good = RestartJpegOf({.across = 2, .down = 2});
  const std::size_t header = RestartsOf(good)[0] - 100;
  std::mt19937 random(2);
  for (std::size_t i = 2; i < header; i += 11) {
    Bytes bad = good;
    bad[i] = static_cast<std::uint8_t>(random());
    EXPECT_TRUE(IsReadByThreads(bad)) << i;
  }
}

}  // namespace
}  // namespace kw
