#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "picture/PictureDocument.h"
#include "tests/support/Effects.h"

namespace kw::test {

// Where the tests of the commands begin: page 2 of three is open, 24 by 16 pixels in 24 bits as all of them, with a
// background of 12 by 8 that is not shown and a signature; the tool is "Rectangle" with "FillInside", the zoom 100 %;
// every button is enabled that can be.

// A page on which every operation of the engine shows, each in another way.
inline Bitmap ScenePage(int page) {
  Bitmap picture(24, 16, 24);
  for (std::int32_t y = 0; y < picture.Height(); ++y) {
    const auto row = picture.MutableRow(y);
    for (std::int32_t x = 0; x < picture.Width(); ++x) {
      const bool isDark = x >= 9 && x < 14 && y >= 5 && y < 10;
      const int values[] = {90 + (x * 5 + y * 3) % 8 * 10, 60 + y * 9, 20 + x * 7 + page * 3};
      for (std::size_t i = 0; i < 3; ++i) {
        row[static_cast<std::size_t>(x) * 3 + i] = static_cast<std::uint8_t>(isDark ? 10 : values[i]);
      }
    }
  }
  return picture;
}

// The three pages as one document. The path has the ending of a format of several pages.
inline void WriteSceneDocument(const std::string& path) {
  for (int page = 1; page <= 3; ++page) {
    PictureDocument engine;
    engine.Replace(ScenePage(page));
    engine.Append(path);
  }
}

// The engine's picture after the operations on page 2 and the second half of the bracket, which brings it back to the
// depth of the page; the two commands that change the depth keep theirs.
inline Bitmap AfterOperations(const std::vector<std::string>& operations) {
  PictureDocument engine;
  engine.Replace(ScenePage(2));
  for (const std::string& operation : operations) Apply(engine, operation);
  const bool isDepthCommand = !operations.empty() && operations[0].ends_with("creaseBpp");
  std::int16_t depth = isDepthCommand ? engine.BitsPerPixel() : std::int16_t{24};
  engine.ConvertToBitsPerPixel(depth);
  return engine.Current();
}

}  // namespace kw::test
