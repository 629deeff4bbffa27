#include "activex/HostedDesktop.h"

#include "windows/base/Mouse.h"
#include "windows/base/WaitPointer.h"

namespace kw::activex {
namespace {

// Gives the keyboard focus back to the control's window that had it before a dialog. The system would give it to the
// dialog's owner. A host that restores the focus itself has done so by then.
class KeptFocus {
public:
  explicit KeptFocus(const InPlaceActivation& activation) : inPlace(activation), focus(GetFocus()) {}
  KeptFocus(const KeptFocus&) = delete;
  KeptFocus& operator=(const KeptFocus&) = delete;
  ~KeptFocus() {
    const HWND window = inPlace.Window();
    const bool isOurs = window != nullptr && (focus == window || IsChild(window, focus) != FALSE);
    if (isOurs && GetFocus() == GetAncestor(window, GA_ROOT)) SetFocus(focus);
  }

private:
  const InPlaceActivation& inPlace;
  HWND focus;
};

}  // namespace

HostedDesktop::HostedDesktop(Lifetime& calling, InPlaceActivation& activation) : life(calling), inPlace(activation) {}

// While the control has a window, the host's top-level window owns the dialog.
HWND HostedDesktop::DialogOwner() const {
  const HWND window = inPlace.Window();
  return window == nullptr ? WindowsDesktop::DialogOwner() : GetAncestor(window, GA_ROOT);
}

std::shared_ptr<void> HostedDesktop::EnterDialog() {
  struct WhileUp {
    WhileUp(Lifetime& life, const InPlaceActivation& inPlace) : outgoing(life), focus(inPlace), modal(inPlace) {}
    const Lifetime::Outgoing outgoing;
    const windows::WaitPointer::Rest rest;
    const KeptFocus focus;
    const InPlaceActivation::Modal modal;
  };
  auto whileUp = std::make_shared<WhileUp>(life, inPlace);
  // The user releases the held mouse button in the dialog or beside it, so the control never gets the message.
  if (inPlace.Window() != nullptr) windows::CancelMouse(inPlace.Window());
  return whileUp;
}

std::shared_ptr<void> HostedDesktop::EnterEvents() {
  struct WhileHandled {
    explicit WhileHandled(Lifetime& life) : outgoing(life) {}
    const Lifetime::Outgoing outgoing;
    const windows::WaitPointer::Rest rest;
  };
  return std::make_shared<WhileHandled>(life);
}

}  // namespace kw::activex
