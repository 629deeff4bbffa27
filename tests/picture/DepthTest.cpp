#include "picture/Depth.h"

#include <algorithm>
#include <map>
#include <set>

#include "picture/PictureDocument.h"
#include "picture/Signature.h"
#include "picture/effects/ParallelRows.h"
#include "tests/picture/Scratch.h"

namespace kw {
namespace {

std::vector<Rgb> ColoursOf(const Bitmap& picture) {
  std::vector<Rgb> colours;
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    for (std::int32_t x = 0; x < picture.Width(); ++x) colours.push_back(picture.PixelAt(x, y));
  }
  return colours;
}

TEST(Depth, MoreBitsLoseNothing) {
  for (const int from : {1, 4, 8, 24}) {
    const Bitmap picture = Noise(33, 9, from);
    for (const int to : {1, 4, 8, 24, 32}) {
      if (to < from) continue;
      const Bitmap result = ToDepth(picture, to);
      EXPECT_EQ(to, result.BitsPerPixel());
      EXPECT_EQ(ColoursOf(picture), ColoursOf(result)) << from << " to " << to;
    }
  }
}

TEST(Depth, FewColoursSurviveFewerBits) {
  for (const int from : {1, 4, 8}) {
    const Bitmap picture = Noise(33, 9, from);
    EXPECT_EQ(ColoursOf(picture), ColoursOf(ToDepth(ToDepth(picture, 24), from))) << from;
  }
}

// Around the ends of bytes and vectors, with palettes of colours and of greys, on one thread and on several.
TEST(Depth, IndicesGetTheirColoursAndMoreBitsInAnyWidth) {
  for (const std::int32_t width : {1, 2, 3, 7, 8, 9, 15, 17, 31, 33, 63, 64, 65, 129, 201}) {
    for (const int from : {1, 4, 8}) {
      for (const bool isColoured : {false, true}) {
        Bitmap picture = Noise(width, 37, from, isColoured);
        // Some indices have no colour.
        if (width % 3 == 0) picture.SetPalette({picture.Palette().begin(), picture.Palette().end() - 1});
        for (const unsigned threads : {1U, 3U}) {
          SetLeastWork(1);
          SetMostThreads(threads);
          for (const int to : {4, 8, 24}) {
            if (to <= from) continue;
            const Bitmap result = ToDepth(picture, to);
            EXPECT_EQ(to, result.BitsPerPixel());
            EXPECT_EQ(ColoursOf(picture), ColoursOf(result)) << width << ", " << from << " to " << to;
            EXPECT_TRUE(to == 24 || std::ranges::equal(picture.Palette(), result.Palette())) << width;
          }
          SetMostThreads(0);
          SetLeastWork(0);
        }
      }
    }
  }
}

// 8 bits whose colours fit into 4, and whose colours do not.
TEST(Depth, IndicesGetFewerBitsInAnyWidth) {
  for (const std::int32_t width : {1, 2, 3, 15, 16, 17, 33, 255, 4095, 4096, 4097, 4099}) {
    for (const unsigned colours : {16U, 200U}) {
      Bitmap picture = Noise(width, 3, 8);
      for (std::int32_t y = 0; y < 3; ++y) {
        for (auto& index : picture.MutableRow(y)) index = static_cast<std::uint8_t>(index % colours);
      }
      const Bitmap result = ToDepth(picture, 4);
      ASSERT_EQ(4, result.BitsPerPixel());
      // A colour becomes one colour, its own if all of them fit.
      std::map<unsigned, Rgb> known;
      for (std::int32_t y = 0; y < 3; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
          const unsigned index = picture.Row(y)[static_cast<std::size_t>(x)];
          const Rgb colour = known.emplace(index, result.PixelAt(x, y)).first->second;
          ASSERT_EQ(colour, result.PixelAt(x, y)) << width << ": " << x << ", " << y;
          ASSERT_TRUE(colours != 16 || picture.PixelAt(x, y) == colour) << width << ": " << x << ", " << y;
        }
        EXPECT_TRUE(width % 2 == 0 || (result.Row(y).back() & 0x0F) == 0) << width;
      }
    }
  }
}

TEST(Depth, ManyColoursBecomeAsManyAsThereIsRoomFor) {
  const Bitmap picture = Noise(200, 100, 24);
  for (const int depth : {4, 8}) {
    const Bitmap result = ToDepth(picture, depth);
    EXPECT_EQ(depth, result.BitsPerPixel());
    std::set<std::uint32_t> used;
    for (const Rgb& c : ColoursOf(result)) used.insert(c.red * 65536U + c.green * 256U + c.blue);
    EXPECT_GT(used.size(), std::size_t{1} << (depth - 1));
  }
}

