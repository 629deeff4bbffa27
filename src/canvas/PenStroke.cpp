#include "canvas/PenStroke.h"

#include "drawing/Outline.h"

namespace kw {

Bitmap PictureOfStroke(std::span<const Point> points, double width, Colour colour, std::int32_t pictureWidth,
                       std::int32_t pictureHeight) {
  Bitmap picture(pictureWidth, pictureHeight, 32);
  Rasteriser rasteriser;
  rasteriser.Begin({0, 0, pictureWidth, pictureHeight});
  AddPolylineStroke(rasteriser, points, width);
  rasteriser.Sweep([&](std::int32_t y, std::int32_t left, std::int32_t right, int coverage) {
    const auto row = picture.MutableRow(y);
    for (std::int32_t x = left; x < right; ++x) {
      const std::size_t at = static_cast<std::size_t>(x) * 4;
      row[at] = static_cast<std::uint8_t>(colour >> 16U);
      row[at + 1] = static_cast<std::uint8_t>(colour >> 8U);
      row[at + 2] = static_cast<std::uint8_t>(colour);
      row[at + 3] = static_cast<std::uint8_t>(coverage);
    }
  });
  return picture;
}

}  // namespace kw
