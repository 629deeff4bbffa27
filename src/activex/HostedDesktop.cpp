#include "activex/HostedDesktop.h"

#include "components/RunTimeError.h"
#include "picture/KWPicEd.h"

namespace kw::activex {
namespace {

Bitmap LoadWithEngine(const std::string& path) {
  KWPicEd engine;
  if (!engine.Load(path)) Raise(ErrorNumber::InvalidPicture);
  return engine.Current();
}

}  // namespace

HostedDesktop::HostedDesktop(Lifetime& calling, InPlaceActivation& activation)
    : WindowsDesktop(&LoadWithEngine), life(calling), place(activation) {}

// While the control has a window the dialog belongs to the host's window around it.
HWND HostedDesktop::DialogOwner() const {
  const HWND window = place.Window();
  return window == nullptr ? WindowsDesktop::DialogOwner() : GetAncestor(window, GA_ROOT);
}

std::shared_ptr<void> HostedDesktop::EnterDialog() {
  struct WhileUp {
    WhileUp(Lifetime& life, const InPlaceActivation& place) : outgoing(life), modal(place) {}
    const Lifetime::Outgoing outgoing;
    const InPlaceActivation::Modal modal;
  };
  return std::make_shared<WhileUp>(life, place);
}

std::shared_ptr<void> HostedDesktop::EnterEvents() { return std::make_shared<Lifetime::Outgoing>(life); }

}  // namespace kw::activex
