#include "bench/Pages.h"

#include <algorithm>
#include <random>
#include <vector>

namespace kw {

Bitmap FaxPage(std::int32_t height) {
  constexpr std::int32_t margin = 200;
  constexpr std::int32_t lineHeight = 60;
  constexpr std::int32_t letterHeight = 36;
  Bitmap made(PageWidth, height, 1);
  made.SetPalette({{255, 255, 255}, {0, 0, 0}});
  made.SetResolution(300, 300);
  std::mt19937 random(1);
  std::vector<std::uint8_t> line(made.RowBytes());
  for (std::int32_t y = margin; y < height - margin; ++y) {
    if (y % lineHeight >= letterHeight) continue;
    if (y % 6 == 0) {
      for (std::size_t x = 25; x < line.size() - 25; ++x) {
        if (x % 4 == 3) {
          line[x] = 0;
          continue;
        }
        const auto bits = random();
        line[x] = static_cast<std::uint8_t>(bits & random());
      }
    }
    std::ranges::copy(line, made.MutableRow(y).begin());
  }
  return made;
}

Bitmap Photograph() {
  Bitmap made(PageWidth, PageHeight, 24);
  made.SetResolution(300, 300);
  std::minstd_rand random(7);
  for (std::int32_t y = 0; y < PageHeight; ++y) {
    const auto row = made.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) {
      const auto shade = 90 + i % 3 * 30 + i / 40 % 50 + static_cast<std::size_t>(y) / 25 % 40;
      row[i] = static_cast<std::uint8_t>(shade + static_cast<unsigned>(random()) % 8);
    }
  }
  return made;
}

}  // namespace kw
