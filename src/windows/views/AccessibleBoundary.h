#pragma once

#include <exception>
#include <new>

#include "windows/base/Guard.h"
#include "windows/views/AccessibleObject.h"

namespace kw::windows {

template <class Work>
HRESULT AccessibleObject::AtClient(Work work) noexcept {
  if (GetCurrentThreadId() != thread) return RPC_E_WRONG_THREAD;
  if (source == nullptr) return CO_E_OBJNOTCONNECTED;
  const Microsoft::WRL::ComPtr<IAccessible> kept(this);
  return Guard([&]() -> HRESULT { return work(); },
               [](const std::exception* error) -> HRESULT {
                 return dynamic_cast<const std::bad_alloc*>(error) == nullptr ? E_FAIL : E_OUTOFMEMORY;
               });
}

}  // namespace kw::windows
