#include "activex/HostEvents.h"

#include <algorithm>

#include "activex/KwEditor.h"
#include "activex/Text.h"

namespace kw::activex {
namespace {

using Microsoft::WRL::ComPtr;

VARIANT ByReference(std::int16_t& number) {
  VARIANT argument;
  VariantInit(&argument);
  V_VT(&argument) = VT_I2 | VT_BYREF;
  V_I2REF(&argument) = &number;
  return argument;
}

VARIANT ByReference(Bstr& text) {
  VARIANT argument;
  VariantInit(&argument);
  V_VT(&argument) = VT_BSTR | VT_BYREF;
  V_BSTRREF(&argument) = text.Address();
  return argument;
}

}  // namespace

HostEvents::HostEvents(Lifetime& owner, MemberDescription& description)
    : life(owner),
      members(description),
      eventPoint(owner, DIID___KwEditorLayers, true),
      propertyPoint(owner, IID_IPropertyNotifySink, false) {}

void HostEvents::Thaw() {
  if (freezes == 0 || --freezes > 0) return;
  for (const DISPID property : std::exchange(changedWhileFrozen, {})) TellChanged(property);
}

void HostEvents::Raise(DISPID event, std::vector<VARIANT> arguments) {
  const auto sinks = eventPoint.Sinks();
  if (freezes > 0 || sinks.empty()) return;
  const Lifetime::Outgoing outgoing(life);
  std::reverse(arguments.begin(), arguments.end());  // IDispatch takes the last argument first
  DISPPARAMS parameters = {};
  parameters.rgvarg = arguments.data();
  parameters.cArgs = static_cast<UINT>(arguments.size());
  for (const ComPtr<IUnknown>& sink : sinks) {
    // A sink's failure is its own affair; the other sinks and the editor go on.
    static_cast<IDispatch*>(sink.Get())
        ->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr);
  }
}

void HostEvents::TellChanged(DISPID property) {
  const auto sinks = propertyPoint.Sinks();
  if (sinks.empty()) return;
  const Lifetime::Outgoing outgoing(life);
  for (const ComPtr<IUnknown>& sink : sinks) {
    static_cast<IPropertyNotifySink*>(sink.Get())->OnChanged(property);
  }
}

void HostEvents::ErrorOccured(std::int16_t& errorNo, std::string& errorMsg) {
  Bstr text(errorMsg);
  Raise(ErrorOccuredEventId, {ByReference(errorNo), ByReference(text)});
  errorMsg = FromBstr(text.Get());
}

void HostEvents::NewPageCreated(std::string& filePath, std::int16_t& currentPageNo, std::int16_t& totalPages) {
  Bstr text(filePath);
  Raise(NewPageCreatedEventId, {ByReference(text), ByReference(currentPageNo), ByReference(totalPages)});
  filePath = FromBstr(text.Get());
}

void HostEvents::PageChanged(std::int16_t& pageNo) { Raise(PageChangedEventId, {ByReference(pageNo)}); }

void HostEvents::PropertyChanged(const std::string& propertyName) {
  if (changed) changed(propertyName);
  const DISPID property = members.NumberOf(propertyName);
  if (property == DISPID_UNKNOWN) return;
  if (freezes == 0) {
    TellChanged(property);
  } else if (std::find(changedWhileFrozen.begin(), changedWhileFrozen.end(), property) == changedWhileFrozen.end()) {
    changedWhileFrozen.push_back(property);
  }
}

}  // namespace kw::activex
