#pragma once

#include <memory>
#include <string>

#include "components/controls/Control.h"
#include "components/platform/ScannerDriver.h"

namespace kw {

class Desktop;

// The scanner. Nothing of it is loaded before it is switched on.
class Scanner : public Control {
public:
  // The desktop must outlive the scanner.
  Scanner(std::string controlName, Desktop& platform);
  ~Scanner() override;

  bool IsSwitchedOn() const { return isSwitchedOn; }
  // Off, it forgets the choice of a source. Ignored while an acquisition is under way.
  void SwitchOn(bool value);

  // These do nothing, and acquire nothing, while it is off, during an acquisition, and if the platform has no way to
  // a scanner.
  void SelectSource();
  // True when an image was acquired and lies on the clipboard.
  bool Acquire();
  // During an acquisition only.
  void CancelAcquisition();

private:
  bool IsReady() const { return driver != nullptr && !isBusy; }

  Desktop& desktop;
  std::unique_ptr<ScannerDriver> driver;
  bool isSwitchedOn = false;
  bool isBusy = false;
};

}  // namespace kw
