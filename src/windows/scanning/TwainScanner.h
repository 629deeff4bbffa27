#pragma once

#include <windows.h>

#include <functional>
#include <memory>

#include "components/platform/ScannerDriver.h"
#include "windows/scanning/ScannedPages.h"
#include "windows/scanning/Twain.h"
#include "windows/scanning/TwainSession.h"

namespace kw::windows {

// The scanners of the system, by way of the TWAIN source manager that is installed. The manager is loaded when it is
// first needed; while nothing is acquired no source is open.
class TwainScanner final : public ScannerDriver {
public:
  // What the desktop lends: the window that dialogs belong to (it may be null), and what has to live while a dialog is
  // up or messages are handled.
  struct Surroundings {
    std::function<HWND()> owner;
    std::function<std::shared_ptr<void>()> enterDialog;
    std::function<std::shared_ptr<void>()> enterEvents;
  };

  explicit TwainScanner(Surroundings surroundings) : desktop(std::move(surroundings)) {}
  ~TwainScanner() override;

  void SelectSource() override;
  // A feeder is emptied: all its pages come as one image, one below the other. When a later page fails, those before it
  // are the image.
  bool Acquire() override;
  void CancelAcquisition() override;

private:
  bool LoadManager();
  void TakeImages(TwainSession& session, ScannedPages& pages);
  void WaitForImage(TwainSession& session, HWND parent);
  bool Handle(TwainSession& session, MSG& message);

  Surroundings desktop;
  HMODULE library = nullptr;
  twain::ManagerEntry manager = nullptr;
  twain::Identity chosen = {};  // without a name: nothing was chosen yet
  bool isCancelled = false;
};

}  // namespace kw::windows
