// Upright pages against the plain definition of each orientation.

#include "picture/Orientation.h"

#include "picture/effects/ParallelRows.h"
#include "tests/picture/Scratch.h"

namespace kw {
namespace {

// The stored pixel that is (x, y) of the upright page; numbered as in Exif.
struct Place {
  std::int32_t column;
  std::int32_t row;
};
Place StoredPlace(const Bitmap& stored, Orientation orientation, std::int32_t x, std::int32_t y) {
  const std::int32_t right = stored.Width() - 1;
  const std::int32_t bottom = stored.Height() - 1;
  switch (orientation) {
    case 2:
      return {right - x, y};
    case 3:
      return {right - x, bottom - y};
    case 4:
      return {x, bottom - y};
    case 5:
      return {y, x};
    case 6:
      return {y, bottom - x};
    case 7:
      return {right - y, bottom - x};
    case 8:
      return {right - y, x};
    default:
      return {x, y};
  }
}

unsigned ValueAt(const Bitmap& picture, std::int32_t x, std::int32_t y) {
  const auto row = picture.Row(y);
  const auto at = static_cast<std::size_t>(x);
  const int depth = picture.BitsPerPixel();
  if (depth < 8) return static_cast<unsigned>(PaletteIndexAt(row, at, depth));
  unsigned value = 0;
  const auto size = static_cast<std::size_t>(depth / 8);
  for (std::size_t i = 0; i < size; ++i) value = value << 8U | row[at * size + i];
  return value;
}

testing::AssertionResult IsUpright(const Bitmap& page, const Bitmap& stored, Orientation orientation) {
  for (std::int32_t y = 0; y < page.Height(); ++y) {
    for (std::int32_t x = 0; x < page.Width(); ++x) {
      const Place place = StoredPlace(stored, orientation, x, y);
      if (ValueAt(page, x, y) == ValueAt(stored, place.column, place.row)) continue;
      return testing::AssertionFailure() << "another pixel at " << x << ", " << y;
    }
  }
  return testing::AssertionSuccess();
}

class UprightPages : public testing::TestWithParam<int> {
protected:
  UprightPages() { SetLeastWork(1); }
  ~UprightPages() override {
    SetLeastWork(0);
    SetMostThreads(0);
  }
};

TEST_P(UprightPages, HaveEachPixelInItsPlace) {
  constexpr std::pair<std::int32_t, std::int32_t> sizes[] = {{1, 1},   {1, 70},  {70, 1},   {7, 9},
                                                             {16, 16}, {67, 35}, {131, 70}, {64, 129}};
  for (const auto& [width, height] : sizes) {
    const Bitmap stored = Noise(width, height, GetParam());
    for (Orientation orientation = 0; orientation <= 9; ++orientation) {
      for (const unsigned threads : {1U, 3U}) {
        SetMostThreads(threads);
        const Bitmap page = Upright(stored, orientation, {});
        SCOPED_TRACE(std::to_string(width) + " x " + std::to_string(height) + ", orientation " +
                     std::to_string(orientation));
        ASSERT_EQ(page.Width(), IsOnItsSide(orientation) ? height : width);
        ASSERT_EQ(page.Height(), IsOnItsSide(orientation) ? width : height);
        ASSERT_EQ(page.BitsPerPixel(), stored.BitsPerPixel());
        EXPECT_TRUE(std::ranges::equal(page.Palette(), stored.Palette()));
        ASSERT_TRUE(IsUpright(page, stored, orientation));
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, UprightPages, testing::Values(1, 4, 8, 24, 32));

}  // namespace
}  // namespace kw
