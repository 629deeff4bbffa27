#pragma once

#include "commands/Dispatcher.h"
#include "devices/ClipboardWatch.h"
#include "form/EditorForm.h"
#include "trap/Trap.h"

namespace kw {

// Takes an image from a scanner and pastes it onto the open page.
class Scanning {
public:
  // What is referred to must outlive the scanning.
  Scanning(EditorForm& editorForm, Trap& errorTrap, ClipboardWatch& watch, Dispatcher& commandDispatcher);

  void SelectScanner();
  // Returns when the scan is over; anything may happen meanwhile. During an acquisition a second one does nothing.
  void Acquire();
  void chkCancelScanning_Click();

private:
  EditorForm& form;
  Trap& trap;
  ClipboardWatch& clipboardWatch;
  Dispatcher& dispatcher;
  bool isAcquiring = false;
};

}  // namespace kw
