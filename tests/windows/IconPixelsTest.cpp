// What the program's icons and pointers look like once they are drawn.

#include <windows.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <utility>

#include "resources/KwIcons.h"
#include "windows/base/DrawnPixels.h"
#include "windows/base/Images.h"

namespace kw::test {
namespace {

windows::DrawnPixels PixelsOf(HBITMAP bitmap, int side) {
  windows::DrawnPixels pixels(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
  BITMAPINFO info = {};
  info.bmiHeader = {sizeof info.bmiHeader, side, -side, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  const HDC context = GetDC(nullptr);
  EXPECT_EQ(GetDIBits(context, bitmap, 0, static_cast<UINT>(side), pixels.data(), &info, DIB_RGB_COLORS), side);
  ReleaseDC(nullptr, context);
  return pixels;
}

TEST(DrawnIcons, NoTwoLookTheSameAndNoneIsEmpty) {
  for (const int side : IconSizes) {
    const auto icons = windows::ReadDrawings(FirstIconId + side, std::size(IconKeys), side);
    ASSERT_EQ(icons.size(), std::size(IconKeys));
    std::map<windows::DrawnPixels, std::string> seen{{windows::DrawnPixels(icons[0].size()), "nothing"}};
    for (std::size_t i = 0; i < icons.size(); ++i) {
      const auto [other, isNew] = seen.emplace(icons[i], IconKeys[i]);
      EXPECT_TRUE(isNew) << IconKeys[i] << " looks like " << other->second << " at " << side;
    }
    EXPECT_GT(seen.size(), 40U);
  }
}

TEST(DrawnIcons, EachStandsUnderItsOwnKey) {
  const auto icons = windows::ReadDrawings(FirstIconId + 16, std::size(IconKeys), 16);
  for (std::size_t i = 0; i < icons.size(); ++i) {
    std::ifstream file(std::filesystem::path(KW_ICONS) / (std::string(IconKeys[i]) + ".16"), std::ios::binary);
    windows::DrawnPixels drawn(icons[i].size());
    file.read(reinterpret_cast<char*>(drawn.data()), static_cast<std::streamsize>(drawn.size() * sizeof drawn[0]));
    ASSERT_TRUE(file) << IconKeys[i];
    EXPECT_EQ(icons[i], drawn) << IconKeys[i];
  }
}

TEST(DrawnIcons, NothingIsReadOfAResourceThatIsMissingOrTooShort) {
  EXPECT_TRUE(windows::ReadDrawings(FirstIconId + 17, std::size(IconKeys), 17).empty());
  EXPECT_TRUE(windows::ReadDrawings(FirstIconId + 16, std::size(IconKeys) + 1, 16).empty());
}

TEST(DrawnIcons, EveryPointerPointsWithTheSpotOfItsDrawingAndHasItsPixels) {
  const std::map<std::string, std::pair<DWORD, DWORD>> spots{{"Chooser.Ico", {3, 28}}, {"Fill.Ico", {5, 27}},
                                                             {"Pen.Ico", {3, 28}},     {"Rubber.Ico", {8, 24}},
                                                             {"Stamp.Ico", {16, 27}},  {"Text.Ico", {12, 16}}};
  for (const int dpi : {96, 144, 192}) {
    const int side = dpi / 3;
    const windows::Images images{Scale(dpi)};
    const auto drawings = windows::ReadDrawings(FirstCursorId + side, std::size(CursorDrawings), side);
    ASSERT_EQ(drawings.size(), spots.size());
    for (std::size_t i = 0; i < drawings.size(); ++i) {
      const std::string key = CursorDrawings[i].key;
      const HCURSOR cursor = images.CursorOf(MousePointer::Custom, key);
      ICONINFO parts = {};
      ASSERT_NE(GetIconInfo(cursor, &parts), FALSE) << key;
      EXPECT_FALSE(parts.fIcon) << key;
      const auto scaled = static_cast<DWORD>(side);
      EXPECT_EQ(parts.xHotspot, spots.at(key).first * scaled / 32) << key;
      EXPECT_EQ(parts.yHotspot, spots.at(key).second * scaled / 32) << key;
      EXPECT_EQ(PixelsOf(parts.hbmColor, side), drawings[i]) << key << " of " << side;
      DeleteObject(parts.hbmColor);
      DeleteObject(parts.hbmMask);
    }
  }
}

}  // namespace
}  // namespace kw::test
