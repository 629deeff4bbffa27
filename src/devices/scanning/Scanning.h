#pragma once

#include "commands/Dispatcher.h"
#include "devices/ClipboardWatch.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "trap/Trap.h"

namespace kw {

// Takes an image from a scanner and pastes it onto the open page.
class Scanning : private EditorContext {
public:
  // Everything passed in must outlive the scanning.
  Scanning(const EditorContext& context, ClipboardWatch& watch, Dispatcher& commands);

  void SelectScanner();
  // Returns when the scan is over; anything may happen meanwhile. During an acquisition a second one does nothing.
  void Acquire();
  void chkCancelScanning_Click();

private:
  ClipboardWatch& clipboardWatch;
  Dispatcher& dispatcher;
  bool isAcquiring = false;
};

}  // namespace kw
