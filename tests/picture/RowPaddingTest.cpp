// Bytes of a picture's memory that are no pixels.

#include "components/base/RowPadding.h"

#include "picture/effects/Pixels.h"
#include "tests/picture/Scratch.h"

namespace kw {
namespace {

#ifdef KW_FORBIDS_PADDING

bool IsForbidden(const std::uint8_t* at) { return __asan_address_is_poisoned(at) != 0; }

void ExpectPixelsAlone(const Bitmap& picture) {
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto row = picture.Row(y);
    for (const std::uint8_t& byte : row) ASSERT_FALSE(IsForbidden(&byte));
    for (std::size_t i = row.size(); i < picture.Stride(); ++i) ASSERT_TRUE(IsForbidden(row.data() + i)) << i;
  }
  EXPECT_TRUE(IsForbidden(picture.Row(0).data() - 1));
  EXPECT_TRUE(IsForbidden(picture.Row(picture.Height() - 1).data() + picture.Stride()));
}

TEST(RowPadding, IsForbidden) {
  for (const int depth : {1, 4, 8, 24, 32}) {
    for (const std::int32_t width : {1, 16, 63, 64, 65}) {
      SCOPED_TRACE(std::to_string(width) + " of " + std::to_string(depth) + " bits");
      Bitmap picture(width, 3, depth);
      ExpectPixelsAlone(picture);
      const Bitmap shared = picture;
      picture.MutableRow(0);
      ExpectPixelsAlone(picture);
      ExpectPixelsAlone(Bitmap::Unfilled(width, 3, depth));
    }
  }
}

TEST(RowPadding, IsTheKernelsButForTheBytesAroundAllRows) {
  Bitmap picture(17, 3, 24);
  const Pixels pixels(picture);
  for (std::size_t i = 0; i < 3 * picture.Stride(); ++i) ASSERT_FALSE(IsForbidden(pixels.Row(0) + i)) << i;
  EXPECT_TRUE(IsForbidden(pixels.Row(0) - 1));
  EXPECT_TRUE(IsForbidden(pixels.Row(2) + picture.Stride()));
}

#else

TEST(RowPadding, IsWatchedBySanitizersOnly) { EXPECT_FALSE(ForbidsPadding); }

#endif

}  // namespace
}  // namespace kw
