#include "document/CommandBracket.h"

#include "document/ScratchBitmap.h"
#include "trap/Procedure.h"

namespace kw {

CommandBracket::CommandBracket(const EditorContext& context) : EditorContext(context) {}

void CommandBracket::DoPreCommandProcess() {
  Procedure run(trap, "DoPreCommandProcess");
  run([&] { form.editor.SetPointer(MousePointer::Hourglass); });
  run([&] { desktop.ShowMessageBox("DoPreCommandProcess"); });
}

void CommandBracket::DoPostCommandProcess() {
  DocumentProcedure run(trap, "DoPostCommandProcess", openings);
  run([&] { layers.CurrentLayer().SetHeight(static_cast<float>(KWPic.Height())); });
  run([&] { layers.CurrentLayer().SetWidth(static_cast<float>(KWPic.Width())); });
  run([&] { KWPic.ConvertToBitsPerPixel(m_BitsPerPixel); });
  run([&] { layers.CurrentLayer().SetPicture(ScratchBitmap(desktop).Pass(KWPic)); });
  run([&] { zoom.UpdateAndZoom(); });
  run([&] { form.editor.SetPointer(MousePointer::Default); });
}

}  // namespace kw
