#pragma once

#include <windows.h>

#include <ocidl.h>
#include <wrl/client.h>

#include <functional>
#include <string>
#include <vector>

#include "activex/KwEditor.h"

namespace kw::test {

// A connection of a sink to a control, cut when it goes.
class Connection {
public:
  Connection(IUnknown* control, REFIID iid, IUnknown* sink);
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  HRESULT Result() const { return result; }
  void Cut();
  // Forgets the connection without telling the control.
  void Forget() { point.Reset(); }

private:
  Microsoft::WRL::ComPtr<IConnectionPoint> point;
  DWORD cookie = 0;
  HRESULT result;
};

// Records events as text, as "PageChanged(1)", and lets a test act inside one.
class EventSink final : public IDispatch {
public:
  std::vector<std::string> events;
  // Called with the arguments in the order of their declaration; they are references and may be changed.
  std::function<void(DISPID event, VARIANT* arguments, UINT count)> onEvent;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }  // lives in the test
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** /*info*/) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* /*names*/, UINT /*count*/, LCID /*locale*/, DISPID* /*ids*/) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID lcid, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* badArgument) override;

  ULONG References() const { return references; }

private:
  ULONG references = 1;
};

// Records the numbers of changed properties.
class PropertySink final : public IPropertyNotifySink {
public:
  std::vector<DISPID> changed;
  std::function<void(DISPID property)> onChanged;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP OnChanged(DISPID property) override;
  STDMETHODIMP OnRequestEdit(DISPID /*id*/) override { return S_OK; }

  ULONG References() const { return references; }

private:
  ULONG references = 1;
};

}  // namespace kw::test
