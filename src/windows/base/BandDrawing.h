#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

#include "components/base/Bitmap.h"

namespace kw::windows {

// Bytes from one row to the next of a device-independent bitmap. 64 bits, because a page may have any width.
constexpr std::uint64_t DibStride(std::int32_t width, int bitsPerPixel) {
  return (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(bitsPerPixel) + 31) / 32 * 4;
}

// Draws a picture on any device in bands, so that its pixels need not be in one block.
class BandDrawing {
public:
  // The whole picture, so many rows high, fills `bounds`.
  BandDrawing(HDC device, const RECT& bounds, std::int32_t pictureHeight);
  BandDrawing(const BandDrawing&) = delete;
  BandDrawing& operator=(const BandDrawing&) = delete;
  ~BandDrawing() { SetStretchBltMode(context, formerMode); }

  // Draws rows `first` to `first` + `count` of `rows` below those before. False if the device refuses.
  bool Draw(const Bitmap& rows, std::int32_t first, std::int32_t count);
  bool Draw(const Bitmap& rows) { return Draw(rows, 0, rows.Height()); }

private:
  LONG EdgeAt(std::int32_t row) const;

  HDC context;
  RECT place;
  std::int32_t height;
  std::int32_t next = 0;  // the row that comes next
  int formerMode;
  std::vector<std::uint8_t> memory;
};

}  // namespace kw::windows
