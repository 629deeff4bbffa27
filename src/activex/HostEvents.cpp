#include "activex/HostEvents.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <string>
#include <variant>

#include "activex/KwEditor.h"
#include "activex/Text.h"
#include "windows/base/WaitPointer.h"

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

HostEvents::HostEvents(Lifetime& owner)
    : life(owner),
      eventPoint(owner, DIID___KwEditorLayers, true),
      propertyPoint(owner, IID_IPropertyNotifySink, false) {}

void HostEvents::Thaw() {
  if (freezes == 0 || --freezes > 0) return;
  for (const DISPID property : std::exchange(changedWhileFrozen, {})) TellChanged(property);
}

void HostEvents::Raise(EventId event, std::span<const Argument> arguments) {
  std::deque<std::pair<std::string&, Bstr>> texts;
  std::vector<VARIANT> values;
  for (const Argument& argument : arguments) {
    if (std::string* const* const text = std::get_if<std::string*>(&argument)) {
      values.push_back(ByReference(texts.emplace_back(**text, **text).second));
    } else {
      values.push_back(ByReference(*std::get<std::int16_t*>(argument)));
    }
  }
  std::reverse(values.begin(), values.end());  // IDispatch takes the last argument first
  Send(static_cast<DISPID>(event), values);
  for (const auto& [text, passed] : texts) text = FromBstr(passed.Get());
}

void HostEvents::Send(DISPID event, std::span<VARIANT> arguments) {
  const auto sinks = eventPoint.Sinks();
  if (freezes > 0 || sinks.empty()) return;
  const Lifetime::Outgoing outgoing(life);
  const windows::WaitPointer::Rest rest;
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
  const windows::WaitPointer::Rest rest;
  for (const ComPtr<IUnknown>& sink : sinks) {
    static_cast<IPropertyNotifySink*>(sink.Get())->OnChanged(property);
  }
}

void HostEvents::PropertyChanged(PropertyId changedProperty) {
  if (silences > 0) return;
  if (changed) changed(changedProperty);
  const auto property = static_cast<DISPID>(changedProperty);
  if (freezes == 0) {
    TellChanged(property);
  } else if (std::find(changedWhileFrozen.begin(), changedWhileFrozen.end(), property) == changedWhileFrozen.end()) {
    changedWhileFrozen.push_back(property);
  }
}

}  // namespace kw::activex
