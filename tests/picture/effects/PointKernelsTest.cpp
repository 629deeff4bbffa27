// Effects whose channels go along a line take another way for pixels of 24 bits than for palettes; both give the same.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

#include "components/base/Bitmap.h"
#include "picture/effects/Effect.h"
#include "picture/effects/Kernels.h"
#include "picture/effects/ScalarKernels.h"

namespace kw {
namespace {

// Every value of a byte in each channel.
Bitmap AllColours() {
  Bitmap picture(256, 1, 24);
  const auto row = picture.MutableRow(0);
  for (std::size_t x = 0; x < 256; ++x) {
    for (std::size_t channel = 0; channel < 3; ++channel) {
      row[x * 3 + channel] = static_cast<std::uint8_t>(x * (2 * channel + 1));
    }
  }
  return picture;
}

Bitmap AllEntries() {
  Bitmap picture(256, 1, 8);
  std::vector<Rgb> palette;
  for (std::size_t i = 0; i < 256; ++i) {
    const auto level = static_cast<std::uint8_t>(i);
    palette.push_back({level, level, level});
    picture.MutableRow(0)[i] = level;
  }
  picture.SetPalette(std::move(palette));
  return picture;
}

void ExpectTheSame(const Effect& effect, std::span<const double> values) {
  Bitmap colours = AllColours();
  Bitmap entries = AllEntries();
  ApplyEffect(effect, colours, values);
  ApplyEffect(effect, entries, values);
  const Bitmap before = AllColours();
  for (std::size_t i = 0; i < before.RowBytes(); ++i) {
    ASSERT_EQ(colours.Row(0)[i], entries.Palette()[before.Row(0)[i]].red)
        << effect.command << " by " << (values.empty() ? 0 : values[0]) << " of " << int{before.Row(0)[i]};
  }
}

TEST(LinearMaps, GiveWhatThePaletteGetsWhateverTheParameter) {
  for (const char* const command : {"Lighten", "Darken", "Contrast"}) {
    const Effect& effect = *FindEffect(command);
    ASSERT_EQ(effect.parameters.size(), 1U);
    const Parameter& parameter = effect.parameters[0];
    const auto halves = static_cast<int>(2 * (parameter.greatest - parameter.least));
    for (int i = 0; i <= halves; ++i) ExpectTheSame(effect, {{parameter.least + i / 2.0}});
    ExpectTheSame(effect, {{parameter.greatest}});
  }
  ExpectTheSame(*FindEffect("Invert"), {});
}

TEST(LinearMaps, AreTheSameWithAndWithoutVectors) {
  std::minstd_rand random(5);
  for (std::size_t count = 1; count <= 300; ++count) {
    const kernels::LinearMap map = {static_cast<std::uint8_t>(count % 2 == 0 ? 0 : 255),
                                    static_cast<std::uint16_t>(random() % 32768),
                                    static_cast<std::int16_t>(static_cast<std::int32_t>(random() % 32768) - 16384)};
    Bitmap fast(static_cast<std::int32_t>(count), 1, 8);
    std::vector<std::uint8_t> plain(count);
    for (std::size_t i = 0; i < count; ++i) {
      fast.MutableRow(0)[i] = plain[i] = static_cast<std::uint8_t>(random() >> 9U);
    }
    kernels::ApplyLinearMap(kw::Pixels(fast).Row(0), count, map);
    kernels::scalar::ApplyLinearMap(plain.data(), count, map);
    ASSERT_TRUE(std::equal(plain.begin(), plain.end(), fast.Row(0).begin())) << count;
  }
}

TEST(PackedBits, HaveNothingBehindThePixels) {
  for (std::int32_t width = 1; width <= 200; ++width) {
    const auto pixels = static_cast<std::size_t>(width);
    Bitmap values(width, 1, 8);
    Bitmap bits(width, 1, 1);
    // A row takes whole units of its alignment; what lies behind the pixels may be anything.
    std::fill_n(kw::Pixels(values).Row(0), values.Stride(), std::uint8_t{255});
    kernels::ThresholdToBits(kw::ConstPixels(values).Row(0), kw::Pixels(bits).Row(0), pixels, 128);
    for (std::size_t x = 0; x < pixels; ++x) ASSERT_NE(bits.Row(0)[x / 8] & 0x80U >> x % 8, 0U) << x << " of " << width;
    if (pixels % 8 == 0) continue;
    ASSERT_EQ(bits.Row(0)[pixels / 8] & 0xFFU >> pixels % 8, 0U) << width;
  }
}

// In place, to a place before it that it overlaps, and to one far away.
TEST(ExchangeRedAndBlue, IsThatOfThePlainKernelAndTouchesNothingElse) {
  std::mt19937 random(1);
  for (const std::size_t size : {std::size_t{3}, std::size_t{4}}) {
    for (const std::size_t pixels : {0U, 1U, 4U, 5U, 6U, 15U, 16U, 17U, 63U, 64U, 65U, 200U, 2480U}) {
      constexpr std::size_t margin = 7;
      for (const std::size_t distance :
           {std::size_t{0}, std::size_t{1}, std::size_t{13}, std::size_t{17}, 2480 * size}) {
        std::vector<std::uint8_t> row(distance + pixels * size + 2 * margin);
        for (std::uint8_t& byte : row) byte = static_cast<std::uint8_t>(random());
        std::vector<std::uint8_t> expected = row;
        for (std::size_t i = 0; i < pixels * size; ++i) {
          const std::size_t channel = i % size;
          expected[margin + i] = row[margin + distance + i - channel + (channel == 3 ? 3 : 2 - channel)];
        }
        std::vector<std::uint8_t> plain = row;
        kernels::ExchangeRedAndBlue(row.data() + margin + distance, row.data() + margin, pixels, size);
        EXPECT_EQ(expected, row) << pixels << " of " << size << " by " << distance;
        kernels::scalar::ExchangeRedAndBlue(plain.data() + margin + distance, plain.data() + margin, pixels, size);
        EXPECT_EQ(expected, plain);
      }
    }
  }
}

// To places that a vector may and may not begin at.
TEST(StreamExchanged, IsThatOfThePlainKernelAndTouchesNothingElse) {
  std::mt19937 random(2);
  for (const std::size_t size : {std::size_t{3}, std::size_t{4}}) {
    for (const std::size_t pixels : {0U, 1U, 3U, 4U, 15U, 16U, 17U, 64U, 65U, 200U, 2480U}) {
      for (const std::size_t begin : {16U, 17U, 24U, 32U, 48U, 64U, 100U}) {
        std::vector<std::uint8_t> from(pixels * size);
        for (std::uint8_t& byte : from) byte = static_cast<std::uint8_t>(random());
        Bitmap rows(static_cast<std::int32_t>(begin + from.size() + 16), 1, 8);
        std::ranges::fill(rows.MutableRow(0), std::uint8_t{0xA5});
        std::vector<std::uint8_t> expected(rows.Row(0).begin(), rows.Row(0).end());
        kernels::scalar::StreamExchanged(from.data(), expected.data() + begin, pixels, size);
        kernels::StreamExchanged(from.data(), rows.MutableRow(0).data() + begin, pixels, size);
        kernels::FinishStreams();
        EXPECT_TRUE(std::ranges::equal(expected, rows.Row(0))) << pixels << " of " << size << " at " << begin;
      }
    }
  }
}

}  // namespace
}  // namespace kw
