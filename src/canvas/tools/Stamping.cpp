// The stamp, whose dialog lies in a higher room.

#include "canvas/tools/ToolKit.h"

namespace kw {
namespace {

void RequestStamp(ToolKit& kit, Procedure& run, const ToolUse& use) {
  run([&] { kit.StampRequested.Raise(use.x, use.y); });
}

}  // namespace

const Tool tools::Stamp{.key = "Stamp",
                        .toolTip = "Stamp",
                        .gesture = Gesture::Press,
                        .pointer = MousePointer::Custom,
                        .buttonPlace = 12,
                        .cursorPlace = 11,
                        .act = &RequestStamp};

}  // namespace kw
