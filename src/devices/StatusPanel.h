#pragma once

#include "components/controls/RaisedArea.h"
#include "components/controls/UserControl.h"
#include "trap/Procedure.h"

namespace kw {

// Shows a status panel in the middle of the control, in front of everything else.
void ShowCentred(RaisedArea& panel, const UserControl& editor);

// A device at work, as long as this lives: the flag is true. At its end, also when an error leaves the procedure, the
// panel is hidden and the flag cleared; if the panel cannot be hidden in full, that is not reported.
class DeviceAtWork {
public:
  DeviceAtWork(Procedure& procedure, RaisedArea& statusPanel, bool& flag)
      : run(procedure), panel(statusPanel), isAtWork(flag) {
    flag = true;
  }
  DeviceAtWork(const DeviceAtWork&) = delete;
  DeviceAtWork& operator=(const DeviceAtWork&) = delete;
  ~DeviceAtWork() {
    run.Attempt([&] { panel.SetVisible(false); });
    isAtWork = false;
  }

private:
  Procedure& run;
  RaisedArea& panel;
  bool& isAtWork;
};

}  // namespace kw
