#include "canvas/tools/PenStroke.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "canvas/tools/PagePixels.h"
#include "drawing/Outline.h"

namespace kw {

void PenStroke::Begin(float x, float y, Colour colour) {
  LightWeightMarker& marker = form.point1(0);
  const auto size = static_cast<float>(form.sldLineHeight.Value());
  marker.SetColor(colour);
  marker.Move(x - size / 2, y - size / 2, size, size);
  marker.ZOrder();
  marker.SetVisible(true);
}

void PenStroke::Continue(float x, float y) {
  const LightWeightMarker& last = form.point1(form.point1.UBound());
  const float half = last.Width() / 2;
  const float left = std::nearbyint(x) - half;
  const float top = std::nearbyint(y) - half;
  if (left == last.Left() && top == last.Top()) return;  // one marker a place
  if (form.point1.UBound() == ControlArray<LightWeightMarker>::HighestIndex) {
    const float lastX = last.Left() + half;
    const float lastY = last.Top() + half;
    const Colour colour = form.point1(0).Color();
    MakeLayer();
    if (form.point1.UBound() == 0) return;  // another document was opened meanwhile
    Drop();
    Begin(lastX, lastY, colour);
  }
  const LightWeightMarker& first = form.point1(0);
  LightWeightMarker& marker = form.point1.Load(static_cast<std::int32_t>(form.point1.UBound()) + 1);
  marker.Move(left, top, first.Width(), first.Height());
  marker.ZOrder();
  marker.SetVisible(true);
}

void PenStroke::MakeLayer() {
  const float size = form.point1(0).Width();
  float left = form.point1(0).Left();
  float top = form.point1(0).Top();
  float right = left + size;
  float bottom = top + size;
  std::vector<Point> centres;
  centres.reserve(static_cast<std::size_t>(form.point1.UBound()) + 1);
  for (const auto& [index, marker] : form.point1) {
    left = std::min(left, marker->Left());
    top = std::min(top, marker->Top());
    right = std::max(right, marker->Left() + marker->Width());
    bottom = std::max(bottom, marker->Top() + marker->Height());
    centres.push_back({double{marker->Left() + marker->Width() / 2}, double{marker->Top() + marker->Height() / 2}});
  }
  // The part off the canvas is never seen.
  left = std::max(left, 0.0F);
  top = std::max(top, 0.0F);
  right = std::min(right, form.picCanvas.Width());
  bottom = std::min(bottom, form.picCanvas.Height());
  if (right <= left || bottom <= top) return;
  constexpr float rim = 1;  // for the edge's soft pixels
  left = std::floor(left) - rim;
  top = std::floor(top) - rim;
  const auto width = static_cast<std::int32_t>(std::ceil(right + rim - left));
  const auto height = static_cast<std::int32_t>(std::ceil(bottom + rim - top));
  for (Point& centre : centres) {
    centre.x -= double{left};
    centre.y -= double{top};
  }
  const Colour colour = form.point1(0).Color();
  form.picTempBuffer.SetPicture(PictureOfStroke(centres, double{size}, colour, width, height));
  const auto layer = layers.NewLayer();
  if (layer == nullptr) return;
  layer->Move(left, top, static_cast<float>(width), static_cast<float>(height));
  layer->SetTransparentColor(OtherThan(colour));  // its alpha alone says where the stroke is
  layer->SetPicture(form.picTempBuffer.Picture());
  layer->SetVisible(true);
}

void PenStroke::Drop() {
  while (form.point1.UBound() > 0) form.point1.Unload(form.point1.UBound());
  form.point1(0).SetVisible(false);
}

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
