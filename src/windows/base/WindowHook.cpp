#include "windows/base/WindowHook.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "windows/base/Guard.h"

namespace kw::windows {
namespace {

// The hooks of all threads, by their windows: lists of a hash table. The fields of a window are no place for them,
// because a host may write into those.
constexpr std::size_t Lists = 256;
std::array<WindowHook*, Lists> hooks{};
SRWLOCK hooksLock = SRWLOCK_INIT;

}  // namespace

// The list that the window's hook is in.
WindowHook*& WindowHook::ListOf(HWND listed) {
  // The low half of a handle counts up by twos.
  return hooks[reinterpret_cast<std::uintptr_t>(listed) / 2 % Lists];
}

void WindowHook::Hook(HWND hooked, Receiver receiver, void* self) noexcept {
  Unhook();
  if (hooked == nullptr) return;
  isHooked = true;
  window = hooked;
  receive = receiver;
  owner = self;
  before = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
  AcquireSRWLockExclusive(&hooksLock);
  next = std::exchange(ListOf(window), this);
  ReleaseSRWLockExclusive(&hooksLock);
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure));
}

void WindowHook::Unhook() noexcept {
  if (!isHooked) return;
  if (GetWindowLongPtrW(window, GWLP_WNDPROC) == reinterpret_cast<LONG_PTR>(&Procedure)) {
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(before));
  }
  AcquireSRWLockExclusive(&hooksLock);
  WindowHook** link = &ListOf(window);
  while (*link != this) link = &(*link)->next;
  *link = std::exchange(next, nullptr);
  ReleaseSRWLockExclusive(&hooksLock);
  isHooked = false;
}

LRESULT WindowHook::Default(UINT message, WPARAM wParam, LPARAM lParam) const {
  return CallWindowProcW(before, window, message, wParam, lParam);
}

LRESULT WindowHook::HandOn(HWND receiving, UINT message, WPARAM wParam, LPARAM lParam) {
  Receiver receiver = nullptr;
  void* self = nullptr;
  AcquireSRWLockShared(&hooksLock);
  const WindowHook* hook = ListOf(receiving);
  while (hook != nullptr && hook->window != receiving) hook = hook->next;
  if (hook != nullptr) {
    receiver = hook->receive;
    self = hook->owner;
  }
  ReleaseSRWLockShared(&hooksLock);
  if (receiver != nullptr) return receiver(self, message, wParam, lParam);
  // Somebody in front of a hook that is gone still calls it.
  const auto own = reinterpret_cast<WNDPROC>(GetClassLongPtrW(receiving, GCLP_WNDPROC));
  return CallWindowProcW(own, receiving, message, wParam, lParam);
}

LRESULT CALLBACK WindowHook::Procedure(HWND receiving, UINT message, WPARAM wParam, LPARAM lParam) {
  return GuardOr(LRESULT{0}, [&] { return HandOn(receiving, message, wParam, lParam); });
}

}  // namespace kw::windows
