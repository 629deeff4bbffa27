#include "activex/HostedDesktop.h"

namespace kw::activex {

MessageAnswer HostedDesktop::ShowMessageBox(const std::string& prompt, const std::string& title,
                                            MessageButtons buttons) {
  const Lifetime::Outgoing outgoing(life);
  const InPlaceActivation::Modal modal(place);
  return WindowsDesktop::ShowMessageBox(prompt, title, buttons);
}

}  // namespace kw::activex
