#include "activex/ClientSite.h"

#include <oleauto.h>

namespace kw::activex {

std::optional<bool> ClientSite::AmbientBoolean(DISPID property) const {
  const auto ambient = As<IDispatch>();
  if (ambient == nullptr) return std::nullopt;
  DISPPARAMS none = {};
  VARIANT value;
  VariantInit(&value);
  std::optional<bool> answer;
  if (SUCCEEDED(ambient->Invoke(property, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &value, nullptr,
                                nullptr)) &&
      SUCCEEDED(VariantChangeType(&value, &value, 0, VT_BOOL))) {
    answer = V_BOOL(&value) != VARIANT_FALSE;
  }
  VariantClear(&value);
  return answer;
}

}  // namespace kw::activex
