#include "components/controls/Scanner.h"

#include <utility>

#include "components/base/RaisedFlag.h"
#include "components/platform/Desktop.h"

namespace kw {
Scanner::Scanner(std::string controlName, Desktop& platform)
    : Control(std::move(controlName), "KWScannerCtl"), desktop(platform) {}

Scanner::~Scanner() = default;

void Scanner::SwitchOn(bool value) {
  if (isBusy || value == isSwitchedOn) return;
  driver = value ? desktop.MakeScannerDriver() : nullptr;
  isSwitchedOn = value;
}

void Scanner::SelectSource() {
  if (!IsReady()) return;
  const RaisedFlag busy(isBusy);
  driver->SelectSource();
}

bool Scanner::Acquire() {
  if (!IsReady()) return false;
  const RaisedFlag busy(isBusy);
  return driver->Acquire();
}

void Scanner::CancelAcquisition() {
  if (isBusy) driver->CancelAcquisition();
}

}  // namespace kw
