#include "devices/ClipboardWatch.h"

#include "trap/Procedure.h"

namespace kw {

ClipboardWatch::ClipboardWatch(const EditorContext& context) : EditorContext(context) {
  form.tmrWatchClipBoard.Tick.Connect([this] { tmrWatchClipBoard_Timer(); });
}

void ClipboardWatch::tmrWatchClipBoard_Timer() {
  Procedure run(trap, "tmrWatchClipBoard_Timer");
  bool isAllowed = false;
  const bool isKnown = run([&] {
    // In design mode the clipboard is left alone.
    const bool hasBitmap = !trap.IsAtRest() && desktop.ClipboardHasFormat(ClipboardDib);
    const bool isEditable = state.GetIsEditable();
    isAllowed = hasBitmap && isEditable;
  });
  if (!isKnown) return;  // the entries keep their state
  run([&] { BarOf(form.tbrBasicTools, "Paste").SetButtonEnabled("Paste", isAllowed); });
  run([&] { form.mnuPasteSelectedArea.SetEnabled(isAllowed); });
}

}  // namespace kw
