#pragma once

#include <windows.h>

#include <unknwn.h>

namespace kw::activex {

// Creates controls. The one factory lives as long as the library is loaded.
class ClassFactory final : public IClassFactory {
public:
  static ClassFactory& Only();

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP CreateInstance(IUnknown* controlling, REFIID iid, void** object) override;
  STDMETHODIMP LockServer(BOOL lock) override;
};

}  // namespace kw::activex
