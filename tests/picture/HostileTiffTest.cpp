#include <array>

#include "picture/PictureDocument.h"
#include "picture/formats/Formats.h"
#include "tests/picture/TiffMaker.h"
#include "tests/picture/WatchedFile.h"

namespace kw {
namespace {

using Entry = std::array<std::uint32_t, 4>;  // tag, type, count, value

void AppendBytes(Bytes& file, std::uint64_t value, unsigned size) {
  for (unsigned i = 0; i < size; ++i) file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

// A file of `shared` bytes at 8 and behind them directories of these entries.
Bytes DirectoriesOver(std::size_t shared, std::size_t count, const std::vector<Entry>& entries) {
  Bytes file{'I', 'I', 42, 0};
  AppendBytes(file, 8 + shared, 4);
  file.resize(8 + shared);
  for (std::size_t i = 0; i < count; ++i) {
    AppendBytes(file, entries.size(), 2);
    for (const Entry& entry : entries) {
      AppendBytes(file, entry[0], 2);
      AppendBytes(file, entry[1], 2);
      AppendBytes(file, entry[2], 4);
      AppendBytes(file, entry[3], 4);
    }
    AppendBytes(file, i + 1 == count ? 0 : file.size() + 4, 4);
  }
  return file;
}

// A page of 1 bit whose one strip is all of the `size` shared bytes.
std::vector<Entry> PageOver(std::uint32_t size) {
  return {{256, 4, 1, 800}, {257, 4, 1, size / 100}, {258, 3, 1, 1},          {259, 3, 1, 1},
          {262, 3, 1, 0},   {273, 4, 1, 8},          {278, 4, 1, size / 100}, {279, 4, 1, size}};
}

class HostileTiff : public ScratchTest {
protected:
  bool Loads(const Bytes& bytes) { return engine.Load(Put("hostile.tif", bytes)); }
  PictureDocument engine;
};

TEST_F(HostileTiff, PagesThatShareTheirPixelsAreRefused) {
  constexpr std::uint32_t size = 1000000;
  const Bytes bytes = DirectoriesOver(size, 1000, PageOver(size));
  EXPECT_FALSE(Loads(bytes));
  EXPECT_EQ("The TIFF file names the same bytes too often.", engine.LastLoadError());
  EXPECT_FALSE(Loads(DirectoriesOver(size, 5, PageOver(size))));
  EXPECT_TRUE(Loads(DirectoriesOver(size, 3, PageOver(size)))) << engine.LastLoadError();
  EXPECT_EQ(3, engine.PageCount());

  WatchedFile file(bytes);
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { TiffFormat.open(file, {}); }));
  EXPECT_LT(file.BytesRead(), 1000000U);
}

TEST_F(HostileTiff, PagesThatShareTheirValuesAreRefused) {
  constexpr std::uint32_t size = 1000000;
  std::vector<Entry> entries = PageOver(1000);
  entries.push_back({65000, 1, size, 8});
  EXPECT_TRUE(Loads(DirectoriesOver(size, 3, entries))) << engine.LastLoadError();
  EXPECT_FALSE(Loads(DirectoriesOver(size, 100, entries)));
}

TEST_F(HostileTiff, DirectoriesAreCountedWhileTheyAreFollowed) {
  const std::vector<Entry> tiny{{256, 3, 1, 8}};
  WatchedFile most(DirectoriesOver(0, MostPages, tiny));
  EXPECT_EQ(static_cast<std::int32_t>(MostPages), TiffFormat.open(most, {})->PageCount());
  WatchedFile more(DirectoriesOver(0, 4 * MostPages, tiny));
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { TiffFormat.open(more, {}); }));
  EXPECT_LT(more.Reads(), 3 * MostPages);
}

TEST_F(HostileTiff, NoPageMoreThanCanBeOpenedIsAppended) {
  MemoryFile document;
  document.WriteAll(DirectoriesOver(0, MostPages - 1, {{256, 3, 1, 8}}));
  MemoryFile page;
  TiffFormat.write(Noise(8, 8, 1), page, {});
  const auto appender = TiffFormat.append(document);
  EXPECT_TRUE(appender->Append(page));
  EXPECT_EQ(static_cast<std::int32_t>(MostPages), TiffFormat.open(document, {})->PageCount());
  const std::uint64_t size = document.Size();
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { appender->Append(page); }));
  const auto other = TiffFormat.append(document);
  EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture), ErrorOf([&] { other->Append(page); }));
  EXPECT_EQ(size, document.Size());
}

