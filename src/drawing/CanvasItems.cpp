#include "drawing/CanvasItems.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "components/LightWeightMarker.h"

namespace kw {
namespace {

constexpr Colour Black = MakeColour(0, 0, 0);
constexpr std::int32_t FrameWidth = 1;

std::uint64_t KeyOf(const void* shown) { return reinterpret_cast<std::uintptr_t>(shown); }

// The figure that a layer draws, inset by half the line so that nothing of it is cut off.
std::optional<Shape> FigureOf(const TransparentPicture& layer, const PixelRect& contents) {
  const Figure& figure = layer.DrawnFigure();
  if (figure.kind == FigureKind::Picture || figure.kind == FigureKind::Text) return std::nullopt;
  const double inset = layer.LineWidth() / 2.0;
  const double right = contents.Width() - inset;
  const double bottom = contents.Height() - inset;
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
  return shape;
}

DisplayItem ItemOf(const TransparentPicture& layer) {
  DisplayItem item;
  item.key = KeyOf(&layer);
  item.place = PixelsOfLayer(layer);
  item.rim = layer.SelectionFrame() != 0 ? FrameWidth : 0;
  item.picture = layer.Picture();
  item.shape = FigureOf(layer, ContentsOfLayer(layer));
  item.look = {.transparent = layer.TransparentColor(), .isLightened = layer.IsLightened()};
  const bool isText = layer.DrawnFigure().kind == FigureKind::Text;
  if (isText && layer.BackColor() != layer.TransparentColor()) item.ground = layer.BackColor();
  // While a text is typed, the field that takes the typing shows it.
  if (!layer.Caption().empty() && !layer.IsTyping()) {
    item.text = TextRun{.text = layer.Caption(), .font = layer.TextFont(), .colour = layer.ForeColor()};
  }
  if (layer.SelectionFrame() != 0) {
    item.frame = DisplayItem::Frame::Solid;
  } else if (layer.IsToShowBorderMarks()) {
    item.frame = DisplayItem::Frame::Dotted;
  }
  item.frameColour = Black;
  item.hasHandles = layer.IsToShowResize();
  return item;
}

}  // namespace

PixelRect PixelsOf(const Control& control) {
  const Control* const container = control.Container();
  const float unit = container != nullptr && container->ScaleUnit() == Unit::Twips ? TwipsPerPixel : 1.0F;
  const auto pixel = [unit](float value) {
    constexpr float farthest = 0x1p30F;  // so that no sum or difference of two leaves the range
    return static_cast<std::int32_t>(std::lround(std::clamp(value / unit, -farthest, farthest)));
  };
  return {pixel(control.Left()), pixel(control.Top()), pixel(control.Left() + control.Width()),
          pixel(control.Top() + control.Height())};
}

PixelRect PixelsOfLayer(const TransparentPicture& layer) {
  PixelRect place = PixelsOf(layer);
  if (layer.SelectionFrame() != 0) {
    place.right += 2 * FrameWidth;
    place.bottom += 2 * FrameWidth;
  }
  return place;
}

PixelRect ContentsOfLayer(const TransparentPicture& layer) {
  return Inset(PixelsOfLayer(layer), layer.SelectionFrame() != 0 ? FrameWidth : 0);
}

bool IsCanvasItem(const Control& child) {
  return dynamic_cast<const TransparentPicture*>(&child) != nullptr ||
         dynamic_cast<const LightWeightMarker*>(&child) != nullptr;
}

std::vector<DisplayItem> ItemsOf(const PictureBox& canvas) {
  std::vector<DisplayItem> items;
  items.reserve(canvas.Children().size() + 1);
  if (const Bitmap& picture = canvas.Picture(); !picture.IsEmpty()) {
    DisplayItem& item = items.emplace_back();
    item.key = KeyOf(&canvas);
    item.place = {0, 0, picture.Width(), picture.Height()};
    item.picture = picture;
  }
  for (const Control* child : canvas.Children()) {
    if (!child->Visible()) continue;
    if (const auto* layer = dynamic_cast<const TransparentPicture*>(child)) {
      items.push_back(ItemOf(*layer));
    } else if (const auto* marker = dynamic_cast<const LightWeightMarker*>(child)) {
      DisplayItem& item = items.emplace_back();
      item.key = KeyOf(marker);
      item.place = PixelsOf(*marker);
      item.ground = marker->Color();
    }
  }
  return items;
}

}  // namespace kw
