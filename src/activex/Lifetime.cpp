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

// One of the references is the caller's own.
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

// One message serves all releases that come before it is handled.
void Lifetime::ReleaseLater() {
  ++owed;
  if (isPosted) return;
  if (postbox == nullptr) {
    // A system class: a class of our own would outlive the library that holds its procedure.
    postbox = CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    // Without a window the reference stays: a leak is better than a control that is freed too early.
    if (postbox == nullptr) return;
    SetWindowLongPtrW(postbox, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(postbox, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&PostboxProcedure));
  }
  // If the queue is full, use a timer, which takes no space in it.
  isPosted = PostMessageW(postbox, ReleaseMessage, 0, 0) != FALSE ||
             SetTimer(postbox, ReleaseTimer, USER_TIMER_MINIMUM, nullptr) != 0;
}

Lifetime::Entry::Entry(Lifetime& entered) : life(entered) {
  life.unknown->AddRef();
  ++life.entries;
}

Lifetime::Entry::~Entry() {
  --life.entries;
  life.unknown->Release();  // nothing may touch the control after this
}

Lifetime::Outgoing::Outgoing(Lifetime& calling) : life(calling) { life.unknown->AddRef(); }

Lifetime::Outgoing::~Outgoing() {
  if (life.entries > 0 || life.IsHeldByOthers()) {
    life.unknown->Release();  // an incoming call or the host holds another reference
  } else {
    life.ReleaseLater();
  }
}

}  // namespace kw::activex