TEST(Depth, ManyColoursBecomeBlackAndWhiteInOneBit) {
  Bitmap picture(3, 1, 24);
  const auto row = picture.MutableRow(0);
  std::fill_n(row.begin(), 3, std::uint8_t{20});
  std::fill_n(row.begin() + 3, 3, std::uint8_t{128});
  std::fill_n(row.begin() + 6, 3, std::uint8_t{129});
  const Bitmap result = ToDepth(picture, 1);
  EXPECT_EQ((Rgb{0, 0, 0}), result.PixelAt(0, 0));
  EXPECT_EQ((Rgb{0, 0, 0}), result.PixelAt(1, 0));
  EXPECT_EQ((Rgb{255, 255, 255}), result.PixelAt(2, 0));
}

// Each level of grey on either side of a byte's end, and the last pixel of a row alone.
TEST(Depth, GreysBecomeBitsAndColoursInAnyWidth) {
  for (const std::int32_t width : {1, 2, 7, 8, 9, 31, 64, 65, 255, 256, 301}) {
    const Bitmap picture = ToGreyLevels(Noise(width, 3, 8));
    const Bitmap bits = ToDepth(picture, 1);
    const Bitmap colours = ToDepth(picture, 24);
    ASSERT_EQ(24, colours.BitsPerPixel());
    std::set<std::uint8_t> used;
    for (const Rgb& colour : ColoursOf(picture)) used.insert(colour.red);
    for (std::int32_t y = 0; y < 3; ++y) {
      for (std::int32_t x = 0; x < width; ++x) {
        const Rgb grey = picture.PixelAt(x, y);
        ASSERT_EQ(grey, colours.PixelAt(x, y)) << width << ": " << x << ", " << y;
        if (used.size() <= 2) continue;
        const auto level = static_cast<std::uint8_t>(grey.red > 128 ? 255 : 0);
        ASSERT_EQ((Rgb{level, level, level}), bits.PixelAt(x, y)) << width << ": " << x << ", " << y;
      }
    }
  }
}

// The colours themselves decide, not the indices that a palette gives them.
TEST(Depth, IndicesBecomeTheSameBitsAsTheirColours) {
  for (const int used : {1, 2, 3, 16, 17, 256}) {
    Bitmap picture = Noise(301, 97, 8);
    std::vector<Rgb> palette(picture.Palette().begin(), picture.Palette().end());
    for (std::size_t i = 0; i < palette.size(); ++i) palette[i] = palette[i % static_cast<std::size_t>(used)];
    // Indices behind the palette are black.
    palette.resize(250);
    picture.SetPalette(palette);
    for (const int depth : {1, 4}) {
      EXPECT_TRUE(SamePicture(ToDepth(ToDepth(picture, 24), depth), ToDepth(picture, depth))) << used << " " << depth;
    }
  }
}

// Runs of any length, in which a colour may first occur in the last pixel of a row.
TEST(Depth, RunsOfFewColoursBecomeTheSameBits) {
  for (const std::int32_t width : {1, 8, 15, 4095, 4096, 4097, 8201}) {
    for (const std::int32_t run : {1, 5, 8, 37, width}) {
      Bitmap picture = ToGreyLevels(Noise(width, 4, 8));
      for (std::int32_t y = 0; y < 4; ++y) {
        const auto row = picture.MutableRow(y);
        for (std::int32_t x = 0; x < width; ++x) {
          row[static_cast<std::size_t>(x)] = static_cast<std::uint8_t>(x / run % 2 == 0 ? 255 : 40);
        }
        if (y == 2) row.back() = 40;
      }
      for (const int depth : {1, 4}) {
        const Bitmap result = ToDepth(picture, depth);
        EXPECT_EQ(ColoursOf(picture), ColoursOf(result)) << width << " " << run << " " << depth;
        EXPECT_TRUE(SamePicture(ToDepth(ToDepth(picture, 24), depth), result)) << width << " " << run << " " << depth;
      }
    }
  }
}

TEST(Depth, ResolutionStays) {
  Bitmap picture = Noise(5, 5, 24);
  picture.SetResolution(150, 75);
  for (const int depth : {1, 4, 8, 24, 32}) {
    EXPECT_EQ(150, ToDepth(picture, depth).HorizontalResolution());
    EXPECT_EQ(75, ToDepth(picture, depth).VerticalResolution());
  }
}

