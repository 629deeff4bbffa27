#include "activex/ClientSite.h"

#include <oleauto.h>

namespace kw::activex {

std::optional<VARIANT> ClientSite::AmbientValue(DISPID property, VARTYPE type) const {
  const auto ambient = As<IDispatch>();
  if (ambient == nullptr) return std::nullopt;
  DISPPARAMS none = {};
  VARIANT value;
  VariantInit(&value);
  if (SUCCEEDED(ambient->Invoke(property, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value, nullptr,
                                nullptr)) &&
      SUCCEEDED(VariantChangeType(&value, &value, 0, type))) {
    return value;
  }
  VariantClear(&value);
  return std::nullopt;
}

std::optional<bool> ClientSite::AmbientBoolean(DISPID property) const {
  const auto value = AmbientValue(property, VT_BOOL);
  if (!value) return std::nullopt;
  return V_BOOL(&*value) != VARIANT_FALSE;
}

std::optional<LONG> ClientSite::AmbientNumber(DISPID property) const {
  const auto value = AmbientValue(property, VT_I4);
  if (!value) return std::nullopt;
  return V_I4(&*value);
}

}  // namespace kw::activex
