#include "Sinks.h"

#include "Automation.h"

namespace kw::host {

using Microsoft::WRL::ComPtr;

STDMETHODIMP EventSink::QueryInterface(REFIID iid, void** object) {
  return ComObject::QueryInterface(iid == id ? IID_IDispatch : iid, object);
}

STDMETHODIMP EventSink::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

STDMETHODIMP EventSink::Invoke(DISPID event, REFIID, LCID /*locale*/, WORD /*flags*/, DISPPARAMS* arguments,
                               VARIANT* /*result*/, EXCEPINFO* /*exception*/, UINT* /*badArgument*/) {
  if (arguments == nullptr) return E_POINTER;
  container.EventRaised(EventText(*info.Get(), event, *arguments));
  return S_OK;
}

STDMETHODIMP PropertySink::OnChanged(DISPID /*id*/) {
  container.PropertyChanged();
  return S_OK;
}

Connection::Connection(IUnknown& source, REFIID sinkId, IUnknown& sink) {
  ComPtr<IConnectionPointContainer> points;
  if (SUCCEEDED(source.QueryInterface(IID_PPV_ARGS(&points))) &&
      SUCCEEDED(points->FindConnectionPoint(sinkId, &point)) && FAILED(point->Advise(&sink, &cookie))) {
    point.Reset();
  }
}

Connection::~Connection() {
  if (point != nullptr) point->Unadvise(cookie);
}

}  // namespace kw::host
