// How the icons of buttons are drawn, and what is drawn if their resource is damaged or memory is short.

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "resources/KwIcons.h"
#include "tests/windows/FailingMemory.h"
#include "windows/base/DrawnPixels.h"
#include "windows/base/Gdi.h"
#include "windows/base/Images.h"
#include "windows/base/Module.h"

namespace kw::test {
namespace {

constexpr int Side = 24;
constexpr std::uint32_t Ground = 0x406080;

// The place of a pixel among those of a square.
std::size_t At(int x, int y, int side) {
  return static_cast<std::size_t>(y) * static_cast<std::size_t>(side) + static_cast<std::size_t>(x);
}

// What a button of one colour shows with that icon.
std::vector<std::uint32_t> DrawnOn(const windows::Images& images, const std::string& key, bool isEnabled = true) {
  windows::BackBuffer frame;
  EXPECT_TRUE(frame.Reserve(Side, Side));
  const RECT whole = {0, 0, Side, Side};
  windows::FillWith(frame.Context(), whole, RGB(0x40, 0x60, 0x80));
  images.Draw(frame.Context(), whole, key, isEnabled);
  GdiFlush();
  std::vector<std::uint32_t> pixels;
  const FrameBuffer shown = frame.Pixels(whole);
  for (int y = 0; y < Side; ++y) {
    for (const std::uint32_t pixel : shown.Row(y, 0, Side)) pixels.push_back(pixel & 0xFFFFFF);
  }
  return pixels;
}

const std::vector<std::uint32_t> Empty(std::size_t{Side} * Side, Ground);

TEST(DrawnImages, AreBlendedWithTheirGroundInTheMiddle) {
  const windows::Images images{Scale()};
  const auto icons = windows::ReadDrawings(FirstIconId + 16, std::size(IconKeys), 16);
  int mixed = 0;
  for (std::size_t i = 0; i < icons.size(); ++i) {
    const auto drawn = DrawnOn(images, IconKeys[i]);
    for (int y = 0; y < Side; ++y) {
      for (int x = 0; x < Side; ++x) {
        const bool isInside = std::min(x, y) >= 4 && std::max(x, y) < 20;
        const std::uint32_t icon = isInside ? icons[i][At(x - 4, y - 4, 16)] : 0;
        const auto alpha = static_cast<int>(icon >> 24U);
        mixed += alpha > 0 && alpha < 255 ? 1 : 0;
        const std::uint32_t shown = drawn[At(x, y, Side)];
        for (const unsigned shift : {0U, 8U, 16U}) {
          const auto ink = static_cast<int>(icon >> shift & 255U);
          const auto ground = static_cast<int>(Ground >> shift & 255U);
          const int wanted = (ink * alpha + ground * (255 - alpha) + 127) / 255;
          ASSERT_LE(std::abs(static_cast<int>(shown >> shift & 255U) - wanted), 2)
              << IconKeys[i] << " " << x << "," << y;
        }
      }
    }
  }
  EXPECT_GT(mixed, 1000);
}

TEST(DrawnImages, ADisabledOneIsPalerAndGrey) {
  const windows::Images images{Scale()};
  const auto enabled = DrawnOn(images, "Open");
  const auto disabled = DrawnOn(images, "Open", false);
  EXPECT_NE(enabled, disabled);
  EXPECT_NE(disabled, Empty);
}

TEST(DrawnImages, AKeyWithoutAnIconShowsASquare) {
  const windows::Images images{Scale()};
  EXPECT_NE(DrawnOn(images, "no such key"), Empty);
  EXPECT_EQ(DrawnOn(images, "no such key"), DrawnOn(images, "another one"));
}

// Overwrites bytes of a resource of this program while it lives.
class DamagedResource {
public:
  DamagedResource(int id, std::size_t from, std::size_t count) {
    const HRSRC found = FindResourceW(windows::Module(), MAKEINTRESOURCEW(id), RT_RCDATA);
    bytes = static_cast<BYTE*>(LockResource(LoadResource(windows::Module(), found))) + from;
    former.assign(bytes, bytes + count);
    DWORD before = 0;
    isWritable = VirtualProtect(bytes, count, PAGE_WRITECOPY, &before) != FALSE;
    if (isWritable) std::fill_n(bytes, count, BYTE{0xFF});
  }
  DamagedResource(const DamagedResource&) = delete;
  DamagedResource& operator=(const DamagedResource&) = delete;
  ~DamagedResource() {
    if (isWritable) std::ranges::copy(former, bytes);
  }
  bool isWritable = false;

private:
  BYTE* bytes = nullptr;
  std::vector<BYTE> former;
};

TEST(DrawnImages, OfADamagedResourceEachIsASquare) {
  const int id = FirstIconId + 16;
  for (const std::size_t from : {std::size_t{0}, std::size_t{10}, std::size_t{200}}) {
    const DamagedResource damaged(id, from, 64);
    ASSERT_TRUE(damaged.isWritable);
    EXPECT_TRUE(windows::ReadDrawings(id, std::size(IconKeys), 16).empty()) << from;
    const windows::Images images{Scale()};
    EXPECT_EQ(DrawnOn(images, "Open"), DrawnOn(images, "no such key"));
    EXPECT_NE(DrawnOn(images, "Open"), Empty);
  }
  EXPECT_FALSE(windows::ReadDrawings(id, std::size(IconKeys), 16).empty());
}

TEST(DrawnImages, WithoutMemoryNothingIsDrawnAndAllOfItTheNextTime) {
  const auto whole = DrawnOn(windows::Images{Scale()}, "Open");
  long failures = 0;
  for (long which = 1;; ++which) {
    const windows::Images images{Scale()};
    windows::BackBuffer frame;
    ASSERT_TRUE(frame.Reserve(Side, Side));
    const std::string key = "Open";
    bool hasFailed = false;
    {
      const FailingMemory memory(which);
      try {
        images.Draw(frame.Context(), {0, 0, Side, Side}, key, true);
      } catch (const std::bad_alloc&) {
        hasFailed = true;
      }
      if (!memory.HasFailed()) break;
    }
    EXPECT_TRUE(hasFailed) << which;
    ++failures;
    EXPECT_EQ(DrawnOn(images, key), whole) << which;
  }
  EXPECT_GT(failures, 10);
}

}  // namespace
}  // namespace kw::test
