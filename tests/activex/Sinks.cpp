#include "tests/activex/Sinks.h"

#include <algorithm>

#include "tests/support/RecordedEvents.h"

namespace kw::test {
namespace {

std::string NarrowText(const wchar_t* text, std::size_t length) {
  std::string narrow;
  for (std::size_t index = 0; index < length; ++index) narrow.push_back(static_cast<char>(text[index]));
  return narrow;
}

std::string Describe(const VARIANT& argument) {
  if (V_VT(&argument) == (VT_I2 | VT_BYREF)) return std::to_string(*V_I2REF(&argument));
  if (V_VT(&argument) == (VT_BSTR | VT_BYREF)) {
    return NarrowText(*V_BSTRREF(&argument), SysStringLen(*V_BSTRREF(&argument)));
  }
  return "type " + std::to_string(V_VT(&argument));
}

}  // namespace

Connection::Connection(IUnknown* control, REFIID iid, IUnknown* sink) {
  Microsoft::WRL::ComPtr<IConnectionPointContainer> container;
  result = control->QueryInterface(IID_PPV_ARGS(&container));
  if (SUCCEEDED(result)) result = container->FindConnectionPoint(iid, &point);
  if (SUCCEEDED(result)) result = point->Advise(sink, &cookie);
}

Connection::~Connection() { Cut(); }

void Connection::Cut() {
  if (point != nullptr && cookie != 0) point->Unadvise(cookie);
  point.Reset();
}

STDMETHODIMP EventSink::QueryInterface(REFIID iid, void** object) {
  *object = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___KwEditorLayers ? this : nullptr;
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP EventSink::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

STDMETHODIMP EventSink::Invoke(DISPID id, REFIID, LCID /*locale*/, WORD /*flags*/, DISPPARAMS* parameters,
                               VARIANT* /*result*/, EXCEPINFO* /*exception*/, UINT* /*badArgument*/) {
  std::vector<VARIANT> arguments(parameters->rgvarg, parameters->rgvarg + parameters->cArgs);
  std::reverse(arguments.begin(), arguments.end());
  std::string text = RowNameOf(EventId{id}) + "(";
  for (std::size_t index = 0; index < arguments.size(); ++index) {
    text += (index == 0 ? "" : ", ") + Describe(arguments[index]);
  }
  events.push_back(text + ")");
  if (onEvent) onEvent(id, arguments.data(), parameters->cArgs);
  return S_OK;
}

STDMETHODIMP PropertySink::QueryInterface(REFIID iid, void** object) {
  *object = iid == IID_IUnknown || iid == IID_IPropertyNotifySink ? this : nullptr;
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP PropertySink::OnChanged(DISPID property) {
  changed.push_back(property);
  if (onChanged) onChanged(property);
  return S_OK;
}

}  // namespace kw::test
