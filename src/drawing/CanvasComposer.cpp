#include "drawing/CanvasComposer.h"

#include <cmath>

#include "components/LightWeightMarker.h"
#include "drawing/DrawPicture.h"
#include "drawing/Shape.h"

namespace kw {
namespace {

// Paper is transparent: what lies below a page or a layer shows where nothing is on it.
constexpr Colour Paper = MakeColour(255, 255, 255);
constexpr Colour Black = MakeColour(0, 0, 0);
constexpr std::int32_t HandleSize = 5;

PixelRect HandleAt(std::int32_t x, std::int32_t y) { return {x, y, x + HandleSize, y + HandleSize}; }

void DrawResizeHandles(const FrameBuffer& target, const PixelRect& place) {
  const std::int32_t xs[] = {place.left, (place.left + place.right - HandleSize) / 2, place.right - HandleSize};
  const std::int32_t ys[] = {place.top, (place.top + place.bottom - HandleSize) / 2, place.bottom - HandleSize};
  for (const std::int32_t x : xs) {
    for (const std::int32_t y : ys) {
      if (x == xs[1] && y == ys[1]) continue;
      FillArea(target, HandleAt(x, y), Paper);
      FrameArea(target, HandleAt(x, y), Black);
    }
  }
}

// A layer's figure inside its place, inset by half the line so that nothing of it is cut off.
void DrawFigure(const FrameBuffer& target, const TransparentPicture& layer, const PixelRect& place) {
  const Figure& figure = layer.DrawnFigure();
  if (figure.kind == FigureKind::Picture || figure.kind == FigureKind::Text) return;
  const double inset = layer.LineWidth() / 2.0;
  const double right = place.right - place.left - inset;
  const double bottom = place.bottom - place.top - inset;
  Shape shape;
  shape.box = {inset, inset, right, bottom};
  shape.lineWidth = layer.LineWidth();
  shape.lineColour = layer.LineColor();
  if (figure.kind == FigureKind::Line) {
    shape.kind = Shape::Kind::Line;
    if (figure.isRising) shape.box = {inset, bottom, right, inset};
  } else {
    shape.kind = figure.kind == FigureKind::Ellipse ? Shape::Kind::Ellipse : Shape::Kind::Rectangle;
    shape.fill = layer.BackColor();
  }
  Rasteriser rasteriser;
  DrawShape(target, shape, {static_cast<double>(place.left), static_cast<double>(place.top)}, place,
            {.transparent = layer.TransparentColor()}, rasteriser);
}

void DrawLayer(const FrameBuffer& target, const TransparentPicture& layer, const CaptionPainter& paintCaption) {
  const PixelRect place = PixelsOf(layer);
  if (Common(place, target.area).IsEmpty()) return;
  DrawPicture(target, layer.Picture(), place, {.transparent = Paper, .isLightened = layer.IsLightened()});
  DrawFigure(target, layer, place);
  if (!layer.Caption().empty() && paintCaption) paintCaption(target, layer, place);
  if (layer.SelectionFrame() != 0) FrameArea(target, place, Black);
  if (layer.IsToShowBorderMarks()) FrameArea(target, place, Black, true);
  if (layer.IsToShowResize()) DrawResizeHandles(target, place);
}

}  // namespace

PixelRect PixelsOf(const Control& control) {
  const Control* const container = control.Container();
  const float unit = container != nullptr && container->ScaleUnit() == Unit::Twips ? TwipsPerPixel : 1.0F;
  const auto pixel = [unit](float value) { return static_cast<std::int32_t>(std::lround(value / unit)); };
  return {pixel(control.Left()), pixel(control.Top()), pixel(control.Left() + control.Width()),
          pixel(control.Top() + control.Height())};
}

bool IsComposed(const Control& child) {
  return dynamic_cast<const TransparentPicture*>(&child) != nullptr ||
         dynamic_cast<const LightWeightMarker*>(&child) != nullptr;
}

void Compose(const FrameBuffer& target, const PictureBox& canvas, const CaptionPainter& paintCaption) {
  FillArea(target, target.area, canvas.BackColor());
  const Bitmap& picture = canvas.Picture();
  DrawPicture(target, picture, {0, 0, picture.Width(), picture.Height()}, {});
  for (const Control* child : canvas.Children()) {
    if (!child->Visible()) continue;
    if (const auto* layer = dynamic_cast<const TransparentPicture*>(child)) {
      DrawLayer(target, *layer, paintCaption);
    } else if (const auto* marker = dynamic_cast<const LightWeightMarker*>(child)) {
      FillArea(target, PixelsOf(*marker), marker->Color());
    }
  }
}

}  // namespace kw
