#include "canvas/LayerTools.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "canvas/PagePixels.h"
#include "components/base/Arithmetic.h"
#include "components/base/RunTimeError.h"
#include "document/GraphicFiles.h"
#include "picture/PictureDocument.h"
#include "scene/CanvasItems.h"

namespace kw {
namespace {

// How far red, green and blue of a region's pixels may lie from those of the pixel that was pressed: a scanner's noise.
constexpr int FillTolerance = 40;

constexpr Colour White = MakeColour(255, 255, 255);

}  // namespace

// In the order in which a pressed button is looked for.
struct LayerTools::RectangleTool {
  const char* key;
  void (LayerTools::*make)(Procedure& run);
};

const LayerTools::RectangleTool LayerTools::RectangleTools[] = {
    {"NoTools", &LayerTools::MakeSelection},    {"Text", &LayerTools::MakeText},
    {"Circle", &LayerTools::MakeEllipse},       {"Line", &LayerTools::MakeLine},
    {"Rectangle", &LayerTools::MakeRectangle},  {"Image", &LayerTools::PlaceImage},
    {"Signature", &LayerTools::PlaceSignature},
};

LayerTools::LayerTools(const EditorContext& context, ColoursAndLines& coloursAndLines)
    : EditorContext(context), colours(coloursAndLines) {}

void LayerTools::MakeFromFrame(Procedure& run) {
  const auto* const tool = std::find_if(std::begin(RectangleTools), std::end(RectangleTools),
                                        [&](const RectangleTool& one) { return IsPressed(one.key); });
  if (tool != std::end(RectangleTools)) (this->*tool->make)(run);
}

void LayerTools::SetCommonProperties(Procedure& run, TransparentPicture& layer) {
  run([&] { layer.SetLineColor(form.SampleForeGroundColor.BackColor()); });
  run([&] { layer.SetLineWidth(ToInteger16(form.sldLineHeight.Value())); });
  const Colour back = form.SampleBackGroundColor.BackColor();
  run([&] { layer.SetBackColor(back); });
  run([&] { layer.SetForeColor(form.SampleForeGroundColor.BackColor()); });
  run([&] {
    const bool isHollow = form.tbrFillPattern.ButtonOf("NoFillInside").pressed;
    layer.SetTransparentColor(isHollow ? back : RoundToEven<Colour>(static_cast<double>(back) / 2 + 10));
  });
  run([&] { layer.SetStyle(0); });
}

TransparentPicture* LayerTools::MakeFigure(Procedure& run, FigureKind kind) {
  TransparentPicture* const made = layers.NewLayer();
  if (made == nullptr) return nullptr;
  TransparentPicture& layer = *made;
  const TransparentPicture& fr = form.fr;
  run([&] { layer.SetIsToShowResize(false); });
  run([&] { layer.Move(fr.Left(), fr.Top(), fr.Width(), fr.Height()); });
  run([&] { layer.SetVisible(true); });
  SetCommonProperties(run, layer);
  const DragState& drag = layers.Drag();
  run([&] {
    layer.SetFigure(
        {.kind = kind, .isRising = (drag.m_CurrentX - drag.m_StartX) * (drag.m_CurrentY - drag.m_StartY) < 0});
  });
  run([&] { layer.SetTextEntry(kind == FigureKind::Text); });
  return made;
}

void LayerTools::MakeText(Procedure& run) {
  TransparentPicture* const layer = MakeFigure(run, FigureKind::Text);
  if (layer == nullptr) return;
  run([&] { layer->SetTextFont(layers.CurrentLayer().TextFont()); });
  run([&] { layer->SetTyping(true); });
}

PixelRect LayerTools::CanvasPixels() const {
  const PixelRect place = PixelsOf(form.picCanvas);
  return {0, 0, place.Width(), place.Height()};
}

void LayerTools::MakeSelection(Procedure& run) {
  TransparentPicture* const layer = MakeFigure(run, FigureKind::Picture);
  if (layer == nullptr) return;
  run([&] {
    // A drag that began beside the canvas selects what lies on it.
    const PixelRect area = Common(PixelsOf(*layer), CanvasPixels());
    if (area.IsEmpty()) return;
    layer->Move(static_cast<float>(area.left), static_cast<float>(area.top), static_cast<float>(area.Width()),
                static_cast<float>(area.Height()));
    layer->SetPicture(CopyOfPage(form.TransLayers(Layers::PageLayer), area));
  });
  run([&] { layers.RaiseAboveOthers(layer->Index().value_or(Layers::PageLayer)); });
}

TransparentPicture* LayerTools::PlacePicture(Procedure& run, const Bitmap& picture, const PixelRect& within) {
  if (picture.IsEmpty() || within.IsEmpty()) return nullptr;
  TransparentPicture* const layer = layers.NewLayer();
  if (layer == nullptr) return nullptr;
  run([&] {
    const float across = static_cast<float>(within.Width()) / static_cast<float>(picture.Width());
    const float down = static_cast<float>(within.Height()) / static_cast<float>(picture.Height());
    const float scale = std::min(across, down);
    const float width = std::max(1.0F, std::round(static_cast<float>(picture.Width()) * scale));
    const float height = std::max(1.0F, std::round(static_cast<float>(picture.Height()) * scale));
    layer->Move(static_cast<float>(within.left) + std::floor((static_cast<float>(within.Width()) - width) / 2),
                static_cast<float>(within.top) + std::floor((static_cast<float>(within.Height()) - height) / 2), width,
                height);
  });
  SetCommonProperties(run, *layer);
  run([&] { layer->SetPicture(picture); });
  run([&] { layer->SetVisible(true); });
  return layer;
}

void LayerTools::PlaceImage(Procedure& run) {
  const PixelRect within = PixelsOf(form.fr);
  const std::uint64_t document = openings.Count();
  Bitmap picture;
  const bool isChosen = run.Ask<bool>(
      [&] {
        OpenDialog dialog;
        dialog.filter = SupportedGraphicFiles;
        if (!desktop.ShowOpen(dialog)) return false;
        picture = LoadPicture(dialog.fileName);
        return true;
      },
      false);
  // While the dialog was up, another document may have been opened.
  if (isChosen && openings.Count() == document) PlacePicture(run, picture, within);
}

void LayerTools::PlaceSignature(Procedure& run) {
  const Bitmap signature = state.SignatureImage();
  TransparentPicture* const layer = PlacePicture(run, signature, PixelsOf(form.fr));
  // Its paper is transparent already, and the ink must not be, whatever the background colour.
  if (layer != nullptr) run([&] { layer->SetTransparentColor(White); });
}

bool LayerTools::RunAtPoint(Procedure& run, std::int16_t shift, float x, float y) {
  if (IsPressed("Chooser")) {
    run([&] { PickColour(shift, x, y); });
    return true;
  }
  if (IsPressed("Fill")) {
    FillRegion(run, x, y);
    return true;
  }
  return false;
}

void LayerTools::PickColour(std::int16_t shift, float x, float y) {
  const auto colour = ColourOfPageAt(form.TransLayers(Layers::PageLayer), x, y);
  if (!colour) return;
  if ((shift & Mouse::ShiftKey) != 0)
    colours.LetEditorBackColor(*colour);
  else
    colours.LetEditorForeColor(*colour);
}

void LayerTools::FillRegion(Procedure& run, float x, float y) {
  run([&] { form.editor.SetPointer(MousePointer::Hourglass); });
  run([&] {
    const Colour colour = form.SampleForeGroundColor.BackColor();
    const auto region = RegionOfPageAt(form.TransLayers(Layers::PageLayer), x, y, colour, FillTolerance);
    if (!region) return;
    TransparentPicture* const layer = layers.NewLayer();
    if (layer == nullptr) return;
    layer->Move(region->left, region->top, region->width, region->height);
    SetCommonProperties(run, *layer);
    layer->SetTransparentColor(OtherThan(colour));  // its alpha alone says where the region is
    layer->SetPicture(region->picture);
    layer->SetVisible(true);
  });
  run([&] { form.editor.SetPointer(MousePointer::Default); });
}

}  // namespace kw
