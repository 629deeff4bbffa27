#include "activex/ObjectProperties.h"

#include <oleauto.h>

#include <array>
#include <cstdio>
#include <utility>

#include "activex/KwEditor.h"
#include "activex/Text.h"

namespace kw::activex {
namespace {

using Microsoft::WRL::ComPtr;
using windows::PropertyValue;

// A VARIANT that is cleared.
struct Variant : VARIANT {
  Variant() { VariantInit(this); }
  explicit Variant(const PropertyValue& value) : Variant() {
    if (const auto* const flag = std::get_if<types::Boolean>(&value)) {
      V_VT(this) = VT_BOOL;
      V_BOOL(this) = *flag ? VARIANT_TRUE : VARIANT_FALSE;
    } else if (const auto* const number = std::get_if<types::Integer>(&value)) {
      V_VT(this) = VT_I2;
      V_I2(this) = *number;
    } else {
      V_BSTR(this) = Bstr(std::get<types::Text>(value)).Detach();
      V_VT(this) = VT_BSTR;
    }
  }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(this); }
};

std::optional<PropertyValue> ToValue(const VARIANT& value) {
  switch (V_VT(&value)) {
    case VT_BOOL:
      return V_BOOL(&value) != VARIANT_FALSE;
    case VT_I2:
      return static_cast<types::Integer>(V_I2(&value));
    case VT_BSTR:
      return FromBstr(V_BSTR(&value));
    default:
      return std::nullopt;
  }
}

std::optional<PropertyValue> Read(IDispatch& object, PropertyId property) {
  DISPPARAMS none = {};
  Variant value;
  if (FAILED(object.Invoke(static_cast<DISPID>(property), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                           &value, nullptr, nullptr))) {
    return std::nullopt;
  }
  return ToValue(value);
}

// What the object says of its error, else the system's text for it.
std::string ReasonOf(HRESULT result, EXCEPINFO& exception) {
  if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
  std::string reason = FromBstr(exception.bstrDescription);
  for (BSTR const text : {exception.bstrDescription, exception.bstrSource, exception.bstrHelpFile}) SysFreeString(text);
  if (!reason.empty()) return reason;
  std::array<wchar_t, 512> text = {};
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, static_cast<DWORD>(result), 0,
                     text.data(), static_cast<DWORD>(text.size()), nullptr);
  if (length > 0) return FromWide(text.data(), length);
  std::array<char, 32> number = {};
  std::snprintf(number.data(), number.size(), "Error 0x%08lX", static_cast<unsigned long>(result));
  return number.data();
}

HRESULT Write(IDispatch& object, PropertyId property, VARIANT& value, std::string& reason) {
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {&value, &put, 1, 1};
  EXCEPINFO exception = {};
  const HRESULT result = object.Invoke(static_cast<DISPID>(property), IID_NULL, LOCALE_USER_DEFAULT,
                                       DISPATCH_PROPERTYPUT, &parameters, nullptr, &exception, nullptr);
  if (FAILED(result)) reason = ReasonOf(result, exception);
  return result;
}

}  // namespace

HRESULT ObjectProperties::Set(ULONG count, IUnknown** unknowns) {
  if (count > 0 && unknowns == nullptr) return E_POINTER;
  Objects asked;
  for (ULONG i = 0; i < count; ++i) {
    ComPtr<_KwEditorLayers> object;
    if (unknowns[i] == nullptr) return E_POINTER;
    if (FAILED(unknowns[i]->QueryInterface(IID_PPV_ARGS(&object)))) return E_NOINTERFACE;
    asked.emplace_back(object.Get());
  }
  objects.swap(asked);
  return S_OK;
}

std::optional<PropertyValue> ObjectProperties::Get(PropertyId property) const {
  const Objects asked = objects;  // an object may make the page forget them meanwhile
  std::optional<PropertyValue> common;
  for (const auto& object : asked) {
    auto value = Read(*object.Get(), property);
    if (!value || (common && *common != *value)) return std::nullopt;
    common = std::move(value);
  }
  return common;
}

HRESULT ObjectProperties::Put(PropertyId property, const PropertyValue& value, std::string& reason) const {
  const Objects asked = objects;
  Variant passed(value);
  for (const auto& object : asked) {
    const HRESULT result = Write(*object.Get(), property, passed, reason);
    if (FAILED(result)) return result;
  }
  return S_OK;
}

}  // namespace kw::activex
