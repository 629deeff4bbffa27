#pragma once

#include <memory>
#include <string>

#include "components/Control.h"

namespace kw {

class Desktop;

// The platform's way to its scanners. It keeps the choice of a source as long as it lives.
class ScannerDriver {
public:
  ScannerDriver() = default;
  ScannerDriver(const ScannerDriver&) = delete;
  ScannerDriver& operator=(const ScannerDriver&) = delete;
  virtual ~ScannerDriver() = default;

  // Shows the dialog in which the user chooses a source, and waits. Does nothing where there is no source.
  virtual void SelectSource() = 0;
  // Scans with the source chosen last, or the default one, and puts the image on the clipboard as a device-independent
  // bitmap; handles messages meanwhile, so anything may happen. False, with the clipboard as it was, when the user
  // cancelled and where there is no source or no image. Whatever happens, the source is closed afterwards.
  virtual bool Acquire() = 0;
  // For what runs meanwhile: ends the acquisition that is under way, if any, as soon as its source allows.
  virtual void CancelAcquisition() = 0;
};

// The scanner. Nothing of it is loaded before it is switched on.
class Scanner : public Control {
public:
  // The desktop must outlive the scanner.
  Scanner(std::string controlName, Desktop& platform);
  ~Scanner() override;

  bool IsSwitchedOn() const { return isSwitchedOn; }
  // Off, it forgets the choice of a source. Ignored while an acquisition is under way.
  void SwitchOn(bool value);

  // These do nothing, and acquire nothing, while it is off, during an acquisition, and where the platform has no way to
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
