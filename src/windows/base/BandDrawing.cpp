#include "windows/base/BandDrawing.h"

#include <cstring>

#include "components/base/LongWork.h"

namespace kw::windows {
namespace {

// A BITMAPINFO with up to 256 colours.
struct Description {
  BITMAPINFOHEADER head;
  RGBQUAD colours[256];
};

Description DescriptionOf(const Bitmap& picture, std::int32_t rows) {
  Description description = {};
  description.head.biSize = sizeof description.head;
  description.head.biWidth = picture.Width();
  description.head.biHeight = -rows;  // top-down
  description.head.biPlanes = 1;
  description.head.biBitCount = static_cast<WORD>(picture.BitsPerPixel());
  const auto palette = picture.Palette();
  description.head.biClrUsed = static_cast<DWORD>(palette.size());
  for (std::size_t i = 0; i < palette.size(); ++i) {
    description.colours[i] = {palette[i].blue, palette[i].green, palette[i].red, 0};
  }
  return description;
}

}  // namespace

BandDrawing::BandDrawing(HDC device, const RECT& bounds, std::int32_t pictureHeight)
    : context(device), place(bounds), height(pictureHeight), formerMode(GetStretchBltMode(device)) {}

LONG BandDrawing::EdgeAt(std::int32_t row) const {
  return place.top + static_cast<LONG>(std::int64_t{place.bottom - place.top} * row / height);
}

bool BandDrawing::Draw(const Bitmap& rows, std::int32_t first, std::int32_t count) {
  NoteWork();
  const auto stride = static_cast<std::size_t>(DibStride(rows.Width(), rows.BitsPerPixel()));
  memory.assign(stride * static_cast<std::size_t>(count), 0);
  for (std::int32_t y = 0; y < count; ++y) {
    const auto row = rows.Row(first + y);
    std::memcpy(memory.data() + stride * static_cast<std::size_t>(y), row.data(), row.size());
  }
  const Description description = DescriptionOf(rows, count);
  // When a picture is reduced, keep the thin black lines of a bilevel page and average the colours of others.
  SetStretchBltMode(context, rows.BitsPerPixel() == 1 ? BLACKONWHITE : HALFTONE);
  SetBrushOrgEx(context, 0, 0, nullptr);
  const LONG top = EdgeAt(next);
  next += count;
  const int drawn =
      StretchDIBits(context, place.left, top, place.right - place.left, EdgeAt(next) - top, 0, 0, rows.Width(), count,
                    memory.data(), reinterpret_cast<const BITMAPINFO*>(&description), DIB_RGB_COLORS, SRCCOPY);
  return drawn != 0 && drawn != static_cast<int>(GDI_ERROR);
}

}  // namespace kw::windows
