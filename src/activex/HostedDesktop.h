#pragma once

#include <memory>

#include "activex/InPlaceActivation.h"
#include "activex/Lifetime.h"
#include "windows/WindowsDesktop.h"

namespace kw::activex {

// The Windows desktop as a control in a container uses it: while a dialog is up the container's own modeless windows
// are disabled, and the control stays alive even if the container lets go of it meanwhile.
class HostedDesktop final : public windows::WindowsDesktop {
public:
  HostedDesktop(Lifetime& calling, InPlaceActivation& activation);

protected:
  HWND DialogOwner() const override;
  std::shared_ptr<void> EnterDialog() override;
  std::shared_ptr<void> EnterEvents() override;

private:
  Lifetime& life;
  InPlaceActivation& inPlace;
};

}  // namespace kw::activex
