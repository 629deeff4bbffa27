#include "activex/HostBag.h"

#include "activex/Text.h"
#include "components/base/RunTimeError.h"

namespace kw::activex {

bool HostBag::Read(const std::string& key, VARTYPE type, VARIANT& value) {
  VariantInit(&value);
  V_VT(&value) = type;
  if (type == VT_BSTR) V_BSTR(&value) = nullptr;
  const Bstr name(key);
  HRESULT got = bag.Read(name.Get(), &value, errors);
  if (got == DISP_E_TYPEMISMATCH) Raise(ErrorNumber::TypeMismatch);
  if (FAILED(got)) return false;  // the bag lacks the property
  if (V_VT(&value) == VT_EMPTY || V_VT(&value) == VT_NULL) return false;
  got = VariantChangeTypeEx(&value, &value, LOCALE_INVARIANT, 0, type);
  if (SUCCEEDED(got)) return true;
  VariantClear(&value);
  Raise(got == DISP_E_OVERFLOW ? ErrorNumber::Overflow : ErrorNumber::TypeMismatch);
}

void HostBag::Write(const std::string& key, VARIANT& value) {
  const Bstr name(key);
  const HRESULT written = bag.Write(name.Get(), &value);
  if (SUCCEEDED(result) && FAILED(written)) result = written;
}

bool HostBag::ReadBoolean(const std::string& key, bool defaultValue) {
  VARIANT value;
  return Read(key, VT_BOOL, value) ? V_BOOL(&value) != VARIANT_FALSE : defaultValue;
}

std::int16_t HostBag::ReadInteger(const std::string& key, std::int16_t defaultValue) {
  VARIANT value;
  return Read(key, VT_I2, value) ? V_I2(&value) : defaultValue;
}

std::string HostBag::ReadText(const std::string& key, const std::string& defaultValue) {
  VARIANT value;
  if (!Read(key, VT_BSTR, value)) return defaultValue;
  Bstr text;
  *text.Address() = V_BSTR(&value);
  return FromBstr(text.Get());
}

void HostBag::WriteBoolean(const std::string& key, bool value, bool defaultValue) {
  if (value == defaultValue && !writeAll) return;
  VARIANT held;
  VariantInit(&held);
  V_VT(&held) = VT_BOOL;
  V_BOOL(&held) = value ? VARIANT_TRUE : VARIANT_FALSE;
  Write(key, held);
}

void HostBag::WriteInteger(const std::string& key, std::int16_t value, std::int16_t defaultValue) {
  if (value == defaultValue && !writeAll) return;
  VARIANT held;
  VariantInit(&held);
  V_VT(&held) = VT_I2;
  V_I2(&held) = value;
  Write(key, held);
}

void HostBag::WriteText(const std::string& key, const std::string& value, const std::string& defaultValue) {
  if (value == defaultValue && !writeAll) return;
  const Bstr text(value);
  VARIANT held;
  VariantInit(&held);
  V_VT(&held) = VT_BSTR;
  V_BSTR(&held) = text.Get();  // borrowed; must not be freed with the variant
  Write(key, held);
}

}  // namespace kw::activex
