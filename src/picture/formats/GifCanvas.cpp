#include "picture/formats/GifCanvas.h"

#include <algorithm>
#include <utility>

namespace kw {
namespace {

void PutPixel(std::span<std::uint8_t> row, std::size_t x, Rgb colour) {
  row[x * 3] = colour.blue;
  row[x * 3 + 1] = colour.green;
  row[x * 3 + 2] = colour.red;
}

}  // namespace

Rgb GifColourOf(const ColorMapObject* colours, std::size_t index) {
  if (index >= static_cast<std::size_t>(colours->ColorCount)) return {};
  const GifColorType& entry = colours->Colors[index];
  return {entry.Red, entry.Green, entry.Blue};
}

bool GifCanvas::Draw(GifDecoder& decoder, const GifFrame& frame) {
  Dispose();
  if (frame.disposal == DISPOSE_PREVIOUS) before = picture;
  last = frame;
  const auto width = static_cast<std::size_t>(picture.Width());
  const auto height = static_cast<std::size_t>(picture.Height());
  const ColorMapObject* colours = decoder.Colours();
  return decoder.ReadPixels(frame, [&](std::size_t y, const std::vector<GifPixelType>& indices) {
    if (frame.top + y >= height) return;
    const auto row = picture.MutableRow(static_cast<std::int32_t>(frame.top + y));
    for (std::size_t x = 0; x < indices.size() && frame.left + x < width; ++x) {
      if (indices[x] != frame.transparent) PutPixel(row, frame.left + x, GifColourOf(colours, indices[x]));
    }
  }) == frame.height;
}

void GifCanvas::Cover(Bitmap page, const GifFrame& frame) {
  Dispose();
  if (frame.disposal == DISPOSE_PREVIOUS) before = picture;
  last = frame;
  picture = std::move(page);
}

Bitmap GifCanvas::Background() const {
  GifCanvas next = *this;
  next.Dispose();
  return std::move(next.picture);
}

void GifCanvas::Dispose() {
  if (last.disposal == DISPOSE_PREVIOUS) picture = std::exchange(before, {});
  if (last.disposal == DISPOSE_BACKGROUND) {
    const auto bottom = std::min(last.top + last.height, static_cast<std::size_t>(picture.Height()));
    const auto right = std::min(last.left + last.width, static_cast<std::size_t>(picture.Width()));
    for (std::size_t y = last.top; y < bottom; ++y) {
      const auto row = picture.MutableRow(static_cast<std::int32_t>(y));
      for (std::size_t x = last.left; x < right; ++x) PutPixel(row, x, GifPaper);
    }
  }
  last = {};
}

}  // namespace kw
