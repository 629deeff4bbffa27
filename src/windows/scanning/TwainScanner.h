#pragma once

#include <windows.h>

#include <functional>
#include <memory>

#include "components/platform/ScannerDriver.h"
#include "windows/scanning/ScannedPages.h"
#include "windows/scanning/Twain.h"
#include "windows/scanning/TwainSession.h"

namespace kw::windows {

// The system's scanners, through the installed TWAIN source manager. The manager is loaded on first use; a source is
// open only during an acquisition.
class TwainScanner final : public ScannerDriver {
public:
  // What the desktop provides: the owner window of dialogs (may be null), and an object that must live while a dialog
  // is up or messages are handled.
  struct Surroundings {
    std::function<HWND()> owner;
    std::function<std::shared_ptr<void>()> enterDialog;
    std::function<std::shared_ptr<void>()> enterEvents;
  };

  explicit TwainScanner(Surroundings surroundings) : desktop(std::move(surroundings)) {}
  ~TwainScanner() override;

  void SelectSource() override;
  // Empties a feeder: all pages become one image, stacked. If a later page fails, the pages before it are the image.
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
  twain::Identity chosen = {};  // empty name: nothing was chosen yet
  bool isCancelled = false;
};

}  // namespace kw::windows
