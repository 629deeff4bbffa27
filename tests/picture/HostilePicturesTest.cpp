#include "picture/PictureDocument.h"
#include "picture/formats/Formats.h"
#include "tests/picture/WatchedFile.h"
#include "tests/support/Effects.h"

namespace kw {
namespace {

class HostilePictures : public ScratchTest {
protected:
  bool Loads(const Bytes& bytes) { return engine.Load(Put("hostile", bytes)); }
  PictureDocument engine;
};

// A GIF of black and white frames of two by two pixels.
class TinyFrames {
public:
  TinyFrames(unsigned width, unsigned height)
      : bytes{'G',  'I', 'F', '8', '9', 'a', Low(width), High(width), Low(height), High(height),
              0x80, 0,   0,   0,   0,   0,   255,        255,         255} {}

  void Add(unsigned left, unsigned top, unsigned disposal, bool black) {
    bytes.insert(bytes.end(), {0x21, 0xF9, 4, static_cast<std::uint8_t>(disposal << 2U), 0, 0, 0, 0});
    bytes.insert(bytes.end(), {',', Low(left), High(left), Low(top), High(top), 2, 0, 2, 0, 0});
    places.push_back(bytes.size());
    // Codes of 3 bits: clear, a pixel, twice this pixel, the pixel, the end.
    const unsigned pixel = black ? 0 : 1;
    const unsigned codes = 4U | pixel << 3U | 6U << 6U | pixel << 9U | 5U << 12U;
    bytes.insert(bytes.end(), {2, 2, Low(codes), High(codes), 0});
  }