TEST(Depth, EngineTakesTheNextDepthUpAndSaysWhich) {
  struct Case {
    std::int16_t wanted;
    std::int16_t given;
  };
  for (const Case& step : {Case{1, 1}, Case{2, 4}, Case{4, 4}, Case{5, 8}, Case{8, 8}, Case{15, 24}, Case{16, 24},
                           Case{24, 24}, Case{25, 32}, Case{32, 32}, Case{48, 24}, Case{32767, 24}}) {
    PictureDocument engine;
    engine.Replace(Noise(20, 10, 8));
    std::int16_t bits = step.wanted;
    engine.ConvertToBitsPerPixel(bits);
    EXPECT_EQ(step.given, bits) << step.wanted;
    EXPECT_EQ(step.given, engine.BitsPerPixel()) << step.wanted;
    EXPECT_EQ(20, engine.Width());
  }
}

TEST(Depth, EngineKeepsAlphaWhereMoreThan32BitsAreAskedFor) {
  PictureDocument engine;
  engine.Replace(Noise(20, 10, 32));
  std::int16_t bits = 64;
  engine.ConvertToBitsPerPixel(bits);
  EXPECT_EQ(32, bits);
  EXPECT_TRUE(SamePicture(Noise(20, 10, 32), engine.Current()));
}

TEST(Depth, EngineRefusesNoBits) {
  PictureDocument engine;
  engine.Replace(Noise(20, 10, 8));
  for (std::int16_t bits : {std::int16_t{0}, std::int16_t{-8}}) {
    EXPECT_EQ(NumberOf(ErrorNumber::InvalidProcedureCall), ErrorOf([&] { engine.ConvertToBitsPerPixel(bits); }));
  }
  EXPECT_TRUE(SamePicture(Noise(20, 10, 8), engine.Current()));
}

TEST(Signature, PaperBecomesWhiteAndInkStaysDark) {
  for (const int depth : {4, 8, 24, 32}) {
    Bitmap scan(40, 20, 24);
    for (std::int32_t y = 0; y < 20; ++y) {
      const auto row = scan.MutableRow(y);
      for (std::size_t x = 0; x < 40; ++x) {
        const bool ink = y == 10 && x > 5;
        const auto level = static_cast<std::uint8_t>(ink ? 20 : 205 + (x + static_cast<std::size_t>(y)) % 7);
        std::fill_n(row.begin() + static_cast<std::ptrdiff_t>(x * 3), 3, level);
      }
    }
    PictureDocument engine;
    engine.Replace(ToDepth(scan, depth));
    engine.PrepareSignature();
    EXPECT_EQ((Rgb{255, 255, 255}), engine.Current().PixelAt(2, 2)) << depth;
    EXPECT_EQ((Rgb{255, 255, 255}), engine.Current().PixelAt(39, 19)) << depth;
    EXPECT_LT(engine.Current().PixelAt(20, 10).red, 40) << depth;
    EXPECT_EQ(40, engine.Width());
  }
}

TEST(Signature, BlackPictureStaysBlack) {
  Bitmap result(8, 8, 24);
  WhitenPaper(result);
  EXPECT_EQ((Rgb{0, 0, 0}), result.PixelAt(4, 4));
}

TEST(Signature, OneBitScanStaysOneBit) {
  Bitmap result = FaxPage(64, 40);
  WhitenPaper(result);
  EXPECT_TRUE(SamePicture(FaxPage(64, 40), result));
}

// Rows of any length, and of more pixels than are counted together.
TEST(Signature, PaperIsTheMostFrequentLightLuma) {
  for (const std::int32_t width : {1, 63, 1023, 1025, 2100}) {
    Bitmap scan(width, 5, 24);
    std::array<std::uint64_t, 256> counts{};
    for (std::int32_t y = 0; y < 5; ++y) {
      const auto row = scan.MutableRow(y);
      for (std::size_t i = 0; i < row.size(); ++i) row[i] = static_cast<std::uint8_t>((i * i + 77) % 211 + 40);
      for (std::int32_t x = 0; x < width; ++x) ++counts[Luma(scan.PixelAt(x, y))];
    }
    const auto* const paper = std::max_element(counts.begin() + 128, counts.end());
    const unsigned white = *paper == 0 ? 255U : std::max(128U, static_cast<unsigned>(paper - counts.begin()) - 24U);
    Bitmap result = scan;
    WhitenPaper(result);
    for (std::int32_t y = 0; y < 5; ++y) {
      for (std::size_t i = 0; i < scan.RowBytes(); ++i) {
        ASSERT_EQ(std::min(255U, scan.Row(y)[i] * 255U / white), result.Row(y)[i]) << width << ": " << i;
      }
    }
  }
}

}  // namespace
}  // namespace kw
