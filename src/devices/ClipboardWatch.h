#pragma once

#include "components/platform/Desktop.h"
#include "document/EditorProperties.h"
#include "form/EditorForm.h"
#include "trap/Trap.h"

namespace kw {

// Keeps the paste button and the paste entry of the selection menu enabled exactly while a paste can succeed.
class ClipboardWatch {
public:
  ClipboardWatch(Desktop& platform, EditorForm& editorForm, Trap& errorTrap, EditorProperties& editorProperties);

  void tmrWatchClipBoard_Timer();

private:
  Desktop& desktop;
  EditorForm& form;
  Trap& trap;
  EditorProperties& properties;
};

}  // namespace kw
