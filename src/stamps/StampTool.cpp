#include "stamps/StampTool.h"

#include <cmath>

#include "scene/CanvasItems.h"
#include "trap/Procedure.h"

namespace kw {

StampTool::StampTool(const EditorContext& context) : EditorContext(context) {}

void StampTool::PlaceStamp(float x, float y) {
  Procedure run(trap, "PlaceStamp");
  const std::uint64_t document = openings.Count();
  frmApprovedXTimes dialog(desktop, trap);
  TransparentPicture previewText("previewText");
  TransparentPicture previewSignature("previewSignature");
  for (TransparentPicture* layer : {&previewText, &previewSignature}) {
    run([&] { layer->SetContainer(&dialog.picPreview); });
  }
  dialog.Preview.Connect([&] { ShowPreview(dialog, previewText, previewSignature); });
  run([&] {
    dialog.LastStampSelected = lastStamp;
    dialog.LastItemSelected = lastItem;
  });
  run([&] { dialog.NoOfTimes = noOfTimes; });
  run([&] { dialog.chkAttachSignature.SetValue(isToAttachSignature); });
  run([&] { dialog.chkAttachSignature.SetEnabled(!state.SignatureImage().IsEmpty()); });
  run([&] { dialog.ShowModal(); });
  if (dialog.IsCancelled) return;
  run([&] {
    lastStamp = dialog.LastStampSelected;
    lastItem = dialog.LastItemSelected;
  });
  run([&] { noOfTimes = dialog.NoOfTimes; });
  run([&] { isToAttachSignature = dialog.IsToAttachSignature; });
  if (openings.Count() != document) return;
  run([&] { MakeLayers(StampOf(dialog.StampString, isToAttachSignature), x, y); });
}

Stamp StampTool::StampOf(const std::string& text, bool hasSignature) const {
  Stamp stamp;
  stamp.text = text;
  stamp.font = layers.CurrentLayer().TextFont();
  stamp.font.bold = true;
  stamp.colour = form.SampleForeGroundColor.BackColor();
  if (hasSignature) stamp.signature = state.SignatureImage();
  return stamp;
}

void StampTool::ShowPreview(frmApprovedXTimes& dialog, TransparentPicture& text, TransparentPicture& picture) const {
  constexpr std::int32_t margin = 4;
  const Stamp stamp = StampOf(dialog.ComposedStamp(), dialog.chkAttachSignature.Value());
  const PixelRect box = PixelsOf(dialog.picPreview);
  const PixelRect page = Inset({0, 0, box.Width(), box.Height()}, margin);
  const StampPlaces places = Arrange(desktop, stamp, page, margin, margin);
  ShowText(text, stamp, places.text);
  ShowSignature(picture, stamp, places.signature);
}

void StampTool::MakeLayers(const Stamp& stamp, float x, float y) {
  const std::uint64_t document = openings.Count();
  const PixelRect page = PixelsOf(form.TransLayers(Layers::PageLayer));
  const StampPlaces places = Arrange(desktop, stamp, page, static_cast<std::int32_t>(std::lround(x)),
                                     static_cast<std::int32_t>(std::lround(y)));
  if (!places.text.IsEmpty()) {
    const auto layer = layers.NewLayer();
    if (layer == nullptr) return;
    ShowText(*layer, stamp, places.text);
    layer->SetVisible(true);
  }
  if (!places.signature.IsEmpty() && openings.Count() == document) {
    const auto layer = layers.NewLayer();
    if (layer == nullptr) return;
    ShowSignature(*layer, stamp, places.signature);
    layer->SetVisible(true);
  }
}

}  // namespace kw
