// The colour picker, and the fill.

#include "canvas/tools/PagePixels.h"
#include "canvas/tools/ToolKit.h"

namespace kw {
namespace {

// How far red, green and blue of a region's pixels may lie from those of the pixel that was pressed: a scanner's noise.
constexpr int FillTolerance = 40;

void PickColour(ToolKit& kit, Procedure& run, const ToolUse& use) {
  run([&] {
    const auto colour = ColourOfPageAt(kit.form.TransLayers(Layers::PageLayer), use.x, use.y);
    if (!colour) return;
    if ((use.shift & Mouse::ShiftKey) != 0)
      kit.colours.LetEditorBackColor(*colour);
    else
      kit.colours.LetEditorForeColor(*colour);
  });
}

void FillRegion(ToolKit& kit, Procedure& run, const ToolUse& use) {
  run([&] { kit.form.editor.SetPointer(MousePointer::Hourglass); });
  run([&] {
    const Colour colour = kit.form.SampleForeGroundColor.BackColor();
    const auto region = RegionOfPageAt(kit.form.TransLayers(Layers::PageLayer), use.x, use.y, colour, FillTolerance);
    if (!region) return;
    const auto layer = kit.layers.NewLayer();
    if (layer == nullptr) return;
    layer->Move(region->left, region->top, region->width, region->height);
    kit.SetCommonProperties(run, *layer);
    layer->SetTransparentColor(OtherThan(colour));  // its alpha alone says where the region is
    layer->SetPicture(region->picture);
    layer->SetVisible(true);
  });
  run([&] { kit.form.editor.SetPointer(MousePointer::Default); });
}

}  // namespace

const Tool tools::Chooser{.key = "Chooser",
                          .toolTip = "Color Picker",
                          .gesture = Gesture::Point,
                          .pointer = MousePointer::Custom,
                          .buttonPlace = 2,
                          .cursorPlace = 7,
                          .act = &PickColour};

const Tool tools::Fill{.key = "Fill",
                       .toolTip = "Fill Color",
                       .gesture = Gesture::Point,
                       .pointer = MousePointer::Custom,
                       .buttonPlace = 3,
                       .cursorPlace = 8,
                       .act = &FillRegion};

}  // namespace kw
