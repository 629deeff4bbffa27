#include "windows/base/WindowHook.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "windows/base/Guard.h"

namespace kw::windows {
namespace {

// The hooks of all threads, by their windows: lists of a hash table. A host may use every other place that a window has
// for its owner.
constexpr std::size_t Lists = 256;
std::array<WindowHook*, Lists> hooks{};
SRWLOCK hooksLock = SRWLOCK_INIT;

}  // namespace

// The list that the window's hook is in.
WindowHook*& WindowHook::ListOf(HWND window) {
  // The low half of a handle counts up by twos.
  return hooks[reinterpret_cast<std::uintptr_t>(window) / 2 % Lists];
}

void WindowHook::Hook(HWND window, Receiver receiver, void* self) noexcept {
  Unhook();
  if (window == nullptr) return;
  hooked = last = window;
  receive = receiver;
  owner = self;
  before = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
  AcquireSRWLockExclusive(&hooksLock);
  next = std::exchange(ListOf(window), this);
  ReleaseSRWLockExclusive(&hooksLock);
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
}

void WindowHook::Unhook() noexcept {
  if (hooked == nullptr) return;
  if (GetWindowLongPtrW(hooked, GWLP_WNDPROC) == reinterpret_cast<LONG_PTR>(&Procedure)) {
    SetWindowLongPtrW(hooked, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before));
  }
  AcquireSRWLockExclusive(&hooksLock);
  WindowHook** link = &ListOf(hooked);
  while (*link != this) link = &(*link)->next;
  *link = std::exchange(next, nullptr);
  ReleaseSRWLockExclusive(&hooksLock);
  hooked = nullptr;
}

LRESULT WindowHook::Default(UINT message, WPARAM wParam, LPARAM lParam) const {
  return CallWindowProcW(before, last, message, wParam, lParam);
}

LRESULT WindowHook::HandOn(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  Receiver receiver = nullptr;
  void* self = nullptr;
  AcquireSRWLockShared(&hooksLock);
  const WindowHook* hook = ListOf(window);
  while (hook != nullptr && hook->hooked != window) hook = hook->next;
  if (hook != nullptr) {
    receiver = hook->receive;
    self = hook->owner;
  }
  ReleaseSRWLockShared(&hooksLock);
  if (receiver != nullptr) return receiver(self, message, wParam, lParam);
  // Somebody in front of a hook that is gone still calls it.
  const auto own = reinterpret_cast<WNDPROC>(GetClassLongPtrW(window, GCLP_WNDPROC));
  return CallWindowProcW(own, window, message, wParam, lParam);
}

LRESULT CALLBACK WindowHook::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  return GuardOr(LRESULT{0}, [&] { return HandOn(window, message, wParam, lParam); });
}

}  // namespace kw::windows
