#pragma once

#include <memory>

#include "activex/InPlaceActivation.h"
#include "activex/Lifetime.h"
#include "windows/WindowsDesktop.h"

namespace kw::activex {

// The Windows desktop for a control in a container. While a dialog is up, the container's modeless windows are disabled
// and the control stays alive, even if the container releases it meanwhile.
class HostedDesktop final : public windows::WindowsDesktop {
public:
  HostedDesktop(Lifetime& calling, InPlaceActivation& activation);

  std::shared_ptr<void> EnterDialog() override;

protected:
  HWND DialogOwner() const override;
  std::shared_ptr<void> EnterEvents() override;

private:
  Lifetime& life;
  InPlaceActivation& inPlace;
};

}  // namespace kw::activex
