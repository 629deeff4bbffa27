#include "document/CommandBracket.h"

#include "document/ScratchBitmap.h"
#include "trap/Procedure.h"

namespace kw {

CommandBracket::CommandBracket(const Rooms& rooms)
    : desktop(rooms.desktop),
      form(rooms.form),
      trap(rooms.trap),
      layers(rooms.layers),
      zoom(rooms.zoom),
      openings(rooms.openings),
      KWPic(rooms.KWPic) {}

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
