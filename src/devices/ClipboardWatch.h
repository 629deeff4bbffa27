#pragma once

#include "components/platform/Desktop.h"
#include "document/EditorContext.h"
#include "form/EditorForm.h"
#include "trap/Trap.h"

namespace kw {

// Keeps the paste button and the paste entry of the selection menu enabled exactly while a paste can succeed.
class ClipboardWatch : private EditorContext {
public:
  explicit ClipboardWatch(const EditorContext& context);

  void tmrWatchClipBoard_Timer();

private:
};

}  // namespace kw
