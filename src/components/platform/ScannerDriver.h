#pragma once

namespace kw {

// The platform's way to its scanners. It keeps the choice of a source as long as it lives.
class ScannerDriver {
public:
  ScannerDriver() = default;
  ScannerDriver(const ScannerDriver&) = delete;
  ScannerDriver& operator=(const ScannerDriver&) = delete;
  virtual ~ScannerDriver() = default;

  // Shows the dialog in which the user chooses a source, and waits. Does nothing if there is no source.
  virtual void SelectSource() = 0;
  // Scans with the source chosen last, or the default one, and puts the image on the clipboard as a device-independent
  // bitmap; handles messages meanwhile, so anything may happen. False, with the clipboard as it was, when the user
  // cancelled and if there is no source or no image. Whatever happens, the source is closed afterwards.
  virtual bool Acquire() = 0;
  // For what runs meanwhile: ends the acquisition that is under way, if any, as soon as its source allows.
  virtual void CancelAcquisition() = 0;
};

}  // namespace kw
