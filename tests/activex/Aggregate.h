#pragma once

#include <windows.h>

#include <unknwn.h>

#include "tests/activex/Ocx.h"

namespace kw::test {

// An aggregate that adds nothing of its own.
class Aggregate final : public IUnknown {
public:
  Aggregate() { Ocx::Factory()->CreateInstance(this, IID_IUnknown, reinterpret_cast<void**>(inner.GetAddressOf())); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (iid != IID_IUnknown) return inner == nullptr ? E_NOINTERFACE : inner->QueryInterface(iid, object);
    *object = static_cast<IUnknown*>(this);
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }

  ComPtr<IUnknown> inner;
  ULONG references = 1;
};

}  // namespace kw::test
