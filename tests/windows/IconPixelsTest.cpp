// What the program's icons and pointers look like once they are drawn.

#include <windows.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <map>
#include <string>

#include "resources/KwIcons.h"
#include "windows/base/Module.h"

namespace kw::test {
namespace {

using IconPixels = std::array<std::uint32_t, std::size_t{16} * 16>;

IconPixels PixelsOfIcon(int id) {
  IconPixels pixels = {};
  auto* const icon =
      static_cast<HICON>(LoadImageW(windows::Module(), MAKEINTRESOURCEW(id), IMAGE_ICON, 16, 16, LR_DEFAULTCOLOR));
  ICONINFO parts = {};
  if (GetIconInfo(icon, &parts) == FALSE) return pixels;
  BITMAPINFO info = {};
  info.bmiHeader = {sizeof info.bmiHeader, 16, -16, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const HDC context = GetDC(nullptr);
  EXPECT_EQ(GetDIBits(context, parts.hbmColor, 0, 16, pixels.data(), &info, DIB_RGB_COLORS), 16);
  ReleaseDC(nullptr, context);
  DeleteObject(parts.hbmColor);
  DeleteObject(parts.hbmMask);
  DestroyIcon(icon);
  return pixels;
}

TEST(DrawnIcons, NoTwoLookTheSameAndNoneIsEmpty) {
  std::map<IconPixels, std::string> seen{{IconPixels{}, "nothing"}};
  for (const IconResource& icon : IconResources) {
    const auto [other, isNew] = seen.emplace(PixelsOfIcon(icon.id), icon.key);
    EXPECT_TRUE(isNew) << icon.key << " looks like " << other->second;
  }
  EXPECT_GT(seen.size(), 40U);
}

TEST(DrawnIcons, EveryPointerPointsWithTheSpotOfItsDrawing) {
  const std::map<std::string, std::pair<DWORD, DWORD>> spots{{"Chooser.Ico", {3, 28}}, {"Fill.Ico", {5, 27}},
                                                             {"Pen.Ico", {3, 28}},     {"Rubber.Ico", {8, 24}},
                                                             {"Stamp.Ico", {16, 27}},  {"Text.Ico", {12, 16}}};
  std::size_t count = 0;
  for (const IconResource& resource : CursorResources) {
    ++count;
    auto* const cursor = static_cast<HCURSOR>(
        LoadImageW(windows::Module(), MAKEINTRESOURCEW(resource.id), IMAGE_CURSOR, 32, 32, LR_DEFAULTCOLOR));
    ICONINFO parts = {};
    ASSERT_NE(GetIconInfo(cursor, &parts), FALSE) << resource.key;
    EXPECT_EQ((std::pair{parts.xHotspot, parts.yHotspot}), spots.at(resource.key)) << resource.key;
    DeleteObject(parts.hbmColor);
    DeleteObject(parts.hbmMask);
    DestroyCursor(cursor);
  }
  EXPECT_EQ(count, spots.size());
}

}  // namespace
}  // namespace kw::test
