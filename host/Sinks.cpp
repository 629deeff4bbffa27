#include "Sinks.h"

#include "Automation.h"
#include "activex/KwEditor.h"

namespace kw::host {
namespace {

// An argument of an event, by its place in the declaration. All arguments are references; null if this one is none to
// such a value.
const VARIANT* ArgumentAt(const DISPPARAMS& arguments, UINT place, VARTYPE type) {
  if (place >= arguments.cArgs) return nullptr;
  const VARIANT& argument = arguments.rgvarg[arguments.cArgs - 1 - place];  // the last one comes first
  return V_VT(&argument) == (type | VT_BYREF) ? &argument : nullptr;
}

}  // namespace

using Microsoft::WRL::ComPtr;

STDMETHODIMP EventSink::QueryInterface(REFIID iid, void** object) {
  return ComObject::QueryInterface(iid == id ? IID_IDispatch : iid, object);
}

STDMETHODIMP EventSink::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

void EventSink::CallHandler(DISPID event, const DISPPARAMS& arguments) {
  if (event == ErrorOccuredEventId) {
    const VARIANT* const number = ArgumentAt(arguments, 0, VT_I2);
    const VARIANT* const message = ArgumentAt(arguments, 1, VT_BSTR);
    if (number == nullptr || message == nullptr) return;
    BSTR& text = *V_BSTRREF(message);
    std::wstring changed(text, SysStringLen(text));
    container.ErrorOccured(*V_I2REF(number), changed);
    // The new text takes the place of the old one, which belongs to the caller and has to be freed.
    SysReAllocStringLen(&text, changed.data(), static_cast<UINT>(changed.size()));
  } else if (event == PageChangedEventId) {
    if (const VARIANT* const page = ArgumentAt(arguments, 0, VT_I2)) container.PageChanged(*V_I2REF(page));
  }
}

STDMETHODIMP EventSink::Invoke(DISPID event, REFIID, LCID /*locale*/, WORD /*flags*/, DISPPARAMS* arguments,
                               VARIANT* /*result*/, EXCEPINFO* /*exception*/, UINT* /*badArgument*/) {
  if (arguments == nullptr) return E_POINTER;
  try {
    CallHandler(event, *arguments);
    container.EventRaised(EventText(*info.Get(), event, *arguments));
    return S_OK;
  } catch (...) {  // no exception may leave a method of COM
    return E_OUTOFMEMORY;
  }
}

STDMETHODIMP PropertySink::OnChanged(DISPID /*id*/) {
  container.PropertyChanged();
  return S_OK;
}

Connection::Connection(IUnknown& source, REFIID sinkId, IUnknown& sink) {
  ComPtr<IConnectionPointContainer> points;
  _com_util::CheckError(source.QueryInterface(IID_PPV_ARGS(&points)));
  _com_util::CheckError(points->FindConnectionPoint(sinkId, &point));
  _com_util::CheckError(point->Advise(&sink, &cookie));
}

Connection::~Connection() { point->Unadvise(cookie); }

}  // namespace kw::host
