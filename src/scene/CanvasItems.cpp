#include "scene/CanvasItems.h"

namespace kw {
namespace {

constexpr Colour InkBlack = MakeColour(0, 0, 0);
constexpr std::int32_t FrameWidth = 1;

std::uint64_t KeyOf(const void* shown) { return reinterpret_cast<std::uintptr_t>(shown); }

bool IsDrawn(const Figure& figure) { return figure.kind != FigureKind::Picture && figure.kind != FigureKind::Text; }

std::int32_t LineOf(const TransparentPicture& layer, const Scale& scale) {
  return scale.LengthOnDevice(layer.LineWidth());
}

// The bounds of a layer's contents on the device. A side as long as the line is wide stays as long as the scaled line.
PixelRect ContentsOnDevice(const TransparentPicture& layer, const Scale& scale) {
  const PixelRect own = ContentsOfLayer(layer);
  PixelRect contents = scale.ToDevice(own);
  if (IsDrawn(layer.DrawnFigure())) {
    if (own.Width() == layer.LineWidth()) contents.right = contents.left + LineOf(layer, scale);
    if (own.Height() == layer.LineWidth()) contents.bottom = contents.top + LineOf(layer, scale);
  }
  return contents;
}

std::int32_t RimOf(const TransparentPicture& layer, const Scale& scale) {
  return layer.SelectionFrame() != 0 ? scale.LengthOnDevice(FrameWidth) : 0;
}

// The figure that a layer draws, inset by half the line width, so that nothing is cut off.
std::optional<Shape> FigureOf(const TransparentPicture& layer, const Scale& scale) {
  const Figure& figure = layer.DrawnFigure();
  if (!IsDrawn(figure)) return std::nullopt;
  const PixelRect contents = ContentsOnDevice(layer, scale);
  const double line = LineOf(layer, scale);
  const double inset = line / 2;
  const double right = contents.Width() - inset;
  const double bottom = contents.Height() - inset;
  Shape shape;
  shape.box = {inset, inset, right, bottom};
  shape.lineWidth = line;
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

// The contents with everything that shows how a layer is worked on.
DisplayItem ItemOf(const TransparentPicture& layer, const Scale& scale) {
  DisplayItem item = ContentsItemOf(layer, scale);
  item.frameWidth = scale.LengthOnDevice(FrameWidth);
  item.rim = RimOf(layer, scale);
  item.bounds = BoundsOnDevice(layer, scale);
  if (layer.IsTyping()) item.text.reset();  // the edit field shows it
  if (layer.SelectionFrame() != 0) {
    item.frame = DisplayItem::Frame::Solid;
  } else if (layer.IsToShowBorderMarks()) {
    item.frame = DisplayItem::Frame::Dotted;
  }
  item.frameColour = InkBlack;
  item.hasHandles = layer.IsToShowResize();
  item.handleSize = scale.LengthOnDevice(DisplayItem::HandleSize);
  return item;
}

// Where a picture lies in the middle of a room of that size, pixel for pixel.
PixelRect MiddleOf(const PixelRect& room, const Bitmap& picture) {
  const std::int32_t left = (room.Width() - picture.Width()) / 2;
  const std::int32_t top = (room.Height() - picture.Height()) / 2;
  return {left, top, left + picture.Width(), top + picture.Height()};
}

}  // namespace

float UnitsPerPixel(const Control& container) { return container.ScaleUnit() == Unit::Twips ? TwipsPerPixel : 1.0F; }

Box BoundsOf(const Control& control) {
  const Control* const container = control.Container();
  const float unit = container == nullptr ? 1.0F : UnitsPerPixel(*container);
  return {control.Left() / unit, control.Top() / unit, (control.Left() + control.Width()) / unit,
          (control.Top() + control.Height()) / unit};
}

PixelRect PixelsOf(const Control& control) { return Scale().ToDevice(BoundsOf(control)); }

PixelRect PixelsOfLayer(const TransparentPicture& layer) {
  PixelRect bounds = PixelsOf(layer);
  if (layer.SelectionFrame() != 0) {
    bounds.right += 2 * FrameWidth;
    bounds.bottom += 2 * FrameWidth;
  }
  return bounds;
}

PixelRect ContentsOfLayer(const TransparentPicture& layer) {
  return Inset(PixelsOfLayer(layer), layer.SelectionFrame() != 0 ? FrameWidth : 0);
}

PixelRect BoundsOnDevice(const TransparentPicture& layer, const Scale& scale) {
  return Inset(ContentsOnDevice(layer, scale), -RimOf(layer, scale));
}

PixelRect BoundsOnDevice(const LightWeightMarker& marker, const Scale& scale) {
  return scale.ToDevice(PixelsOf(marker));
}

bool IsCanvasItem(const Control& child) {
  return dynamic_cast<const TransparentPicture*>(&child) != nullptr ||
         dynamic_cast<const LightWeightMarker*>(&child) != nullptr;
}

DisplayItem ContentsItemOf(const TransparentPicture& layer, const Scale& scale) {
  DisplayItem item;
  item.key = KeyOf(&layer);
  item.bounds = ContentsOnDevice(layer, scale);
  item.picture = layer.Picture();
  item.shape = FigureOf(layer, scale);
  item.options = {.transparent = layer.TransparentColor(), .isLightened = layer.IsLightened()};
  const bool isText = layer.DrawnFigure().kind == FigureKind::Text;
  if (isText && layer.BackColor() != layer.TransparentColor()) item.background = layer.BackColor();
  if (!layer.Caption().empty()) {
    item.text = TextRun{.text = layer.Caption(), .font = scale.ToDevice(layer.TextFont()), .colour = layer.ForeColor()};
  }
  return item;
}

std::vector<DisplayItem> ItemsOf(const PictureBox& canvas, const Scale& scale) {
  std::vector<DisplayItem> items;
  CollectItems(canvas, scale, items);
  return items;
}

void CollectItems(const PictureBox& canvas, const Scale& scale, std::vector<DisplayItem>& items) {
  items.clear();
  if (const Bitmap& picture = canvas.Picture(); !picture.IsEmpty()) {
    DisplayItem& item = items.emplace_back();
    item.key = KeyOf(&canvas);
    item.bounds = canvas.IsPreview() ? MiddleOf(scale.ToDevice(BoundsOf(canvas)), picture)
                                     : scale.ToDevice(PixelRect{0, 0, picture.Width(), picture.Height()});
    if (canvas.IsPreview()) item.background = MakeColour(255, 255, 255);
    item.picture = picture;
  }
  for (const Control* child : canvas.Children()) {
    if (!child->Visible()) continue;
    if (const auto* layer = dynamic_cast<const TransparentPicture*>(child)) {
      items.push_back(ItemOf(*layer, scale));
    } else if (const auto* marker = dynamic_cast<const LightWeightMarker*>(child)) {
      DisplayItem& item = items.emplace_back();
      item.key = KeyOf(marker);
      item.bounds = BoundsOnDevice(*marker, scale);
      item.background = marker->Color();
    }
  }
}

}  // namespace kw
