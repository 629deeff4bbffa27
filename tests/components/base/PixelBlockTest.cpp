#include "components/base/PixelBlock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "components/base/Bitmap.h"
#include "components/base/RowPadding.h"

namespace kw::test {
namespace {

constexpr std::size_t Large = std::size_t{4} << 20U;

// The address of a block of that size that was taken and given back, all its bytes 0xEE.
const void* TakeAndGiveBack(std::size_t bytes) {
  const PixelBlock block = TakePixelBlock(bytes);
  if (block.begin == nullptr) return nullptr;
  std::memset(block.begin, 0xEE, bytes);
  GiveBack(block);
  return block.begin;
}

TEST(PixelBlock, IsNotSparedIfNobodyKeepsOne) {
  TakeAndGiveBack(Large);
  EXPECT_EQ(0U, SparePixelBlock::Bytes());
}

TEST(PixelBlock, IsSparedForTheNextPictureOfItsSize) {
  const SparePixelBlock keeper;
  const void* const first = TakeAndGiveBack(Large);
  EXPECT_EQ(Large, SparePixelBlock::Bytes());
  const PixelBlock second = TakePixelBlock(Large);
  EXPECT_EQ(first, second.begin);
  EXPECT_EQ(0U, SparePixelBlock::Bytes());
  GiveBack(second);
}

TEST(PixelBlock, ServesALittleSmallerPictureAndStaysWhole) {
  const SparePixelBlock keeper;
  const void* const first = TakeAndGiveBack(Large);
  const PixelBlock second = TakePixelBlock(Large / 5 * 4 + 4);
  EXPECT_EQ(first, second.begin);
  EXPECT_EQ(Large, second.bytes);
  GiveBack(second);
  EXPECT_EQ(Large, SparePixelBlock::Bytes());
}

TEST(PixelBlock, IsFreedBeforeALargeOneThatItDoesNotServe) {
  const SparePixelBlock keeper;
  for (const std::size_t bytes : {Large + 1, Large / 5 * 4 - 4, SparePixelBlock::Least, SparePixelBlock::Most + 1}) {
    TakeAndGiveBack(Large);
    const PixelBlock other = TakePixelBlock(bytes);
    ASSERT_NE(nullptr, other.begin);
    EXPECT_EQ(0U, SparePixelBlock::Bytes()) << bytes;
    GiveBack(other);
  }
}

TEST(PixelBlock, IsLeftAloneBySmallPictures) {
  const SparePixelBlock keeper;
  TakeAndGiveBack(Large);
  TakeAndGiveBack(SparePixelBlock::Least - 1);
  EXPECT_EQ(Large, SparePixelBlock::Bytes());
}

TEST(PixelBlock, IsSparedIfItsSizeIsBetweenTheLimits) {
  const SparePixelBlock keeper;
  for (const auto& [bytes, spared] : {std::pair{SparePixelBlock::Least - 1, std::size_t{0}},
                                      {SparePixelBlock::Least, SparePixelBlock::Least},
                                      {SparePixelBlock::Most, SparePixelBlock::Most},
                                      {SparePixelBlock::Most + 1, std::size_t{0}}}) {
    const SparePixelBlock another;
    TakeAndGiveBack(bytes);
    EXPECT_EQ(spared, SparePixelBlock::Bytes()) << bytes;
    GiveBack(TakePixelBlock(SparePixelBlock::Most + 1));
  }
}

TEST(PixelBlock, OfTheLastPictureTakesThePlaceOfTheOneBefore) {
  const SparePixelBlock keeper;
  const PixelBlock first = TakePixelBlock(Large);
  const PixelBlock second = TakePixelBlock(2 * Large);
  GiveBack(first);
  GiveBack(second);
  EXPECT_EQ(2 * Large, SparePixelBlock::Bytes());
}

TEST(PixelBlock, GoesWithTheLastKeeper) {
  auto one = std::make_unique<SparePixelBlock>();
  {
    const SparePixelBlock other;
    TakeAndGiveBack(Large);
  }
  EXPECT_EQ(Large, SparePixelBlock::Bytes());
  one.reset();
  EXPECT_EQ(0U, SparePixelBlock::Bytes());
}

TEST(PixelBlock, OfZerosIsThatAfterAnEarlierPicture) {
  const SparePixelBlock keeper;
  const void* const first = TakeAndGiveBack(Large);
  const PixelBlock zeroed = TakeZeroedPixelBlock(Large);
  EXPECT_EQ(first, zeroed.begin);
  const auto* const bytes = static_cast<const std::uint8_t*>(zeroed.begin);
  EXPECT_EQ(Large, static_cast<std::size_t>(std::count(bytes, bytes + Large, 0)));
  GiveBack(zeroed);
}

TEST(PixelBlock, IsTakenByOneThreadAtATime) {
  const SparePixelBlock keeper;
  std::vector<std::thread> threads;
  for (std::uint8_t mark = 1; mark <= 4; ++mark) {
    threads.emplace_back([mark] {
      for (int i = 0; i < 50; ++i) {
        const PixelBlock block = TakePixelBlock(SparePixelBlock::Least);
        auto* const bytes = static_cast<std::uint8_t*>(block.begin);
        std::fill(bytes, bytes + SparePixelBlock::Least, mark);
        EXPECT_EQ(SparePixelBlock::Least,
                  static_cast<std::size_t>(std::count(bytes, bytes + SparePixelBlock::Least, mark)));
        GiveBack(block);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(PixelBlock, OfAPictureIsThatOfTheOneBefore) {
  const SparePixelBlock keeper;
  const std::uint8_t* first = nullptr;
  {
    Bitmap page(2000, 1000, 24);
    first = page.MutableRow(0).data();
    for (std::int32_t y = 0; y < page.Height(); ++y) std::ranges::fill(page.MutableRow(y), std::uint8_t{0x77});
  }
  const Bitmap next(2000, 1000, 24);
  EXPECT_EQ(first, next.Row(0).data());
  for (std::int32_t y = 0; y < next.Height(); ++y) {
    ASSERT_TRUE(std::ranges::all_of(next.Row(y), [](std::uint8_t byte) { return byte == 0; })) << y;
  }
}

#ifdef KW_FORBIDS_PADDING
TEST(PixelBlock, ThatIsSparedIsForbidden) {
  const SparePixelBlock keeper;
  const void* const spared = TakeAndGiveBack(Large);
  EXPECT_NE(0, __asan_address_is_poisoned(spared));
  EXPECT_NE(0, __asan_address_is_poisoned(static_cast<const std::uint8_t*>(spared) + Large - 1));
}
#endif

}  // namespace
}  // namespace kw::test
