#pragma once

#include <windows.h>

#include <exception>
#include <new>

#include "activex/Lifetime.h"
#include "components/RunTimeError.h"

namespace kw::activex {

// The HRESULT of a run-time error: FACILITY_CONTROL and the number, or the number itself where it is an HRESULT
// already. The error is put into the thread's IErrorInfo.
HRESULT Report(const RunTimeError& error) noexcept;
HRESULT Report(const std::exception& error) noexcept;

// Runs one call that came in through COM. `work` returns an HRESULT; no exception gets past here. The control lives at
// least until the call is over, whatever the host does meanwhile.
template <class Work>
HRESULT AtEdge(Lifetime& life, Work work) noexcept {
  const Lifetime::Entry entry(life);
  try {
    return work();
  } catch (const RunTimeError& error) {
    return Report(error);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const std::exception& error) {
    return Report(error);
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace kw::activex
