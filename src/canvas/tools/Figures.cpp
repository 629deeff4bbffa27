// Ellipses, lines, rectangles and texts.

#include "canvas/tools/ToolKit.h"

namespace kw {
namespace {

template <FigureKind Kind>
void MakeFigure(ToolKit& kit, Procedure& run, const ToolUse& /*use*/) {
  kit.MakeFigure(run, Kind);
}

void MakeText(ToolKit& kit, Procedure& run, const ToolUse& /*use*/) {
  const auto layer = kit.MakeFigure(run, FigureKind::Text);
  if (layer == nullptr) return;
  run([&] { layer->SetTextFont(kit.layers.CurrentLayer().TextFont()); });
  run([&] { layer->SetTyping(true); });
}

}  // namespace

const Tool tools::Text{.key = "Text",
                       .toolTip = "Text",
                       .gesture = Gesture::Frame,
                       .pointer = MousePointer::Custom,
                       .buttonPlace = 5,
                       .cursorPlace = 12,
                       .act = &MakeText};

const Tool tools::Circle{.key = "Circle",
                         .toolTip = "Circle",
                         .gesture = Gesture::Frame,
                         .pointer = MousePointer::Cross,
                         .buttonPlace = 8,
                         .cursorPlace = 2,
                         .act = &MakeFigure<FigureKind::Ellipse>};

const Tool tools::Line{.key = "Line",
                       .toolTip = "Line",
                       .gesture = Gesture::Frame,
                       .pointer = MousePointer::Cross,
                       .buttonPlace = 6,
                       .cursorPlace = 4,
                       .act = &MakeFigure<FigureKind::Line>};

const Tool tools::Rectangle{.key = "Rectangle",
                            .toolTip = "Rectangle",
                            .gesture = Gesture::Frame,
                            .pointer = MousePointer::Cross,
                            .buttonPlace = 7,
                            .cursorPlace = 5,
                            .act = &MakeFigure<FigureKind::Rectangle>};

}  // namespace kw
