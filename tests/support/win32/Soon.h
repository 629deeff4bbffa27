#pragma once

#include <windows.h>

#include <functional>
#include <utility>

namespace kw::test {

// Does something once, soon, on this thread, in whatever loop of messages is running then. One at a time.
class Soon {
public:
  explicit Soon(std::function<void()> work) : id(SetTimer(nullptr, 0, 300, &TimeIsUp)) { pending = std::move(work); }
  Soon(const Soon&) = delete;
  Soon& operator=(const Soon&) = delete;
  ~Soon() {
    KillTimer(nullptr, id);
    pending = nullptr;
  }

private:
  static void CALLBACK TimeIsUp(HWND /*window*/, UINT /*message*/, UINT_PTR timer, DWORD /*time*/) {
    KillTimer(nullptr, timer);
    if (pending) pending();
  }

  static inline std::function<void()> pending;
  UINT_PTR id;
};

}  // namespace kw::test
