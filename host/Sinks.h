#pragma once

#include <ocidl.h>
#include <wrl/client.h>

#include "ComObject.h"
#include "Container.h"

namespace kw::host {

// Receives the events of the control: some have a typed handler in the container, and all are listed by the names that
// the type library has for them.
class EventSink final : public ComObject<IDispatch> {
public:
  // `events` describes the dispatch interface of the events, whose identifier is `eventsId`.
  EventSink(Container& owner, ITypeInfo& events, REFIID eventsId) : container(owner), info(&events), id(eventsId) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT /*index*/, LCID /*locale*/, ITypeInfo** /*info*/) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* /*names*/, UINT /*count*/, LCID /*locale*/, DISPID* /*ids*/) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP Invoke(DISPID event, REFIID iid, LCID locale, WORD flags, DISPPARAMS* arguments, VARIANT* result,
                      EXCEPINFO* exception, UINT* badArgument) override;

private:
  void CallHandler(DISPID event, const DISPPARAMS& arguments);

  Container& container;
  Microsoft::WRL::ComPtr<ITypeInfo> info;
  IID id;
};

// Hears that a property has a new value.
class PropertySink final : public ComObject<IPropertyNotifySink> {
public:
  explicit PropertySink(Container& owner) : container(owner) {}

  STDMETHODIMP OnChanged(DISPID property) override;
  STDMETHODIMP OnRequestEdit(DISPID /*id*/) override { return S_OK; }  // any change is welcome

private:
  Container& container;
};

// A sink connected to a control for as long as this object lives.
class Connection {
public:
  // Throws _com_error.
  Connection(IUnknown& source, REFIID sinkId, IUnknown& sink);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

private:
  Microsoft::WRL::ComPtr<IConnectionPoint> point;
  DWORD cookie = 0;
};

}  // namespace kw::host
