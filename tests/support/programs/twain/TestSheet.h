#pragma once

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace kw::test {

// The image of page `page` (from 1) that the test source scans: a device-independent bitmap of 1, 8 or 24 bits, wider
// by 8 pixels with every page.
inline std::vector<std::uint8_t> TestSheet(int page, int bitsPerPixel) {
  BITMAPINFOHEADER head = {};
  head.biSize = sizeof head;
  head.biWidth = 101 + 8 * (page - 1);
  head.biHeight = 67;
  head.biPlanes = 1;
  head.biBitCount = static_cast<WORD>(bitsPerPixel);
  head.biXPelsPerMeter = 7874;  // 200 dots per inch
  head.biYPelsPerMeter = 7874;
  std::vector<std::uint8_t> dib(sizeof head);
  std::memcpy(dib.data(), &head, sizeof head);
  const int colours = bitsPerPixel <= 8 ? 1 << bitsPerPixel : 0;
  for (int i = 0; i < colours; ++i) {
    const auto grey = static_cast<std::uint8_t>(255 * i / (colours - 1));
    dib.insert(dib.end(), {grey, grey, grey, 0});
  }
  const std::size_t stride = (static_cast<std::size_t>(head.biWidth) * head.biBitCount + 31) / 32 * 4;
  for (int y = 0; y < head.biHeight; ++y) {
    std::vector<std::uint8_t> row(stride);
    for (int x = 0; x < head.biWidth; ++x) {
      const auto at = static_cast<std::size_t>(x);
      if (bitsPerPixel == 1) {
        if ((x / 3 + y / 5 + page) % 2 == 0) row[at / 8] |= static_cast<std::uint8_t>(0x80U >> (at % 8));
      } else if (bitsPerPixel == 8) {
        row[at] = static_cast<std::uint8_t>(x + y + page);
      } else {
        row[3 * at] = static_cast<std::uint8_t>(2 * x);
        row[3 * at + 1] = static_cast<std::uint8_t>(3 * y);
        row[3 * at + 2] = static_cast<std::uint8_t>(40 * page);
      }
    }
    dib.insert(dib.end(), row.begin(), row.end());
  }
  return dib;
}

}  // namespace kw::test
