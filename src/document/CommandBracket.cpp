#include "document/CommandBracket.h"

#include "document/PageFiles.h"
#include "trap/Procedure.h"

namespace kw {

CommandBracket::CommandBracket(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, Layers& layerArray,
                               Zoom& zoomFactor, PictureEngine& engine)
    : desktop(platform), form(editorForm), trap(errorTrap), layers(layerArray), zoom(zoomFactor), KWPic(engine) {}

void CommandBracket::DoPreCommandProcess() {
  Procedure run(trap, "DoPreCommandProcess");
  run([&] { form.editor.SetPointer(MousePointer::Hourglass); });
  run([&] { desktop.ShowMessageBox("DoPreCommandProcess"); });
}

void CommandBracket::DoPostCommandProcess() {
  Procedure run(trap, "DoPostCommandProcess");
  run([&] { layers.CurrentLayer().SetHeight(static_cast<float>(KWPic.Height())); });
  run([&] { layers.CurrentLayer().SetWidth(static_cast<float>(KWPic.Width())); });
  run([&] { KWPic.ConvertToBitsPerPixel(m_BitsPerPixel); });
  // A failed save leaves no older picture behind to be shown in place of this one.
  const bool isSaved = run([&] { KWPic.Save(GetTempImagePath(desktop)); });
  run([&] {
    if (isSaved) layers.CurrentLayer().SetPicture(desktop.LoadPicture(GetTempImagePath(desktop)));
  });
  run([&] { zoom.UpdateAndZoom(); });
  run([&] { form.editor.SetPointer(MousePointer::Default); });
}

}  // namespace kw
