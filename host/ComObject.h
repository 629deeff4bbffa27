#pragma once

#include <windows.h>

#include <unknwn.h>

namespace kw::host {

// The IUnknown of an object that implements these interfaces. Made with `new`, it deletes itself with the last Release;
// hold it with Attach of a ComPtr.
template <class First, class... More>
class ComObject : public First, public More... {
public:
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(First)) {
      *object = static_cast<First*>(this);
    } else {
      ((iid == __uuidof(More) ? void(*object = static_cast<More*>(this)) : void()), ...);
    }
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }

  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references;
    if (left == 0) delete this;
    return left;
  }

protected:
  ComObject() = default;
  virtual ~ComObject() = default;

private:
  ULONG references = 1;  // everything here runs on one thread
};

}  // namespace kw::host