// `strips` strips that all begin at 8; without counts the codec library takes each to be as long as the file.
Bytes StripsOver(std::uint32_t shared, std::uint32_t strips, std::uint32_t compression, std::uint32_t countType) {
  Bytes file = DirectoriesOver(shared, 1, {});
  file.resize(8 + shared);
  const auto offsets = static_cast<std::uint32_t>(file.size());
  for (std::uint32_t i = 0; i < strips; ++i) AppendBytes(file, 8, 4);
  const auto counts = static_cast<std::uint32_t>(file.size());
  for (std::uint32_t i = 0; countType != 0 && i < strips; ++i) AppendBytes(file, shared, 4);
  std::vector<Entry> entries{{256, 4, 1, 8}, {257, 4, 1, strips},       {258, 3, 1, 1}, {259, 3, 1, compression},
                             {262, 3, 1, 0}, {273, 4, strips, offsets}, {278, 4, 1, 1}};
  if (countType != 0) entries.push_back({279, countType, strips, counts});
  const Bytes directory = DirectoriesOver(0, 1, entries);
  const std::size_t place = file.size();
  file.insert(file.end(), directory.begin() + 8, directory.end());
  for (unsigned i = 0; i < 4; ++i) file[4 + i] = static_cast<std::uint8_t>(place >> (8 * i));
  return file;
}

TEST_F(HostileTiff, StripsThatShareTheirBytesAreNotRead) {
  constexpr std::uint32_t none = 0;
  constexpr std::uint32_t usual = 4;
  constexpr std::uint32_t withSign = 9;  // which the codec library takes as well
  for (const std::uint32_t compression : {std::uint32_t{COMPRESSION_JBIG}, std::uint32_t{COMPRESSION_LZW},
                                          std::uint32_t{COMPRESSION_LZMA}, std::uint32_t{COMPRESSION_PACKBITS}}) {
    for (const std::uint32_t countType : {none, usual, withSign}) {
      SCOPED_TRACE(std::to_string(compression) + ", sizes of type " + std::to_string(countType));
      const Bytes bytes = StripsOver(200000, 10000, compression, countType);
      EXPECT_FALSE(Loads(bytes));
      WatchedFile file(bytes);
      std::string warning;
      EXPECT_EQ(NumberOf(ErrorNumber::InvalidPicture),
                ErrorOf([&] { TiffFormat.open(file, {})->Read(file, 1, warning); }));
      EXPECT_LT(file.BytesRead(), 4 * bytes.size());
    }
  }
}

std::uint32_t Crc32(std::span<const std::uint8_t> bytes) {
  std::uint32_t crc = 0xFFFFFFFF;
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int i = 0; i < 8; ++i) crc = crc >> 1U ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
  }
  return ~crc;
}

TEST_F(HostileTiff, DictionaryOfLzmaCountsAsMemoryOfThePage) {
  const std::string path = At("lzma.tif");
  {
    TiffMaker maker(path);
    maker.Page(64, 8, 8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZMA, 8);
    for (std::uint32_t y = 0; y < 8; ++y) maker.Line(y, Bytes(64, static_cast<std::uint8_t>(y)));
    maker.EndPage();
  }
  Bytes bytes = BytesOf(path);
  constexpr std::uint64_t pixels = 512;
  // The coder's usual dictionary is of 8 MiB.
  engine.GetOptions().reading.pageMemory = (std::uint64_t{8} << 20U) + pixels;
  EXPECT_TRUE(Loads(bytes)) << engine.LastLoadError();
  EXPECT_EQ((Rgb{7, 7, 7}), engine.Current().PixelAt(5, 7));
  --engine.GetOptions().reading.pageMemory;
  EXPECT_FALSE(Loads(bytes));

  // The largest that there is, 4 GiB.
  const Bytes mark{0xFD, '7', 'z', 'X', 'Z', 0};
  const auto stream = std::search(bytes.begin(), bytes.end(), mark.begin(), mark.end());
  ASSERT_NE(bytes.end(), stream);
  const auto block = stream + 12;
  const auto size = (std::ptrdiff_t{*block} + 1) * 4;
  const Bytes filter{0x21, 1};
  const auto dictionary = std::search(block, block + size, filter.begin(), filter.end());
  ASSERT_NE(block + size, dictionary);
  dictionary[2] = 40;
  const std::uint32_t crc = Crc32({&*block, static_cast<std::size_t>(size - 4)});
  for (unsigned i = 0; i < 4; ++i)
    *(block + size - 4 + static_cast<std::ptrdiff_t>(i)) = static_cast<std::uint8_t>(crc >> (8 * i));
  engine.GetOptions() = {};
  EXPECT_FALSE(Loads(bytes));
  EXPECT_EQ("The picture is too large: its coding needs too much memory.", engine.LastLoadError());
}

