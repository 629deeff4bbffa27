#include "activex/Lifetime.h"

namespace kw::activex {
namespace {

constexpr UINT ReleaseMessage = WM_APP;
constexpr UINT IdleMessage = WM_APP + 1;

}  // namespace

LRESULT CALLBACK Lifetime::PostboxProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* life = reinterpret_cast<Lifetime*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (message == IdleMessage) {
    // A call that is out again posts anew when it returns.
    if (!life->IsCallingHost() && life->idle) life->idle();
    return 0;
  }
  if (message == ReleaseMessage) {
    life->unknown->Release();
    return 0;
  }
  return DefWindowProcW(window, message, wParam, lParam);
}

Lifetime::~Lifetime() {
  if (postbox != nullptr) DestroyWindow(postbox);
}

bool Lifetime::Post(UINT message) {
  if (postbox == nullptr) {
    // A class that Windows has: one of our own would outlive the library that holds its procedure.
    postbox = CreateWindowExW(0, L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    if (postbox == nullptr) return false;
    SetWindowLongPtrW(postbox, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(postbox, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&PostboxProcedure));
  }
  return PostMessageW(postbox, message, 0, 0) != 0;
}

Lifetime::Entry::Entry(Lifetime& entered) : life(entered) {
  life.unknown->AddRef();
  ++life.entries;
}

Lifetime::Entry::~Entry() {
  --life.entries;
  life.unknown->Release();  // the last thing that touches the control
}

Lifetime::Outgoing::Outgoing(Lifetime& calling) : life(calling) {
  life.unknown->AddRef();
  ++life.outgoing;
}

Lifetime::Outgoing::~Outgoing() {
  if (--life.outgoing == 0) life.Post(IdleMessage);
  if (life.entries > 0) {
    life.unknown->Release();  // the incoming call still holds its own
  } else {
    // Where nothing can be posted the reference stays: a control that is never freed is better than one freed too
    // early.
    life.Post(ReleaseMessage);
  }
}

}  // namespace kw::activex
