#include "bench/EffectPages.h"

#include <map>
#include <random>

#include "bench/Pages.h"

namespace kw {
namespace {

Bitmap NoisyPage(int bitsPerPixel) {
  Bitmap page(PageWidth, PageHeight, bitsPerPixel);
  page.SetResolution(300, 300);
  std::minstd_rand random(7);
  for (std::int32_t y = 0; y < PageHeight; ++y) {
    const auto row = page.MutableRow(y);
    for (std::size_t i = 0; i < row.size(); ++i) {
      if (bitsPerPixel == 1) {
        row[i] = y % 50 < 20 && random() % 3 == 0 ? static_cast<std::uint8_t>(random()) : 255;
      } else if (bitsPerPixel == 32 && i % 4 == 3) {
        row[i] = 255;
      } else {
        const unsigned level = y % 50 < 20 && i / 30 % 5 < 2 ? 40U + static_cast<unsigned>(i) % 60 : 225U;
        row[i] = static_cast<std::uint8_t>(level + static_cast<unsigned>(random()) % 24);
      }
    }
  }
  return page;
}

}  // namespace

const Bitmap& PageOf(int bitsPerPixel) {
  static std::map<int, Bitmap> pages;
  const auto known = pages.find(bitsPerPixel);
  if (known != pages.end()) return known->second;
  return pages.emplace(bitsPerPixel, NoisyPage(bitsPerPixel)).first->second;
}

}  // namespace kw
