#include "activex/Lifetime.h"

#include <utility>

#include "windows/base/Guard.h"

namespace kw::activex {
namespace {

constexpr UINT ReleaseMessage = WM_APP;
constexpr UINT_PTR ReleaseTimer = 1;

}  // namespace

LRESULT CALLBACK Lifetime::PostboxProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != ReleaseMessage && message != WM_TIMER) return DefWindowProcW(window, message, wParam, lParam);
  KillTimer(window, ReleaseTimer);
  auto* const life = reinterpret_cast<Lifetime*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  windows::Guard([life] { life->ReleaseOwed(); });
  return 0;
}

Lifetime::~Lifetime() {
  if (postbox != nullptr) DestroyWindow(postbox);
}

// Besides the one reference that asks.
bool Lifetime::IsHeldByOthers() const {
  if (!isCountOwn) return false;
  unknown->AddRef();
  return unknown->Release() > 1;
}

void Lifetime::ReleaseOwed() {
  isPosted = false;
  IUnknown& held = *unknown;
  for (ULONG left = std::exchange(owed, 0); left > 0; --left) held.Release();
}

// One message is enough for all, however many come before it is handled.
void Lifetime::ReleaseLater() {
  ++owed;
  if (isPosted) return;
  if (postbox == nullptr) {
    // A class that Windows has: one of our own would outlive the library that holds its procedure.
    postbox = CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    // The reference stays then: a control that is never freed is better than one freed too early.
    if (postbox == nullptr) return;
    SetWindowLongPtrW(postbox, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(postbox, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&PostboxProcedure));
  }
  // A full queue takes no message; a timer needs no room in it.
  isPosted = PostMessageW(postbox, ReleaseMessage, 0, 0) != FALSE ||
             SetTimer(postbox, ReleaseTimer, USER_TIMER_MINIMUM, nullptr) != 0;
}

Lifetime::Entry::Entry(Lifetime& entered) : life(entered) {
  life.unknown->AddRef();
  ++life.entries;
}

Lifetime::Entry::~Entry() {
  --life.entries;
  life.unknown->Release();  // the last thing that touches the control
}

Lifetime::Outgoing::Outgoing(Lifetime& calling) : life(calling) { life.unknown->AddRef(); }

Lifetime::Outgoing::~Outgoing() {
  if (life.entries > 0 || life.IsHeldByOthers()) {
    life.unknown->Release();  // an incoming call still holds its own, or the host does
  } else {
    life.ReleaseLater();
  }
}

}  // namespace kw::activex
