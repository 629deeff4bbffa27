// Pictures that are laid on the page: of a file, and the signature.

#include "canvas/tools/ToolKit.h"
#include "document/GraphicFiles.h"
#include "picture/PictureDocument.h"
#include "scene/CanvasItems.h"

namespace kw {
namespace {

constexpr Colour White = MakeColour(255, 255, 255);

void PlaceImage(ToolKit& kit, Procedure& run, const ToolUse& /*use*/) {
  const PixelRect within = PixelsOf(kit.form.fr);
  const std::uint64_t document = kit.openings.Count();
  Bitmap picture;
  const bool isChosen = run.Ask<bool>(
      [&] {
        OpenDialog dialog;
        dialog.filter = SupportedGraphicFiles;
        if (!kit.desktop.ShowOpen(dialog)) return false;
        picture = LoadPicture(dialog.fileName);
        return true;
      },
      false);
  // While the dialog was up, another document may have been opened.
  if (isChosen && kit.openings.Count() == document) kit.PlacePicture(run, picture, within);
}

void PlaceSignature(ToolKit& kit, Procedure& run, const ToolUse& /*use*/) {
  const Bitmap signature = kit.state.SignatureImage();
  const auto layer = kit.PlacePicture(run, signature, PixelsOf(kit.form.fr));
  // Its paper is transparent already, and the ink must not be, whatever the background colour.
  if (layer != nullptr) run([&] { layer->SetTransparentColor(White); });
}

}  // namespace

const Tool tools::Image{.key = "Image",
                        .toolTip = "Image",
                        .gesture = Gesture::Frame,
                        .pointer = MousePointer::Cross,
                        .buttonPlace = 10,
                        .cursorPlace = 3,
                        .act = &PlaceImage};

const Tool tools::Signature{.key = "Signature",
                            .toolTip = "Signature",
                            .gesture = Gesture::Frame,
                            .pointer = MousePointer::Cross,
                            .buttonPlace = 11,
                            .cursorPlace = 6,
                            .act = &PlaceSignature};

}  // namespace kw
