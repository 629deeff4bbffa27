#pragma once

#include <windows.h>

#include <exception>

#include "activex/Lifetime.h"
#include "windows/base/Guard.h"

namespace kw::activex {

// The HRESULT of an error. That of a run-time error is FACILITY_CONTROL and the number, or the number itself where it
// is an HRESULT already. The error is put into the thread's IErrorInfo. Null stands for an error of a foreign kind.
HRESULT Report(const std::exception* error) noexcept;

// Runs one call that came in through COM. `work` returns an HRESULT; no exception gets past here. The control lives at
// least until the call is over, whatever the host does meanwhile.
template <class Work>
HRESULT AtComBoundary(Lifetime& life, Work work) noexcept {
  const Lifetime::Entry entry(life);
  return windows::Guard([&]() -> HRESULT { return work(); }, &Report);
}

}  // namespace kw::activex
