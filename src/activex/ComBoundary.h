#pragma once

#include <windows.h>

#include <exception>

#include "activex/Lifetime.h"
#include "windows/base/Guard.h"

namespace kw::activex {

// Returns the HRESULT of an error and sets the thread's IErrorInfo. A run-time error becomes its number in
// FACILITY_CONTROL, or the number itself if that is an HRESULT already. Null stands for an exception that is no
// std::exception.
HRESULT Report(const std::exception* error) noexcept;

// Runs an incoming COM call: turns exceptions of `work` into an HRESULT and keeps the control alive until the call
// returns, whatever the host does meanwhile.
template <class Work>
HRESULT AtComBoundary(Lifetime& life, Work work) noexcept {
  const Lifetime::Entry entry(life);
  return windows::Guard([&]() -> HRESULT { return work(); }, &Report);
}

}  // namespace kw::activex
