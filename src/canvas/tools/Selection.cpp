// The pointer, whose drag selects a part of the page.

#include "canvas/tools/PagePixels.h"
#include "canvas/tools/ToolKit.h"
#include "scene/CanvasItems.h"

namespace kw {
namespace {

void MakeSelection(ToolKit& kit, Procedure& run, const ToolUse& /*use*/) {
  const auto layer = kit.MakeFigure(run, FigureKind::Picture);
  if (layer == nullptr) return;
  run([&] {
    // A drag that began beside the canvas selects what lies on it.
    const PixelRect area = Common(PixelsOf(*layer), kit.CanvasPixels());
    if (area.IsEmpty()) return;
    layer->Move(static_cast<float>(area.left), static_cast<float>(area.top), static_cast<float>(area.Width()),
                static_cast<float>(area.Height()));
    layer->SetPicture(CopyOfPage(kit.form.TransLayers(Layers::PageLayer), area));
  });
  if (layer->Container() == nullptr) return;  // another document was opened meanwhile
  run([&] { kit.layers.RaiseAboveOthers(layer->Index().value_or(Layers::PageLayer)); });
}

}  // namespace

const Tool tools::NoTools{.key = "NoTools",
                          .toolTip = "Selection",
                          .gesture = Gesture::Frame,
                          .pointer = MousePointer::Default,
                          .buttonPlace = 1,
                          .cursorPlace = 1,
                          .act = &MakeSelection};

}  // namespace kw
