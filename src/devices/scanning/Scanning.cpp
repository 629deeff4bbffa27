#include "devices/scanning/Scanning.h"

#include "devices/StatusPanel.h"
#include "trap/Procedure.h"

namespace kw {

Scanning::Scanning(const EditorContext& context, ClipboardWatch& watch, Dispatcher& commands)
    : EditorContext(context), clipboardWatch(watch), dispatcher(commands) {
  form.chkCancelScanning.Click.Connect([this] {
    if (form.chkCancelScanning.Value()) chkCancelScanning_Click();  // not when the procedure sets it back
  });
}

void Scanning::SelectScanner() {
  Procedure run(trap, "SelectScanner");
  run([&] { form.KWScannerCtl1.SwitchOn(true); });
  run([&] { form.KWScannerCtl1.SelectSource(); });
}

void Scanning::Acquire() {
  Procedure run(trap, "Acquire");
  if (isAcquiring) return;
  const DeviceAtWork scan(run, form.kwraScanningStatus, isAcquiring);
  run([&] { ShowCentred(form.kwraScanningStatus, form.editor); });
  run([&] { form.KWScannerCtl1.SwitchOn(true); });
  const bool isAcquired = run.Ask<bool>([&] { return form.KWScannerCtl1.Acquire(); }, false);
  if (isAcquired) {
    run([&] { clipboardWatch.tmrWatchClipBoard_Timer(); });
    run([&] { dispatcher.tbrBasicTools_ButtonClick("Paste"); });
  }
  run([&] { form.kwraScanningStatus.SetVisible(false); });
}

void Scanning::chkCancelScanning_Click() {
  Procedure run(trap, "chkCancelScanning_Click");
  run([&] { form.KWScannerCtl1.CancelAcquisition(); });
  run([&] { form.chkCancelScanning.SetValue(false); });
  run([&] { form.kwraScanningStatus.SetVisible(false); });
}

}  // namespace kw