TEST_F(HostileTiff, PageThatIsTooLargeOnceItIsTurned) {
  const std::string path = At("turned.tif");
  constexpr std::uint32_t width = 1U << 20U;
  {
    TiffMaker maker(path);
    maker.Page(width, 1, 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4, 1).Set(TIFFTAG_ORIENTATION, 6);
    maker.Line(0, Bytes(width / 8));
    maker.EndPage();
  }
  engine.GetOptions().reading.pageMemory = width;
  EXPECT_FALSE(engine.Load(path));
  engine.GetOptions().reading.pageMemory = std::uint64_t{width} * 64;
  EXPECT_TRUE(engine.Load(path)) << engine.LastLoadError();
}

// The page and its upright copy are there at once.
TEST_F(HostileTiff, PageThatIsTooLargeTogetherWithItsUprightCopy) {
  const std::string path = At("turned.tif");
  {
    TiffMaker maker(path);
    maker.Page(1024, 1024, 8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_ADOBE_DEFLATE, 64).Set(TIFFTAG_ORIENTATION, 3);
    for (std::uint32_t y = 0; y < 1024; ++y) maker.Line(y, Bytes(1024));
    maker.EndPage();
  }
  constexpr std::uint64_t pixels = 1U << 20U;
  engine.GetOptions().reading.pageMemory = pixels + pixels / 4;
  EXPECT_FALSE(engine.Load(path));
  engine.GetOptions().reading.pageMemory = pixels + pixels / 2;
  EXPECT_TRUE(engine.Load(path)) << engine.LastLoadError();
}

// Tiles are to be multiples of 16 pixels wide; others need not begin at a whole byte of the page's row.
TEST_F(HostileTiff, TilesOfOddWidths) {
  constexpr std::uint32_t width = 75;
  constexpr std::uint32_t height = 16;
  for (const std::uint32_t depth : {1U, 4U, 8U}) {
    const Bitmap picture = Noise(width, height, static_cast<int>(depth), false);
    for (const std::uint32_t tileWidth : {8U, 12U, 24U, 33U, 75U, 90U}) {
      const std::uint32_t tiles = (width + tileWidth - 1) / tileWidth;
      const std::uint32_t tileRow = (tileWidth * depth + 7) / 8;
      const std::uint32_t tileSize = tileRow * height;
      Bytes pixels(std::size_t{tiles} * tileSize);
      for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
          const auto index = static_cast<unsigned>(
              PaletteIndexAt(picture.Row(static_cast<std::int32_t>(y)), x, static_cast<int>(depth)));
          const std::uint32_t bit = x % tileWidth * depth;
          std::uint8_t& to = pixels[(x / tileWidth * height + y) * std::size_t{tileRow} + bit / 8];
          to = static_cast<std::uint8_t>(to | index << (8 - depth - bit % 8));
        }
      }
      // Behind the pixels: where the tiles begin, and their sizes.
      const auto places = static_cast<std::uint32_t>(8 + pixels.size());
      Bytes tables;
      for (std::uint32_t i = 0; i < tiles; ++i) AppendBytes(tables, 8 + std::uint64_t{i} * tileSize, 4);
      for (std::uint32_t i = 0; i < tiles; ++i) AppendBytes(tables, tileSize, 4);
      Bytes file = DirectoriesOver(pixels.size() + tables.size(), 1,
                                   {{256, 4, 1, width},
                                    {257, 4, 1, height},
                                    {258, 3, 1, depth},
                                    {259, 3, 1, 1},
                                    {262, 3, 1, 1},
                                    {322, 4, 1, tileWidth},
                                    {323, 4, 1, height},
                                    {324, 4, tiles, tiles == 1 ? 8 : places},
                                    {325, 4, tiles, tiles == 1 ? tileSize : places + 4 * tiles}});
      std::ranges::copy(pixels, file.begin() + 8);
      std::ranges::copy(tables, file.begin() + 8 + std::ssize(pixels));
      ASSERT_TRUE(Loads(file)) << engine.LastLoadError();
      EXPECT_TRUE(SamePicture(picture, engine.Current())) << depth << " bits, tiles of " << tileWidth;
    }
  }
}

TEST_F(HostileTiff, TilesFarLargerThanThePage) {
  const std::string path = At("tiles.tif");
  {
    TiffMaker maker(path);
    maker.Page(64, 1, 8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_ADOBE_DEFLATE, 0);
    maker.Set(TIFFTAG_TILEWIDTH, 16).Set(TIFFTAG_TILELENGTH, 16384);
    for (std::uint32_t x = 0; x < 64; x += 16) maker.Tile(x, 0, Bytes(maker.TileSize()));
    maker.EndPage();
  }
  engine.GetOptions().reading.pageMemory = 1U << 20U;
  EXPECT_TRUE(engine.Load(path)) << engine.LastLoadError();
  engine.GetOptions().reading.pageMemory = (1U << 20U) - 1;
  EXPECT_FALSE(engine.Load(path));
}

}  // namespace
}  // namespace kw
