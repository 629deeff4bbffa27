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

// A block in use.
class Living {
public:
  explicit Living(std::size_t bytes) : block(TakePixelBlock(bytes)) {}
  Living(const Living&) = delete;
  Living& operator=(const Living&) = delete;
  ~Living() { GiveBack(block); }
  const void* Begin() const { return block.begin; }
  std::size_t Bytes() const { return block.bytes; }

private:
  PixelBlock block;
};

// The address of a block of that size that was taken and given back, all its bytes 0xEE.
const void* TakeAndGiveBack(std::size_t bytes) {
  const PixelBlock block = TakePixelBlock(bytes);
  if (block.begin == nullptr) return nullptr;
  std::memset(block.begin, 0xEE, bytes);
  GiveBack(block);
  return block.begin;
}

TEST(PixelBlock, IsNotSparedIfNoPictureOfItsSizeLives) {
  TakeAndGiveBack(Large);
  EXPECT_EQ(0U, SparedBytes());
  const Living small(PixelBlock::LeastSpared - 1);
  const Living smaller(Large / 5 * 4 - 4);
  const Living larger(Large + 1);
  TakeAndGiveBack(Large);
  EXPECT_EQ(0U, SparedBytes());
}

TEST(PixelBlock, IsSparedForTheNextPictureOfItsSize) {
  const Living page(Large);
  const void* const first = TakeAndGiveBack(Large);
  EXPECT_EQ(Large, SparedBytes());
  const Living second(Large);
  EXPECT_EQ(first, second.Begin());
  EXPECT_EQ(0U, SparedBytes());
}

TEST(PixelBlock, ServesALittleSmallerPictureAndStaysWhole) {
  const Living page(Large);
  const void* const first = TakeAndGiveBack(Large);
  {
    const Living second(Large / 5 * 4 + 4);
    EXPECT_EQ(first, second.Begin());
    EXPECT_EQ(Large, second.Bytes());
  }
  EXPECT_EQ(Large, SparedBytes());
}

TEST(PixelBlock, IsFreedBeforeALargeOneThatItDoesNotServe) {
  const Living page(Large);
  for (const std::size_t bytes : {Large / 5 * 4 - 4, PixelBlock::LeastSpared, PixelBlock::MostSpared + 1, Large + 1}) {
    TakeAndGiveBack(Large);
    ASSERT_EQ(Large, SparedBytes());
    const Living other(bytes);
    ASSERT_NE(nullptr, other.Begin());
    EXPECT_EQ(0U, SparedBytes()) << bytes;
  }
}

TEST(PixelBlock, IsLeftAloneBySmallPictures) {
  const Living page(Large);
  TakeAndGiveBack(Large);
  TakeAndGiveBack(PixelBlock::LeastSpared - 1);
  EXPECT_EQ(Large, SparedBytes());
}

TEST(PixelBlock, IsSparedIfItsSizeIsBetweenTheLimits) {
  for (const auto& [bytes, spared] : {std::pair{PixelBlock::LeastSpared - 1, std::size_t{0}},
                                      {PixelBlock::LeastSpared, PixelBlock::LeastSpared},
                                      {PixelBlock::MostSpared, PixelBlock::MostSpared},
                                      {PixelBlock::MostSpared + 1, std::size_t{0}}}) {
    const Living page(bytes);
    TakeAndGiveBack(bytes);
    EXPECT_EQ(spared, SparedBytes()) << bytes;
  }
}

TEST(PixelBlock, GoesWithTheLastPictureOfItsSize) {
  auto one = std::make_unique<Living>(Large);
  auto other = std::make_unique<Living>(Large);
  TakeAndGiveBack(Large);
  one.reset();
  EXPECT_EQ(Large, SparedBytes());
  other.reset();
  EXPECT_EQ(0U, SparedBytes());
}

TEST(PixelBlock, GoesIfAPageOfAnotherSizeTakesThePlace) {
  auto former = std::make_unique<Living>(Large);
  TakeAndGiveBack(Large);
  const Living next(PixelBlock::LeastSpared - 1);
  former.reset();
  EXPECT_EQ(0U, SparedBytes());
}

TEST(PixelBlock, IsFreedAtRequest) {
  const Living page(Large);
  TakeAndGiveBack(Large);
  FreeSparedBlock();
  EXPECT_EQ(0U, SparedBytes());
  FreeSparedBlock();
  TakeAndGiveBack(Large);
  EXPECT_EQ(Large, SparedBytes());
}

TEST(PixelBlock, OfTheLastPictureTakesThePlaceOfTheOneBefore) {
  const Living page(Large);
  const Living wide(2 * Large);
  const PixelBlock first = TakePixelBlock(Large);
  const PixelBlock second = TakePixelBlock(2 * Large);
  GiveBack(first);
  GiveBack(second);
  EXPECT_EQ(2 * Large, SparedBytes());
}

TEST(PixelBlock, IsSparedAlsoIfMoreLiveThanAreNoted) {
  std::vector<std::unique_ptr<Living>> pages;
  pages.reserve(40);
  for (int i = 0; i < 40; ++i) pages.push_back(std::make_unique<Living>(PixelBlock::LeastSpared));
  TakeAndGiveBack(PixelBlock::LeastSpared);
  EXPECT_EQ(PixelBlock::LeastSpared, SparedBytes());
  pages.clear();
  EXPECT_EQ(0U, SparedBytes());
  const Living page(Large);
  TakeAndGiveBack(Large);
  EXPECT_EQ(Large, SparedBytes());
}

TEST(PixelBlock, OfZerosIsThatAfterAnEarlierPicture) {
  const Living page(Large);
  const void* const first = TakeAndGiveBack(Large);
  const PixelBlock zeroed = TakeZeroedPixelBlock(Large);
  EXPECT_EQ(first, zeroed.begin);
  const auto* const bytes = static_cast<const std::uint8_t*>(zeroed.begin);
  EXPECT_EQ(Large, static_cast<std::size_t>(std::count(bytes, bytes + Large, 0)));
  GiveBack(zeroed);
}

TEST(PixelBlock, IsTakenByOneThreadAtATime) {
  std::vector<std::thread> threads;
  for (std::uint8_t mark = 1; mark <= 4; ++mark) {
    threads.emplace_back([mark] {
      for (int i = 0; i < 50; ++i) {
        const PixelBlock block = TakePixelBlock(PixelBlock::LeastSpared);
        auto* const bytes = static_cast<std::uint8_t*>(block.begin);
        std::fill(bytes, bytes + PixelBlock::LeastSpared, mark);
        EXPECT_EQ(PixelBlock::LeastSpared,
                  static_cast<std::size_t>(std::count(bytes, bytes + PixelBlock::LeastSpared, mark)));
        GiveBack(block);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(0U, SparedBytes());
}

TEST(PixelBlock, OfAPictureIsThatOfTheOneBefore) {
  const Bitmap shown(2000, 1000, 24);
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
  const Living page(Large);
  const void* const spared = TakeAndGiveBack(Large);
  EXPECT_NE(0, __asan_address_is_poisoned(spared));
  EXPECT_NE(0, __asan_address_is_poisoned(static_cast<const std::uint8_t*>(spared) + Large - 1));
}
#endif

}  // namespace
}  // namespace kw::test
