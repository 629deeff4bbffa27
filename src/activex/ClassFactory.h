#pragma once

#include <windows.h>

#include <unknwn.h>

namespace kw::activex {

// Creates the objects of one class. A factory lives as long as the library is loaded.
class ClassFactory final : public IClassFactory {
public:
  // The factory of a class; null if the library has no such class.
  static ClassFactory* Find(REFCLSID classId);

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP CreateInstance(IUnknown* controlling, REFIID iid, void** object) override;
  STDMETHODIMP LockServer(BOOL lock) override;

private:
  using Creation = HRESULT (*)(IUnknown* controlling, REFIID iid, void** object);

  explicit ClassFactory(Creation creation) : create(creation) {}

  Creation create;
};

}  // namespace kw::activex
