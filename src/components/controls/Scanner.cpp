#include "components/controls/Scanner.h"

#include <utility>

#include "components/platform/Desktop.h"

namespace kw {
namespace {

// True from its making to its end, also when an error is the end.
class Flag {
public:
  explicit Flag(bool& raised) : flag(raised) { raised = true; }
  Flag(const Flag&) = delete;
  Flag& operator=(const Flag&) = delete;
  ~Flag() { flag = false; }

private:
  bool& flag;
};

}  // namespace

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
  const Flag busy(isBusy);
  driver->SelectSource();
}

bool Scanner::Acquire() {
  if (!IsReady()) return false;
  const Flag busy(isBusy);
  return driver->Acquire();
}

void Scanner::CancelAcquisition() {
  if (isBusy) driver->CancelAcquisition();
}

}  // namespace kw
