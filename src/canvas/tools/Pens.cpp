// The pen, and the rubber, which draws in the background colour.

#include "canvas/tools/ToolKit.h"

namespace kw {
namespace {

void BeginInk(ToolKit& kit, Procedure& run, const ToolUse& use) {
  run([&] { kit.stroke.Begin(use.x, use.y, kit.form.SampleForeGroundColor.BackColor()); });
}

void BeginRubbing(ToolKit& kit, Procedure& run, const ToolUse& use) {
  run([&] { kit.stroke.Begin(use.x, use.y, kit.form.SampleBackGroundColor.BackColor()); });
}

}  // namespace

const Tool tools::Pen{.key = "Pen",
                      .toolTip = "Pen",
                      .gesture = Gesture::Stroke,
                      .pointer = MousePointer::Custom,
                      .buttonPlace = 4,
                      .cursorPlace = 9,
                      .act = &BeginInk};

const Tool tools::Rubber{.key = "Rubber",
                         .toolTip = "Rubber",
                         .gesture = Gesture::Stroke,
                         .pointer = MousePointer::Custom,
                         .buttonPlace = 9,
                         .cursorPlace = 10,
                         .act = &BeginRubbing};

}  // namespace kw