  Bytes bytes;
  // Of each frame's pixels.
  std::vector<std::size_t> places;

private:
  static std::uint8_t Low(unsigned value) { return static_cast<std::uint8_t>(value); }
  static std::uint8_t High(unsigned value) { return static_cast<std::uint8_t>(value >> 8U); }
};

TEST_F(HostilePictures, GifHasAtMost32767Pages) {
  TinyFrames gif(2, 2);
  for (std::size_t i = 0; i < MostPages; ++i) gif.Add(0, 0, 0, true);
  EXPECT_TRUE(Loads(gif.bytes)) << engine.LastLoadError();
  EXPECT_EQ(static_cast<std::int32_t>(MostPages), engine.PageCount());
  gif.Add(0, 0, 0, true);
  EXPECT_FALSE(Loads(gif.bytes));
  EXPECT_EQ("The GIF file has too many pages.", engine.LastLoadError());
}

TEST_F(HostilePictures, GifFramePastTheMemoryOfAPage) {
  TinyFrames gif(2, 2);
  gif.Add(0, 0, 0, true);
  gif.Add(0, 0, 0, true);
  // Width and height of the second frame.
  for (std::size_t i = 0; i < 4; ++i) gif.bytes[gif.places[1] - 5 + i] = 0xFF;
  EXPECT_FALSE(Loads(gif.bytes));
}

// Each page is drawn on a canvas of its own, however few bytes it has.
TEST_F(HostilePictures, GifWhosePagesAreFarLargerThanItsData) {
  constexpr unsigned side = 4700;
  constexpr std::size_t fits = (std::size_t{512} << 20U) / (std::size_t{side} * side * 3);
  TinyFrames gif(side, side);
  for (std::size_t i = 0; i < fits; ++i) gif.Add(0, 0, 0, true);
  EXPECT_TRUE(Loads(gif.bytes)) << engine.LastLoadError();
  gif.Add(0, 0, 0, true);
  EXPECT_FALSE(Loads(gif.bytes));
  EXPECT_EQ("The pages of the GIF file are far larger than its data.", engine.LastLoadError());
  // With more data they may be more.
  gif.bytes.push_back(';');
  gif.bytes.resize(300000);
  EXPECT_TRUE(Loads(gif.bytes)) << engine.LastLoadError();
}

TEST_F(HostilePictures, GifFrameIsDrawnAtMostTwiceFromLastToFirst) {
  constexpr unsigned count = 61;
  for (const bool covered : {false, true}) {
    TinyFrames gif(covered ? 2 : 40, covered ? 2 : 40);
    for (unsigned i = 0; i < count; ++i) {
      gif.Add(covered ? 0 : i * 7 % 39, covered ? 0 : i * 5 % 39, i % 4, i % 3 != 0);
    }
    // Room for two drawn pages at a time.
    const ReadLimits limits{4 * PixelMemory(covered ? 2 : 40, covered ? 2 : 40, 24) + (covered ? 20000 : 0)};
    WatchedFile forward(gif.bytes);
    WatchedFile backward(gif.bytes);
    const auto up = GifFormat.open(forward, limits);
    const auto down = GifFormat.open(backward, limits);
    forward.Watch();
    backward.Watch();
    std::string warning;
    std::vector<Bitmap> pages;
    const auto last = static_cast<std::int32_t>(count);
    for (std::int32_t page = 1; page <= last; ++page) {
      pages.push_back(up->Read(forward, page, warning));
      EXPECT_EQ("", warning);
    }
    for (auto page = last; page >= 1; --page) {
      EXPECT_TRUE(SamePicture(pages[static_cast<std::size_t>(page - 1)], down->Read(backward, page, warning))) << page;
    }
    for (unsigned i = 0; i < count; ++i) {
      EXPECT_EQ(i == 0 && !covered ? 2U : 1U, forward.TimesRead(gif.places[i])) << i;
      EXPECT_LE(backward.TimesRead(gif.places[i]), 2U + (i == 0 && !covered ? 1 : 0)) << i;
    }
    // In any order the pages are the same.
    for (std::int32_t i = 0; i < 200; ++i) {
      const std::int32_t page = i * 37 % static_cast<std::int32_t>(count) + 1;
      EXPECT_TRUE(SamePicture(pages[static_cast<std::size_t>(page - 1)], down->Read(backward, page, warning))) << page;
    }
  }
}

TEST_F(HostilePictures, GifThatNeedsTooMuchMemoryOnTheWayEndsLikeAFullDisk) {
  TinyFrames gif(40, 40);
  for (unsigned i = 0; i < 500; ++i) gif.Add(i * 7 % 39, i * 5 % 39, 1, i % 3 != 0);
  WatchedFile file(gif.bytes);
  const auto source = GifFormat.open(file, {2 * PixelMemory(40, 40, 24)});
  std::string warning;
  EXPECT_EQ(NumberOf(ErrorNumber::DiskFull), ErrorOf([&] { source->Read(file, 500, warning); }));
  EXPECT_FALSE(source->Read(file, 3, warning).IsEmpty());
}

TEST_F(HostilePictures, EncodingAnewIsBoundedForAllPagesTogether) {
  TinyFrames gif(40, 40);
  for (unsigned i = 0; i < 10; ++i) gif.Add(i, i, 1, i % 3 != 0);
  ASSERT_TRUE(engine.Load(Put("ten.gif", gif.bytes))) << engine.LastLoadError();
  engine.SelectPage(10);
  engine.Save(At("page10.bmp"));
  const std::uint64_t one = BytesOf(At("page10.bmp")).size();
  engine.GetOptions().encodedBytes = 3 * one;
  ASSERT_TRUE(engine.Load(At("ten.gif")));
  for (std::int32_t page = 10; page > 7; --page) {
    engine.SelectPage(page);
    engine.Save(At("page" + std::to_string(page) + ".bmp"));
  }
  engine.SelectPage(7);
  for (const char* name : {"page7.bmp", "page7.tif", "page7.jpg", "page7.gif", "page7.fmf"}) {
    EXPECT_EQ(NumberOf(ErrorNumber::DiskFull), ErrorOf([&] { engine.Save(At(name)); })) << name;
  }
  MemoryFile document;
  const auto appender = TiffFormat.append(document);
  EXPECT_EQ(NumberOf(ErrorNumber::DiskFull), ErrorOf([&] { engine.AppendTo(*appender); }));
  EXPECT_EQ((std::vector<std::string>{"page10.bmp", "page8.bmp", "page9.bmp", "ten.gif"}), Names());
  // A picture that is the engine's own, or a document's only one, is saved as often as its user likes.
  engine.Replace(Bitmap(engine.Current()));
  for (int i = 0; i < 10; ++i) engine.Save(At("own.bmp"));
  EXPECT_EQ(std::uint64_t{4} << 30U, PictureDocument().GetOptions().encodedBytes);
}

TEST_F(HostilePictures, ChangesOfAPicturePastTheMemoryOfAPage) {
  struct Change {
    const char* effect;
    std::vector<double> values;
    int depth;
  };
  const std::vector<Change> changes{{"Resize", {100, 100000, 100000, 0}, 24},
                                    {"Resize", {1000, 0, 0, 0}, 1},
                                    {"Rotate", {45}, 1},
                                    {"Rotate", {90}, 1},
                                    {"Blur", {1.5}, 1},
                                    {"Dilate", {}, 4},
                                    {"IncreaseBpp", {}, 1}};
  for (const Change& change : changes) {
    SCOPED_TRACE(change.effect);
    const Bitmap before = Noise(4000, 20, change.depth);
    engine.Replace(before);
    engine.GetOptions().reading.pageMemory = PixelMemory(4000, 20, change.depth);
    const Effect& effect = *FindEffect(change.effect);
    const std::vector<double> values = change.values.empty() ? StandardValues(effect) : change.values;
    EXPECT_EQ(NumberOf(ErrorNumber::OutOfMemory), ErrorOf([&] { engine.Apply(effect, values); }));
    EXPECT_TRUE(SamePicture(before, engine.Current()));
  }
  // What is made smaller is not converted as a whole first.
  engine.Replace(Noise(4000, 20, 1));
  engine.GetOptions().reading.pageMemory = PixelMemory(4000, 20, 1);
  EXPECT_EQ(0, ErrorOf([&] { engine.Apply(*FindEffect("Resize"), std::vector<double>{1, 0, 0, 0}); }));
  for (const char* effect : {"Invert", "HorizontalFlip", "Threshold", "Dither", "Erode", "DecreaseBpp"}) {
    engine.Replace(Noise(4000, 20, 1));
    engine.GetOptions().reading.pageMemory = PixelMemory(4000, 20, 1);
    EXPECT_EQ(0, ErrorOf([&] { test::Apply(engine, effect); })) << effect;
  }
  engine.Replace(Noise(4000, 20, 1));
  std::int16_t bits = 24;
  EXPECT_EQ(NumberOf(ErrorNumber::OutOfMemory), ErrorOf([&] { engine.ConvertToBitsPerPixel(bits); }));
  EXPECT_EQ(1, engine.BitsPerPixel());
  engine.GetOptions() = {};
  EXPECT_EQ(NumberOf(ErrorNumber::OutOfMemory), ErrorOf([&] {
              engine.Replace(Noise(20, 20, 24));
              engine.Apply(*FindEffect("Resize"), std::vector<double>{100, 100000, 100000, 0});
            }));
}

}  // namespace
}  // namespace kw
